#include "app/binding/BoundWindow.h"

#include "base/FileNames.h"
#include "base/VbError.h"
#include "display/TrackDisplay.h"
#include "platform/MessageBox.h"
#include "platform/PictureLoader.h"
#include "platform/PlatformHelpers.h"
#include "skin/window/SkinControls.h"
#include "skin/window/VbTimer.h"
#include "skin/window/frmMain.h"

#include <QDir>
#include <QGuiApplication>
#include <algorithm>
#include <cmath>

namespace Pelorin {

BoundWindow::BoundWindow(frmMain& window, const SkinWindowProgram& program)
    : DesktopRunCodeHost(&window), m_window(&window), m_program(program) {}

void BoundWindow::SetDisplay(TrackDisplay* display) {
    m_display = display;
}

void BoundWindow::SetShowMenu(std::function<void()> showMenu) {
    m_showMenu = std::move(showMenu);
}

bool BoundWindow::WindowGone() const {
    return m_window.isNull() || m_window->IsUnloaded();
}

// The command language's window.

void BoundWindow::UnloadWindow() {
    if (!WindowGone())
        m_window->Unload();
}

void BoundWindow::ShowWindow() {
    if (WindowGone())
        return;
    m_window->ShowWithoutActivating();
    m_window->raise();
}

void BoundWindow::NormalTransparency() {
    if (!WindowGone())
        m_window->NormalTransparency();
}

void BoundWindow::MoveWindow() {
    // The system's move follows the left button: without it held (a right press, a hotkey, a
    // timer) the move would end at once, so none starts.
    if (WindowGone() || !(QGuiApplication::mouseButtons() & Qt::LeftButton))
        return;
    m_window->MoveWindow(CursorPosition());
}

void BoundWindow::FadeIn() {
    if (!WindowGone())
        m_window->FadeIn();
}

void BoundWindow::FadeClose() {
    if (!WindowGone())
        m_window->FadeClose();
}

bool BoundWindow::ReloadTimer(int index) {
    VbTimer* timer = m_window ? m_window->tmr(index) : nullptr;
    if (timer == nullptr)
        return false;
    timer->SetEnabled(false);
    timer->SetEnabled(true);
    return true;
}

void BoundWindow::imgRatings_Click(int index) {
    // The command's failure belongs to the command language, which beeps or reports it.
    if (m_display != nullptr)
        m_display->RateByCommand(index);
}

double BoundWindow::LeftTwips() const {
    return m_window ? m_window->LeftTwips() : 0;
}

double BoundWindow::TopTwips() const {
    return m_window ? m_window->TopTwips() : 0;
}

void BoundWindow::SetBusyPointer(bool busy) {
    if (WindowGone())
        return;
    if (busy)
        m_window->setCursor(Qt::WaitCursor);
    else
        m_window->unsetCursor();
}

void BoundWindow::OpenSkinWindow(const QString& skinFolder, std::int16_t left, std::int16_t top) {
    if (m_program.openSkinWindow)
        m_program.openSkinWindow(skinFolder, left, top);
}

void BoundWindow::EndProgram() {
    if (m_program.endProgram)
        m_program.endProgram();
}

QString BoundWindow::SkinFolder(const QString& skinName) const {
    return m_program.skinFolder ? m_program.skinFolder(skinName)
                                : ProgramFolder() + QStringLiteral("/Skins/") + skinName + u'/';
}

QString BoundWindow::ProgramFolder() const {
    return m_program.programFolder;
}

QString BoundWindow::PlayerApp() const {
    return m_program.playerApp ? m_program.playerApp() : QString();
}

bool BoundWindow::ShellOpen(const QString& file, const QString& parameters) {
    return m_program.shellOpen && m_program.shellOpen(file, parameters);
}

bool BoundWindow::MayChangeLibrary(const QString& command) {
    if (m_window.isNull() || !m_program.mayChangeLibrary)
        return false;
    return m_program.mayChangeLibrary(QDir(m_window->SkinFolder()).dirName(), command);
}

// The track display's window.

SkinModel& BoundWindow::Model() {
    return m_window ? m_window->Model() : m_spareModel;
}

void BoundWindow::Repaint() {
    // The window's plain redraw, which nothing depends on. Every control repaints itself when
    // what it shows changes, and nothing else on the window changes between two redraws: a
    // repaint of the whole window would draw the same pixels again, at every scroll step.
}

void BoundWindow::PaintLabelsNow() {
    if (!m_window)
        return;
    for (int i = 1; SkinLabelControl* label = m_window->lblInfo(i); ++i) {
        if (label->isVisible())
            label->repaint();
    }
}

void BoundWindow::Unload() {
    if (m_window)
        m_window->Unload();
}

QFont BoundWindow::LabelFont(int index) const {
    const SkinLabelControl* label = m_window ? m_window->lblInfo(index) : nullptr;
    return label != nullptr ? label->font() : QFont();
}

int BoundWindow::LabelWidth(int index) const {
    const SkinLabelControl* label = m_window ? m_window->lblInfo(index) : nullptr;
    return label != nullptr ? label->width() : 0;
}

void BoundWindow::SetLabelCaption(int index, const QString& caption) {
    if (SkinLabelControl* label = m_window ? m_window->lblInfo(index) : nullptr)
        label->setText(caption);
}

void BoundWindow::SetProgressWidth(float width) {
    PictureBox* bar = m_window ? m_window->imgProgress() : nullptr;
    if (bar == nullptr)
        return;
    // A widget has whole pixels and no negative width; the picture stays stretched to the full
    // width, so the bar shows its left part.
    const float pixels =
        std::isfinite(width) ? std::clamp(std::round(width), 0.0F, 32767.0F) : 0.0F;
    bar->resize(static_cast<int>(pixels), bar->height());
}

void BoundWindow::SetRatingStar(int index, const QRect& geometry, const QImage& picture) {
    PictureBox* star = m_window ? m_window->imgRatings(index) : nullptr;
    if (star == nullptr)
        return;
    star->setGeometry(geometry);
    star->SetPicture(picture);
    star->show();
}

void BoundWindow::SetImageArtwork(int index, const QImage& picture) {
    if (PictureBox* image = m_window ? m_window->img(index) : nullptr)
        image->SetPicture(picture);
}

// Pointer interaction's window.
QString BoundWindow::ImagePictures(int index) const {
    if (!m_window)
        return QString();
    return m_window->Model().ImagePictures.value(index);
}

QString BoundWindow::ImageTag(int index) const {
    const PictureBox* image = m_window ? m_window->img(index) : nullptr;
    return image != nullptr ? ControlTag(image) : QString();
}

QRect BoundWindow::ImageRect(int index) const {
    const PictureBox* image = m_window ? m_window->img(index) : nullptr;
    return image != nullptr ? image->geometry() : QRect();
}

bool BoundWindow::ImageExists(int index) const {
    return m_window && m_window->img(index) != nullptr;
}

QImage BoundWindow::LoadSkinPicture(const QString& name) {
    if (!m_window)
        return QImage();
    const QString path = FileNames::InFolder(m_window->SkinFolder(), name);
    if (!FileNames::Confined(m_window->SkinFolder(), name, path))
        throw VbError(VbError::CannotLoadFile().number(),
                      VbError::CannotLoadFile().description() + QStringLiteral(": ") + path);
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

void BoundWindow::SetImagePicture(int index, const QImage& picture) {
    if (PictureBox* image = m_window ? m_window->img(index) : nullptr)
        image->SetPicture(picture);
}

void BoundWindow::ArtworkChanged() {
    if (m_display != nullptr)
        m_display->ArtworkChanged();
}

void BoundWindow::ShowArtworkIn(int index) {
    if (m_window && m_display != nullptr)
        m_display->ShowArtworkIn(index);
}

void BoundWindow::RunInterActionCode() {
    if (!WindowGone())
        m_window->RunInterActionCode();
}

QPoint BoundWindow::GlobalPosition(int index, QPoint position) const {
    const PictureBox* image = m_window ? m_window->img(index) : nullptr;
    return image != nullptr ? image->mapToGlobal(position) : CursorPosition();
}

void BoundWindow::MoveWithHandle(int index, QPoint position) {
    if (WindowGone())
        return;
    // The move handle takes the press (lblMove_MouseDown): the window moves, the handle goes.
    m_window->StartMoveWindow();
    m_window->MoveWindow(GlobalPosition(index, position));
    m_window->lblMove()->hide();
}

void BoundWindow::MoveWindow(int index, QPoint position) {
    if (!WindowGone())
        m_window->MoveWindow(GlobalPosition(index, position));
}

void BoundWindow::SetTrackImageTimer(bool enabled) {
    if (VbTimer* timer = m_window ? m_window->tmrTrackImage() : nullptr) {
        if (timer->Enabled() != enabled)
            timer->SetEnabled(enabled);
    }
}

bool BoundWindow::PointerWithin(const QRect& rect) const {
    if (!m_window)
        return false;
    const QPoint pointer = m_window->mapFromGlobal(CursorPosition());
    // The edges count as inside, as the release's inside test counts them.
    return pointer.x() >= rect.left() && pointer.y() >= rect.top() &&
           pointer.x() <= rect.left() + rect.width() && pointer.y() <= rect.top() + rect.height();
}

void BoundWindow::FormMouseUp(int button) {
    if (button == 2 && m_showMenu && !WindowGone())
        m_showMenu();
}

void BoundWindow::ShowMessage(const QString& text) {
    MessageBox::Show(text, QString(), MessageBox::Icon::Critical, MessageBox::Buttons::Ok,
                     m_window.data());
}

} // namespace Pelorin
