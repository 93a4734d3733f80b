#pragma once

#include <QImage>
#include <QPoint>
#include <QRect>
#include <QString>

namespace Pelorin {

// What pointer interaction needs of its skin window. The program's window binding implements it
// over frmMain; tests give their own. Image indexes follow the skin's numbering (img(1) is the
// first "image" line); the interaction only asks about images that exist.
class PointerHost {
public:
    virtual ~PointerHost() = default;

    // img(index): its picture definition ("normal|hover|pressed", kept whole from the skin line),
    // its code (Tag), and its place in the window in pixels.
    virtual QString ImagePictures(int index) const = 0;
    virtual QString ImageTag(int index) const = 0;
    virtual QRect ImageRect(int index) const = 0;
    virtual bool ImageExists(int index) const = 0;

    // A picture of the skin by the name a skin line gives (relative to the skin folder). Throws
    // VbError when it cannot be loaded.
    virtual QImage LoadSkinPicture(const QString& name) = 0;
    // img(index) shows `picture`; a null picture clears it.
    virtual void SetImagePicture(int index, const QImage& picture) = 0;
    // img(index) shows the current track's cover (the track display's ShowArtworkIn).
    virtual void ShowArtworkIn(int index) = 0;
    // The current track's pictures changed: the next cover shown reads them afresh.
    virtual void ArtworkChanged() = 0;

    // The window's "anyinteraction" codes (raising the interaction flag).
    virtual void RunInterActionCode() = 0;
    // True once the window has started unloading (a code may close it).
    virtual bool WindowGone() const = 0;

    // Moving the window with the button that is down: through the move handle (a Shift press),
    // or straight away (a "movewindow" image). `position` is the press in img(index)'s pixels.
    virtual void MoveWithHandle(int index, QPoint position) = 0;
    virtual void MoveWindow(int index, QPoint position) = 0;

    // tmrTrackImage on or off, and whether the pointer lies within `rect` (window pixels).
    virtual void SetTrackImageTimer(bool enabled) = 0;
    virtual bool PointerWithin(const QRect& rect) const = 0;

    // The window's right-button release (Form_MouseUp): the pop-up menu.
    virtual void FormMouseUp(int button) = 0;

    // A message box with the program's title.
    virtual void ShowMessage(const QString& text) = 0;
};

} // namespace Pelorin
