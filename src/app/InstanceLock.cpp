#include "InstanceLock.h"

namespace Pelorin {

InstanceLock::InstanceLock(const QString& lockFilePath, const QString& unavailable)
    : m_path(lockFilePath), m_lock(std::make_unique<QLockFile>(lockFilePath)),
      m_unavailable(unavailable) {
    // A running Pelorin never lets go of its lock while it lives, so any age is fine; staleness
    // is decided by whether the owning process still exists.
    m_lock->setStaleLockTime(0);
}

bool InstanceLock::TryAcquire() {
    if (m_held)
        return true;
    m_problem.clear();
    if (m_path.isEmpty()) {
        m_problem = m_unavailable.isEmpty() ? QStringLiteral("there is no folder for its lock file")
                                            : m_unavailable;
        return false;
    }
    m_held = m_lock->tryLock(0);
    if (!m_held && m_lock->error() != QLockFile::LockFailedError)
        m_problem = QStringLiteral("cannot create its lock file ") + m_path;
    return m_held;
}

} // namespace Pelorin
