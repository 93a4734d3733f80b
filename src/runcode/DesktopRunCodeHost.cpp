#include "runcode/DesktopRunCodeHost.h"

#include "platform/MessageBox.h"
#include "platform/Trash.h"

#include <QApplication>
#include <QCoreApplication>

namespace Pelorin {

DesktopRunCodeHost::DesktopRunCodeHost(QWidget* window) : m_window(window) {}

void DesktopRunCodeHost::Beep() {
    QApplication::beep();
}

void DesktopRunCodeHost::ShowMessage(const QString& text, const QString& title, MessageIcon icon) {
    const MessageBox::Icon boxIcon =
        icon == MessageIcon::Critical ? MessageBox::Icon::Critical : MessageBox::Icon::Information;
    MessageBox::Show(text, title, boxIcon, MessageBox::Buttons::Ok, m_window.data());
}

bool DesktopRunCodeHost::MoveToTrash(const QString& path, QString* error) {
    return Pelorin::MoveToTrash(path, error);
}

void DesktopRunCodeHost::LetMessagesRun() {
    QCoreApplication::processEvents();
}

} // namespace Pelorin
