#pragma once

#include "app/binding/SkinWindowProgram.h"
#include "runcode/DesktopRunCodeHost.h"

#include <QPointer>
#include <functional>

namespace Pelorin {

class frmMain;

// The command language's view of a real skin window: the window's effects, timers, stacking
// and moving; its player link; the program's shell operations; and the desktop (message boxes,
// beeps, trash, the event loop) from DesktopRunCodeHost. Window commands do nothing once the
// window has gone.
class WindowRunCodeHost final : public DesktopRunCodeHost {
public:
    // `rateStar` is the ratings control's click (the track display's).
    WindowRunCodeHost(frmMain& window, const SkinWindowProgram& program,
                      std::function<void(int index)> rateStar);

    bool WindowGone() const override;
    void UnloadWindow() override;
    void ShowWindow() override;
    void NormalTransparency() override;
    void MoveWindow() override;
    void FadeIn() override;
    void FadeClose() override;
    bool ReloadTimer(int index) override;
    void imgRatings_Click(int index) override;
    double LeftTwips() const override;
    double TopTwips() const override;
    void SetBusyPointer(bool busy) override;

    void OpenSkinWindow(const QString& skinFolder, std::int16_t left, std::int16_t top) override;
    void EndProgram() override;
    QString SkinFolder(const QString& skinName) const override;
    QString ProgramFolder() const override;
    QString PlayerApp() const override;
    bool ShellOpen(const QString& file, const QString& parameters) override;

private:
    QPointer<frmMain> m_window;
    const SkinWindowProgram& m_program;
    std::function<void(int)> m_rateStar;
};

} // namespace Pelorin
