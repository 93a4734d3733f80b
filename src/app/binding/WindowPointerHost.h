#pragma once

#include "skin/interaction/PointerHost.h"

#include <QHash>
#include <QPointer>
#include <functional>

namespace Pelorin {

class TrackDisplay;
class frmMain;

// Pointer interaction's view of a real skin window: its image controls and pictures, the move
// handle, the hover tracker, the window's interaction codes and the track display's artwork.
class WindowPointerHost final : public PointerHost {
public:
    // `showMenu` opens the window's pop-up menu.
    WindowPointerHost(frmMain& window, TrackDisplay& display, std::function<void()> showMenu);

    QString ImagePictures(int index) const override;
    QString ImageTag(int index) const override;
    QRect ImageRect(int index) const override;
    bool ImageExists(int index) const override;
    QImage LoadSkinPicture(const QString& name) override;
    void SetImagePicture(int index, const QImage& picture) override;
    void ShowArtworkIn(int index) override;
    void RunInterActionCode() override;
    bool WindowGone() const override;
    void MoveWithHandle(int index, QPoint position) override;
    void MoveWindow(int index, QPoint position) override;
    void SetTrackImageTimer(bool enabled) override;
    bool PointerWithin(const QRect& rect) const override;
    void FormMouseUp(int button) override;
    void ShowMessage(const QString& text) override;

private:
    QPoint GlobalPosition(int index, QPoint position) const;

    QPointer<frmMain> m_window;
    TrackDisplay& m_display;
    std::function<void()> m_showMenu;
    // Hover and pressed pictures, read once.
    QHash<QString, QImage> m_pictures;
};

} // namespace Pelorin
