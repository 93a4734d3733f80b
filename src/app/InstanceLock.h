#pragma once

#include <QLockFile>
#include <QString>
#include <memory>

namespace Pelorin {

// The per-user single-instance lock. Every process holds it when it can; only a normal start
// asks whether another instance already holds it. A lock left by a dead process is stale and
// does not block a start.
class InstanceLock {
public:
    // `unavailable`: why there is no lock file path (no private runtime folder), when there is
    // none.
    explicit InstanceLock(const QString& lockFilePath, const QString& unavailable = QString());

    // Takes the lock if it is free (or stale). False when a live process holds it, or when the
    // lock cannot be taken at all (then Problem() says why).
    bool TryAcquire();
    // Why the last TryAcquire could not take the lock for a reason other than another Pelorin
    // holding it; empty when another instance holds it (or nothing went wrong).
    QString Problem() const { return m_problem; }
    bool IsHeld() const { return m_held; }
    QString Path() const { return m_path; }

private:
    QString m_path;
    std::unique_ptr<QLockFile> m_lock;
    bool m_held = false;
    QString m_unavailable;
    QString m_problem;
};

} // namespace Pelorin
