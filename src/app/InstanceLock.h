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
    explicit InstanceLock(const QString& lockFilePath);

    // Takes the lock if it is free (or stale). False when a live process holds it.
    bool TryAcquire();
    bool IsHeld() const { return m_held; }
    QString Path() const { return m_path; }

private:
    QString m_path;
    std::unique_ptr<QLockFile> m_lock;
    bool m_held = false;
};

} // namespace Pelorin
