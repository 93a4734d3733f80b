#pragma once

#include <QObject>
#include <QTimer>
#include <cstdint>

namespace Pelorin {

// A timer control as skins and the command language know it: it ticks every Interval
// milliseconds while Enabled; an interval of 0 never ticks; disabling and enabling again, or a
// new interval, start the count afresh. Its object name is the control's name ("tmr",
// "tmrScroll", ...), which the window's closing walks.
class VbTimer : public QObject {
    Q_OBJECT
public:
    VbTimer(const QString& name, QObject* parent, bool enabled = true, std::int32_t interval = 0);

    bool Enabled() const { return m_enabled; }
    void SetEnabled(bool enabled);
    std::int32_t Interval() const { return m_interval; }
    void SetInterval(std::int32_t interval);
    // Whether a tick is pending now.
    bool IsTicking() const { return m_timer.isActive(); }

Q_SIGNALS:
    void Timer();

private:
    void Restart();

    QTimer m_timer;
    bool m_enabled;
    std::int32_t m_interval;
};

} // namespace Pelorin
