#pragma once

#include "Glyphs.h"

#include <QImage>
#include <QList>
#include <QRect>
#include <QSize>

namespace Pelorin::SkinArt {

// Element pictures are drawn at twice the size of the element that shows them: the skin window
// stretches them to their element, so they stay sharp on high-density screens and lose nothing at
// 1:1. The background is the exception (see Background).
inline constexpr int Scale = 2;

enum class ButtonState { Normal, Hover, Pressed };

// A flat glyph button: the bare glyph, a soft halo under the pointer, an accent disc when pressed.
QImage FlatButton(Glyph glyph, ButtonState state, QSize size);
// The main button: a light disc with a dark glyph; a ring under the pointer; accent when pressed.
QImage DiscButton(Glyph glyph, ButtonState state, QSize size);
// The close cross: grey, then a red halo, then a red disc.
QImage CloseButton(ButtonState state, QSize size);
QImage Star(bool lit, QSize size);
// The progress bar at its full width: the window shows its left part as the track plays.
QImage ProgressBar(QSize size);

// What the background of a skin carries besides its body: the grooves that the progress bar
// fills, and a well with a note where the artwork goes (seen while a track has no cover).
struct Body {
    QSize Size;
    int CornerRadius = 0; // matches the window's rounded corners ("roundwindow" / 2)
    QList<QRect> Grooves;
    QList<QRect> ArtworkWells;
};
// At the window's own size: the window draws its background picture unscaled.
QImage Background(const Body& body);

} // namespace Pelorin::SkinArt
