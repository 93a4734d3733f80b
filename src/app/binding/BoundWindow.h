#pragma once

#include "app/binding/SkinWindowProgram.h"
#include "display/DisplayHost.h"
#include "runcode/DesktopRunCodeHost.h"
#include "skin/SkinModel.h"
#include "skin/interaction/PointerHost.h"

#include <QHash>
#include <QPointer>
#include <functional>

namespace Pelorin {

class TrackDisplay;
class frmMain;

// A real skin window as the command language, the track display and the pointer code see it:
// its model, widgets, timers, effects and moving; the program's shell operations; the desktop
// (message boxes, beeps, trash, the event loop) from DesktopRunCodeHost.
//
// This is the one place that asks whether the window still lives. A code may close the window
// half way through a call, and the window may even have been deleted: then everything does
// nothing and answers empty. Commands that act on the window as the user sees it (showing,
// moving, fading, unloading, running codes) also stop once it has begun to unload; what the
// display writes into its controls goes on until the window is deleted.
class BoundWindow final : public DesktopRunCodeHost, public DisplayHost, public PointerHost {
public:
    BoundWindow(frmMain& window, const SkinWindowProgram& program);

    // The window's track display (stars clicked by "Nstar", artwork shown by an image) and its
    // pop-up menu; set once both exist.
    void SetDisplay(TrackDisplay* display);
    void SetShowMenu(std::function<void()> showMenu);

    // RunCodeHost and PointerHost
    bool WindowGone() const override;
    // RunCodeHost and DisplayHost
    void RunInterActionCode() override;

    // RunCodeHost
    using DesktopRunCodeHost::ShowMessage;
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
    bool MayChangeLibrary(const QString& command) override;
    bool ShellOpen(const QString& file, const QString& parameters) override;

    // DisplayHost
    SkinModel& Model() override;
    void Repaint() override;
    void PaintLabelsNow() override;
    void Unload() override;
    QFont LabelFont(int index) const override;
    int LabelWidth(int index) const override;
    void SetLabelCaption(int index, const QString& caption) override;
    void SetProgressWidth(float width) override;
    void SetRatingStar(int index, const QRect& geometry, const QImage& picture) override;
    void SetImageArtwork(int index, const QImage& picture) override;

    // PointerHost
    QString ImagePictures(int index) const override;
    QString ImageTag(int index) const override;
    QRect ImageRect(int index) const override;
    bool ImageExists(int index) const override;
    QImage LoadSkinPicture(const QString& name) override;
    void SetImagePicture(int index, const QImage& picture) override;
    void ShowArtworkIn(int index) override;
    void ArtworkChanged() override;
    void MoveWithHandle(int index, QPoint position) override;
    void MoveWindow(int index, QPoint position) override;
    void SetTrackImageTimer(bool enabled) override;
    bool PointerWithin(const QRect& rect) const override;
    void FormMouseUp(int button) override;
    void ShowMessage(const QString& text) override;

private:
    QPoint GlobalPosition(int index, QPoint position) const;

    QPointer<frmMain> m_window;
    const SkinWindowProgram& m_program;
    TrackDisplay* m_display = nullptr;
    std::function<void()> m_showMenu;
    // Read instead of the model of a window that has gone.
    SkinModel m_spareModel;
    // Hover and pressed pictures, read once.
    QHash<QString, QImage> m_pictures;
};

} // namespace Pelorin
