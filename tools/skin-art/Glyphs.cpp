#include "Glyphs.h"

#include <QPainterPath>
#include <cmath>
#include <numbers>

namespace Pelorin::SkinArt {

namespace {

// Triangles read heavier than bars of the same box, so they get a slightly smaller box.
QPainterPath Triangle(QPointF tip, double height, double width, bool pointsRight) {
    const double back = pointsRight ? tip.x() - width : tip.x() + width;
    QPainterPath path;
    path.moveTo(tip);
    path.lineTo(back, tip.y() - height / 2);
    path.lineTo(back, tip.y() + height / 2);
    path.closeSubpath();
    return path;
}

QPainterPath Bar(double left, double top, double width, double height) {
    QPainterPath path;
    path.addRoundedRect(QRectF(left, top, width, height), width * 0.3, width * 0.3);
    return path;
}

void DrawClose(QPainter& painter, const QRectF& box, const QColor& colour) {
    QPen pen(colour, box.width() * 0.13, Qt::SolidLine, Qt::RoundCap);
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    const QRectF cross = box.adjusted(box.width() * 0.28, box.height() * 0.28, -box.width() * 0.28,
                                      -box.height() * 0.28);
    painter.drawLine(cross.topLeft(), cross.bottomRight());
    painter.drawLine(cross.topRight(), cross.bottomLeft());
}

void DrawNote(QPainter& painter, const QRectF& box, const QColor& colour) {
    // Two beamed eighth notes.
    const double u = box.width() / 10;
    const QPointF o = box.topLeft();
    QPainterPath path;
    path.addEllipse(QPointF(o.x() + 3 * u, o.y() + 7.6 * u), 1.5 * u, 1.1 * u);
    path.addEllipse(QPointF(o.x() + 7.4 * u, o.y() + 6.8 * u), 1.5 * u, 1.1 * u);
    path.addRect(QRectF(o.x() + 4.0 * u, o.y() + 2.4 * u, 0.6 * u, 5.3 * u));
    path.addRect(QRectF(o.x() + 8.4 * u, o.y() + 1.6 * u, 0.6 * u, 5.3 * u));
    QPainterPath beam;
    beam.moveTo(o.x() + 4.0 * u, o.y() + 2.4 * u);
    beam.lineTo(o.x() + 9.0 * u, o.y() + 1.2 * u);
    beam.lineTo(o.x() + 9.0 * u, o.y() + 2.6 * u);
    beam.lineTo(o.x() + 4.0 * u, o.y() + 3.8 * u);
    beam.closeSubpath();
    path.addPath(beam);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    painter.drawPath(path.simplified());
}

} // namespace

QPainterPath StarPath(const QRectF& box, double innerRatio) {
    const QPointF centre(box.center().x(), box.top() + box.height() * 0.53);
    const double outer = box.width() / 2;
    const double inner = outer * innerRatio;
    QPainterPath path;
    for (int i = 0; i < 10; ++i) {
        const double radius = i % 2 == 0 ? outer : inner;
        const double angle = -std::numbers::pi / 2 + i * std::numbers::pi / 5;
        const QPointF point(centre.x() + radius * std::cos(angle),
                            centre.y() + radius * std::sin(angle));
        if (i == 0)
            path.moveTo(point);
        else
            path.lineTo(point);
    }
    path.closeSubpath();
    return path;
}

void DrawGlyph(QPainter& painter, Glyph glyph, const QRectF& box, const QColor& colour) {
    const double w = box.width();
    const double h = box.height();
    const double cx = box.center().x();
    const double cy = box.center().y();
    QPainterPath path;
    switch (glyph) {
    case Glyph::Previous:
        path.addPath(Bar(box.left() + w * 0.20, cy - h * 0.27, w * 0.11, h * 0.54));
        path.addPath(Triangle(QPointF(box.left() + w * 0.30, cy), h * 0.54, w * 0.48, false));
        break;
    case Glyph::Next:
        path.addPath(Bar(box.right() - w * 0.31, cy - h * 0.27, w * 0.11, h * 0.54));
        path.addPath(Triangle(QPointF(box.right() - w * 0.30, cy), h * 0.54, w * 0.48, true));
        break;
    case Glyph::PlayPause:
        // The button toggles, so it shows both: a play triangle and the pause bars.
        path.addPath(Triangle(QPointF(cx + w * 0.06, cy), h * 0.42, w * 0.30, true));
        path.addPath(Bar(cx + w * 0.11, cy - h * 0.21, w * 0.075, h * 0.42));
        path.addPath(Bar(cx + w * 0.225, cy - h * 0.21, w * 0.075, h * 0.42));
        path.translate(-w * 0.05, 0);
        break;
    case Glyph::Stop:
        path.addRoundedRect(QRectF(cx - w * 0.22, cy - h * 0.22, w * 0.44, h * 0.44), w * 0.06,
                            w * 0.06);
        break;
    case Glyph::Close:
        DrawClose(painter, box, colour);
        return;
    case Glyph::Note:
        DrawNote(painter, box, colour);
        return;
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    painter.drawPath(path);
}

} // namespace Pelorin::SkinArt
