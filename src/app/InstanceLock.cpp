#include "InstanceLock.h"

namespace Pelorin {

InstanceLock::InstanceLock(const QString& lockFilePath)
    : m_path(lockFilePath), m_lock(std::make_unique<QLockFile>(lockFilePath)) {
    // A running Pelorin never lets go of its lock while it lives, so any age is fine; staleness
    // is decided by whether the owning process still exists.
    m_lock->setStaleLockTime(0);
}

bool InstanceLock::TryAcquire() {
    if (m_held)
        return true;
    m_held = m_lock->tryLock(0);
    return m_held;
}

} // namespace Pelorin
