#pragma once

#include <QString>
#include <QWindow>

class QWidget;

namespace Pelorin {

class WindowSystem;

// Makes the window "layered" with a constant alpha: 255 is opaque but still layered, smaller is
// more see-through. A value outside 0..255 is taken as its low byte (256 is 0, -1 is 255), as a
// one-byte parameter would. Qt's window opacity follows; on X11 the opacity property is written
// for every layered window, 255 included. Returns false when the window system has no such
// property (the flag, the alpha and Qt's opacity are still set).
bool SetWindowAlpha(WindowSystem& system, QWidget* window, int alpha);

// Whether SetWindowAlpha was ever applied to the window, and the alpha it set (255 otherwise).
bool IsLayered(const QWidget* window);
int WindowAlpha(const QWidget* window);

// What PutOnDesktop did.
struct DesktopPlacement {
    enum class Outcome {
        // The window became a child of the desktop window (type "desktop").
        ParentedToDesktop,
        // No desktop window: the window is kept below the others, out of the task bar and the
        // pager, on every desktop (re-applied whenever it is shown again).
        KeptBelow,
        // The window system cannot place windows (offscreen, Wayland).
        NotAvailable,
        // The window system refused.
        Failed,
    };
    Outcome outcome = Outcome::NotAvailable;
    // The desktop window the window was parented to; 0 otherwise.
    WId desktopWindow = 0;

    // One line for stderr and diagnostics.
    QString Describe() const;
};

// Fixes the window to the desktop. Asked again, it does it again.
DesktopPlacement PutOnDesktop(WindowSystem& system, QWidget* window);

} // namespace Pelorin
