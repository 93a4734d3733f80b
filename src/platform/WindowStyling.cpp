#include "WindowStyling.h"

#include "WindowSystem.h"

#include <QEvent>
#include <QWidget>

namespace Pelorin {

namespace {

const char* const LayeredProperty = "pelorinLayered";
const char* const AlphaProperty = "pelorinAlpha";
const char* const KeepBelowProperty = "pelorinKeepBelow";

// The opacity property's scale: 0xFFFFFFFF / 255 per step of alpha, so 255 is 0xFFFFFFFF.
constexpr quint32 OpacityPerAlphaStep = 0x01010101;

// The window manager forgets a window's state when the window is hidden; this puts the hints back
// each time the window is shown again, before it is mapped.
class KeepBelowOnShow final : public QObject {
public:
    KeepBelowOnShow(WindowSystem& system, QWidget* window) : QObject(window), m_system(system) {}

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Show) {
            if (auto* widget = qobject_cast<QWidget*>(watched))
                m_system.KeepBelowOnAllDesktops(widget->winId());
        }
        return false;
    }

private:
    WindowSystem& m_system;
};

} // namespace

bool SetWindowAlpha(WindowSystem& system, QWidget* window, int alpha) {
    if (window == nullptr)
        return false;
    const int lowByte = alpha & 0xFF;
    window->setProperty(LayeredProperty, true);
    window->setProperty(AlphaProperty, lowByte);
    // Qt's opacity first: on X11 Qt removes the property for an opaque window, which the write
    // below puts back, so that "layered but opaque" stays visible to the window system.
    window->setWindowOpacity(lowByte / 255.0);
    return system.SetOpacityProperty(window->winId(),
                                     static_cast<quint32>(lowByte) * OpacityPerAlphaStep);
}

bool IsLayered(const QWidget* window) {
    return window != nullptr && window->property(LayeredProperty).toBool();
}

int WindowAlpha(const QWidget* window) {
    return IsLayered(window) ? window->property(AlphaProperty).toInt() : 255;
}

QString DesktopPlacement::Describe() const {
    switch (outcome) {
    case Outcome::ParentedToDesktop:
        return QStringLiteral("the window is a child of the desktop window 0x%1")
            .arg(desktopWindow, 0, 16);
    case Outcome::KeptBelow:
        return QStringLiteral("no desktop window: the window is kept below the others, out of the "
                              "task bar and the pager, on all desktops");
    case Outcome::NotAvailable:
        return QStringLiteral("putting a window on the desktop is not available on this window "
                              "system");
    case Outcome::Failed:
        return QStringLiteral("the window system refused to put the window on the desktop");
    }
    return {};
}

DesktopPlacement PutOnDesktop(WindowSystem& system, QWidget* window) {
    DesktopPlacement placement;
    if (window == nullptr || !system.IsAvailable()) {
        placement.outcome = DesktopPlacement::Outcome::NotAvailable;
        return placement;
    }
    if (const WId desktop = system.FindDesktopWindow(); desktop != 0) {
        placement.outcome = system.ReparentInto(window, desktop)
                                ? DesktopPlacement::Outcome::ParentedToDesktop
                                : DesktopPlacement::Outcome::Failed;
        placement.desktopWindow =
            placement.outcome == DesktopPlacement::Outcome::ParentedToDesktop ? desktop : 0;
        return placement;
    }
    if (!system.KeepBelowOnAllDesktops(window->winId())) {
        placement.outcome = DesktopPlacement::Outcome::Failed;
        return placement;
    }
    if (!window->property(KeepBelowProperty).toBool()) {
        window->setProperty(KeepBelowProperty, true);
        window->installEventFilter(new KeepBelowOnShow(system, window));
    }
    placement.outcome = DesktopPlacement::Outcome::KeptBelow;
    return placement;
}

} // namespace Pelorin
