#pragma once

#include "runcode/RunCodeHost.h"

#include <QPointer>
#include <QWidget>

namespace Pelorin {

// The desktop half of a RunCodeHost for the real program: beeps, message boxes (modal, also
// written to stderr, answered by themselves with PELORIN_UNATTENDED=1), the user's trash and the
// event loop. The skin window's host derives from it and adds the window, the shell and the
// player link.
class DesktopRunCodeHost : public RunCodeHost {
public:
    // `window` parents the message boxes; it may be null.
    explicit DesktopRunCodeHost(QWidget* window = nullptr);

    void Beep() override;
    void ShowMessage(const QString& text, const QString& title, MessageIcon icon) override;
    bool MoveToTrash(const QString& path, QString* error) override;
    void LetMessagesRun() override;

private:
    QPointer<QWidget> m_window;
};

} // namespace Pelorin
