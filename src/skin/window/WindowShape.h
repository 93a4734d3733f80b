#pragma once

#include <QList>
#include <QRect>
#include <QRegion>
#include <QSize>

class QWidget;

namespace Pelorin {

// The rectangle (0, 0) to (width, height) with corners cut to ellipses `diameter` pixels wide
// and high (a diameter beyond the rectangle is taken as the rectangle's extent).
QRegion RoundRectRegion(QSize size, int diameter);

// The glass region of a window: its frame (outer size minus the client area, nothing for a
// frameless window) joined with the rectangles of its elements, which are in client pixels.
QRegion GlassRegion(QSize outer, QSize client, const QList<QRect>& elements);

// The rectangles of a window's controls that take part in its glass: every direct child widget
// that is not hidden, whose name does not begin with "tmr" (any case) or "ln", and whose Tag is
// not "NoResize".
QList<QRect> GlassElementRects(const QWidget* window);

// Makes `region` the window's shape. An empty region clips the whole window away (Qt would take
// an empty mask as "no mask", so it becomes a single pixel outside the window).
void ApplyWindowRegion(QWidget* window, const QRegion& region);

} // namespace Pelorin
