#pragma once

#include <QPainter>
#include <QRectF>

namespace Pelorin::SkinArt {

// The button symbols, drawn filled in the painter's current brush inside a square box. They are
// paths, not font characters, so the pictures come out the same on every machine.
enum class Glyph { Previous, PlayPause, Next, Stop, Close, Note };

void DrawGlyph(QPainter& painter, Glyph glyph, const QRectF& box, const QColor& colour);

// A five-pointed star filling the box, its points on a circle; inner radius as a share of outer.
QPainterPath StarPath(const QRectF& box, double innerRatio = 0.48);

} // namespace Pelorin::SkinArt
