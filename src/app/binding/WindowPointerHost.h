#pragma once

#include "skin/interaction/PointerHost.h"

#include <QHash>
#include <QPointer>
#include <functional>

namespace Pelorin {

class PlayerLink;
class TrackDisplay;
class frmMain;

// Pointer interaction's view of a real skin window: its image controls and pictures, the move
// handle, the hover tracker, the window's RunCode and interaction codes, the player link and the
// track display's artwork.
class WindowPointerHost final : public PointerHost {
public:
    // `showMenu` opens the window's pop-up menu.
    WindowPointerHost(frmMain& window, PlayerLink& link, TrackDisplay& display,
                      std::function<void()> showMenu);

    QString ImagePictures(int index) const override;
    QString ImageTag(int index) const override;
    QRect ImageRect(int index) const override;
    bool ImageExists(int index) const override;
    QImage LoadSkinPicture(const QString& name) override;
    void SetImagePicture(int index, const QImage& picture) override;
    void ShowArtworkIn(int index) override;
    void RunInterActionCode() override;
    void RunCode(const QString& code) override;
    bool WindowGone() const override;
    bool iTunesIsNothing(bool careForTrack) override;
    IiTunes* iTunesR() override;
    void MoveWithHandle(int index, QPoint position) override;
    void MoveWindow(int index, QPoint position) override;
    void SetTrackImageTimer(bool enabled) override;
    bool PointerWithin(const QRect& rect) const override;
    void FormMouseUp(int button) override;
    void ShowMessage(const QString& text) override;

private:
    QPoint GlobalPosition(int index, QPoint position) const;

    QPointer<frmMain> m_window;
    PlayerLink& m_link;
    TrackDisplay& m_display;
    std::function<void()> m_showMenu;
    // Hover and pressed pictures, read once.
    QHash<QString, QImage> m_pictures;
};

} // namespace Pelorin
