#include "VbTimer.h"

namespace Pelorin {

VbTimer::VbTimer(const QString& name, QObject* parent, bool enabled, std::int32_t interval)
    : QObject(parent), m_enabled(enabled), m_interval(interval) {
    setObjectName(name);
    connect(&m_timer, &QTimer::timeout, this, &VbTimer::Timer);
    Restart();
}

void VbTimer::SetEnabled(bool enabled) {
    m_enabled = enabled;
    Restart();
}

void VbTimer::SetInterval(std::int32_t interval) {
    m_interval = interval;
    Restart();
}

void VbTimer::Restart() {
    m_timer.stop();
    // A negative interval is refused by the control; it never ticks either way.
    if (m_enabled && m_interval > 0)
        m_timer.start(m_interval);
}

} // namespace Pelorin
