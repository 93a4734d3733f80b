#include "app/binding/WindowRunCodeHost.h"

#include "platform/PlatformHelpers.h"
#include "skin/window/VbTimer.h"
#include "skin/window/frmMain.h"

#include <QGuiApplication>

namespace Pelorin {

WindowRunCodeHost::WindowRunCodeHost(frmMain& window, const SkinWindowProgram& program,
                                     std::function<void(int index)> rateStar)
    : DesktopRunCodeHost(&window), m_window(&window), m_program(program),
      m_rateStar(std::move(rateStar)) {}

bool WindowRunCodeHost::WindowGone() const {
    return m_window.isNull() || m_window->IsUnloaded();
}

void WindowRunCodeHost::UnloadWindow() {
    if (!WindowGone())
        m_window->Unload();
}

void WindowRunCodeHost::ShowWindow() {
    if (WindowGone())
        return;
    m_window->ShowWithoutActivating();
    m_window->raise();
}

void WindowRunCodeHost::NormalTransparency() {
    if (!WindowGone())
        m_window->NormalTransparency();
}

void WindowRunCodeHost::MoveWindow() {
    // The system's move follows the left button: without it held (a right press, a hotkey, a
    // timer) the move would end at once, so none starts.
    if (WindowGone() || !(QGuiApplication::mouseButtons() & Qt::LeftButton))
        return;
    m_window->MoveWindow(CursorPosition());
}

void WindowRunCodeHost::FadeIn() {
    if (!WindowGone())
        m_window->FadeIn();
}

void WindowRunCodeHost::FadeClose() {
    if (!WindowGone())
        m_window->FadeClose();
}

bool WindowRunCodeHost::ReloadTimer(int index) {
    VbTimer* timer = m_window ? m_window->tmr(index) : nullptr;
    if (timer == nullptr)
        return false;
    timer->SetEnabled(false);
    timer->SetEnabled(true);
    return true;
}

void WindowRunCodeHost::imgRatings_Click(int index) {
    if (m_rateStar)
        m_rateStar(index);
}

double WindowRunCodeHost::LeftTwips() const {
    return m_window ? m_window->LeftTwips() : 0;
}

double WindowRunCodeHost::TopTwips() const {
    return m_window ? m_window->TopTwips() : 0;
}

void WindowRunCodeHost::SetBusyPointer(bool busy) {
    if (WindowGone())
        return;
    if (busy)
        m_window->setCursor(Qt::WaitCursor);
    else
        m_window->unsetCursor();
}

void WindowRunCodeHost::OpenSkinWindow(const QString& skinFolder, std::int16_t left,
                                       std::int16_t top) {
    if (m_program.openSkinWindow)
        m_program.openSkinWindow(skinFolder, left, top);
}

void WindowRunCodeHost::EndProgram() {
    if (m_program.endProgram)
        m_program.endProgram();
}

QString WindowRunCodeHost::SkinFolder(const QString& skinName) const {
    return m_program.skinFolder ? m_program.skinFolder(skinName)
                                : ProgramFolder() + QStringLiteral("/Skins/") + skinName + u'/';
}

QString WindowRunCodeHost::ProgramFolder() const {
    return m_program.programFolder;
}

QString WindowRunCodeHost::PlayerApp() const {
    return m_program.playerApp ? m_program.playerApp() : QString();
}

bool WindowRunCodeHost::ShellOpen(const QString& file, const QString& parameters) {
    return m_program.shellOpen && m_program.shellOpen(file, parameters);
}

} // namespace Pelorin
