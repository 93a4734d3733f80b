#pragma once

#include <QPoint>
#include <functional>

class QMenu;
class QWidget;

namespace Pelorin {

// The pop-up menu a right release on a skin window opens. Until the tray's full menu exists it
// offers what every skin needs: "Close Skin" (this window) and "Quit" (every window, and so the
// program).
class SkinWindowMenu {
public:
    struct Actions {
        std::function<void()> closeSkin;
        std::function<void()> quit;
    };

    // Builds the menu (it deletes itself once closed).
    static QMenu* Create(QWidget* window, Actions actions);
    // Builds it and opens it at `globalPosition` without waiting for a choice.
    static QMenu* Popup(QWidget* window, QPoint globalPosition, Actions actions);
};

} // namespace Pelorin
