#include "app/binding/SkinWindowMenu.h"

#include <QAction>
#include <QMenu>
#include <QTimer>

namespace Pelorin {

QMenu* SkinWindowMenu::Create(QWidget* window, Actions actions) {
    auto* menu = new QMenu(window);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    // The choice runs after the menu has closed: closing the skin deletes the menu's parent.
    QAction* closeSkin = menu->addAction(QStringLiteral("Close Skin"));
    QObject::connect(closeSkin, &QAction::triggered, menu, [run = actions.closeSkin] {
        if (run)
            QTimer::singleShot(0, run);
    });
    QAction* quit = menu->addAction(QStringLiteral("Quit"));
    QObject::connect(quit, &QAction::triggered, menu, [run = actions.quit] {
        if (run)
            QTimer::singleShot(0, run);
    });
    return menu;
}

QMenu* SkinWindowMenu::Popup(QWidget* window, QPoint globalPosition, Actions actions) {
    QMenu* menu = Create(window, std::move(actions));
    menu->popup(globalPosition);
    return menu;
}

} // namespace Pelorin
