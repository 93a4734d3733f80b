#pragma once

#include <QFont>
#include <QImage>
#include <QRect>
#include <QString>

namespace Pelorin {

class SkinModel;

// What the track display needs from the skin window it fills; the player comes through the
// window's WindowPlayer. The window (frmMain) implements it over its real widgets;
// MemoryDisplayHost keeps everything in memory for tests.
//
// Indexes follow the skin's numbering: labels and images from 1 (element 0 is the never-shown
// model), stars 0 to 4. The display only calls these for indexes that exist in Model().
class DisplayHost {
public:
    virtual ~DisplayHost() = default;

    // The skin's model: label templates (lblInfo(i).Tag), NoScrollLabels, RatingsSpec,
    // SkinFolder, HasArtwork, ImagePictures, imgProgress.Tag and the closing flag are read;
    // LabelTexts is written.
    virtual SkinModel& Model() = 0;

    // The window's plain repaint.
    virtual void Repaint() = 0;
    // Paints the labels at once, before the refresh goes on to slower work.
    virtual void PaintLabelsNow() = 0;
    // Finishes a close begun earlier. The window must stay alive until control returns to the
    // event loop, and a second call while it closes does nothing.
    virtual void Unload() = 0;
    // Runs the window's "anyinteraction" codes (every press does).
    virtual void RunInterActionCode() = 0;

    // lblInfo(index): the font its text is drawn in (scrollWidth(index) carries the same one),
    // its width in pixels, and its caption.
    virtual QFont LabelFont(int index) const = 0;
    virtual int LabelWidth(int index) const = 0;
    virtual void SetLabelCaption(int index, const QString& caption) = 0;

    // imgProgress: the visible width of the bar in pixels, fractions kept (it is not clamped to
    // the full width).
    virtual void SetProgressWidth(float width) = 0;

    // imgRatings(index), index 0..4: placed at `geometry` (pixels), showing `picture` stretched
    // to it (a null picture shows nothing, leaving a click area), and made visible.
    virtual void SetRatingStar(int index, const QRect& geometry, const QImage& picture) = 0;

    // img(index) of an ARTWORK image: its picture, drawn at the image's own place and size;
    // a null picture clears it.
    virtual void SetImageArtwork(int index, const QImage& picture) = 0;
};

} // namespace Pelorin
