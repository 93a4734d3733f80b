#include "app/binding/WindowPointerHost.h"

#include "base/FileNames.h"
#include "base/VbError.h"
#include "display/TrackDisplay.h"
#include "platform/MessageBox.h"
#include "platform/PictureLoader.h"
#include "platform/PlatformHelpers.h"
#include "skin/window/SkinControls.h"
#include "skin/window/VbTimer.h"
#include "skin/window/frmMain.h"

namespace Pelorin {

WindowPointerHost::WindowPointerHost(frmMain& window, TrackDisplay& display,
                                     std::function<void()> showMenu)
    : m_window(&window), m_display(display), m_showMenu(std::move(showMenu)) {}

QString WindowPointerHost::ImagePictures(int index) const {
    if (!m_window)
        return QString();
    return m_window->Model().ImagePictures.value(index);
}

QString WindowPointerHost::ImageTag(int index) const {
    const PictureBox* image = m_window ? m_window->img(index) : nullptr;
    return image != nullptr ? ControlTag(image) : QString();
}

QRect WindowPointerHost::ImageRect(int index) const {
    const PictureBox* image = m_window ? m_window->img(index) : nullptr;
    return image != nullptr ? image->geometry() : QRect();
}

bool WindowPointerHost::ImageExists(int index) const {
    return m_window && m_window->img(index) != nullptr;
}

QImage WindowPointerHost::LoadSkinPicture(const QString& name) {
    if (!m_window)
        return QImage();
    const QString path = FileNames::InFolder(m_window->SkinFolder(), name);
    const QImage loaded = m_window->SkinPicture(path);
    if (!loaded.isNull())
        return loaded;
    const auto cached = m_pictures.constFind(path);
    if (cached != m_pictures.constEnd())
        return *cached;
    try {
        const QImage picture = LoadPicture(path);
        m_pictures.insert(path, picture);
        return picture;
    } catch (const VbError& error) {
        // The user is told which picture of the skin is missing.
        throw VbError(error.number(), error.description() + QStringLiteral(": ") + path);
    }
}

void WindowPointerHost::SetImagePicture(int index, const QImage& picture) {
    if (PictureBox* image = m_window ? m_window->img(index) : nullptr)
        image->SetPicture(picture);
}

void WindowPointerHost::ShowArtworkIn(int index) {
    if (m_window)
        m_display.ShowArtworkIn(index);
}

void WindowPointerHost::RunInterActionCode() {
    if (!WindowGone())
        m_window->RunInterActionCode();
}

bool WindowPointerHost::WindowGone() const {
    return m_window.isNull() || m_window->IsUnloaded();
}

QPoint WindowPointerHost::GlobalPosition(int index, QPoint position) const {
    const PictureBox* image = m_window ? m_window->img(index) : nullptr;
    return image != nullptr ? image->mapToGlobal(position) : CursorPosition();
}

void WindowPointerHost::MoveWithHandle(int index, QPoint position) {
    if (WindowGone())
        return;
    // The move handle takes the press (lblMove_MouseDown): the window moves, the handle goes.
    m_window->StartMoveWindow();
    m_window->MoveWindow(GlobalPosition(index, position));
    m_window->lblMove()->hide();
}

void WindowPointerHost::MoveWindow(int index, QPoint position) {
    if (!WindowGone())
        m_window->MoveWindow(GlobalPosition(index, position));
}

void WindowPointerHost::SetTrackImageTimer(bool enabled) {
    if (VbTimer* timer = m_window ? m_window->tmrTrackImage() : nullptr) {
        if (timer->Enabled() != enabled)
            timer->SetEnabled(enabled);
    }
}

bool WindowPointerHost::PointerWithin(const QRect& rect) const {
    if (!m_window)
        return false;
    const QPoint pointer = m_window->mapFromGlobal(CursorPosition());
    // The edges count as inside, as the release's inside test counts them.
    return pointer.x() >= rect.left() && pointer.y() >= rect.top() &&
           pointer.x() <= rect.left() + rect.width() && pointer.y() <= rect.top() + rect.height();
}

void WindowPointerHost::FormMouseUp(int button) {
    if (button == 2 && m_showMenu && !WindowGone())
        m_showMenu();
}

void WindowPointerHost::ShowMessage(const QString& text) {
    MessageBox::Show(text, QString(), MessageBox::Icon::Critical, MessageBox::Buttons::Ok,
                     m_window.data());
}

} // namespace Pelorin
