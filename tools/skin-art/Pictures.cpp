#include "Pictures.h"

#include "Palette.h"

#include <QLinearGradient>
#include <QPainterPath>
#include <QRadialGradient>
#include <algorithm>

namespace Pelorin::SkinArt {

namespace {

QImage Canvas(QSize size, int scale = Scale) {
    QImage image(size * scale, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

// A painter that draws in the element's own pixels, antialiased.
void Prepare(QPainter& painter, int scale = Scale) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(scale, scale);
}

QRectF Square(QSize size) {
    const double side = std::min(size.width(), size.height());
    return QRectF((size.width() - side) / 2, (size.height() - side) / 2, side, side);
}

QLinearGradient Accent(const QRectF& over) {
    QLinearGradient gradient(over.topLeft(), over.bottomRight());
    gradient.setColorAt(0, Palette::AccentStart());
    gradient.setColorAt(1, Palette::AccentEnd());
    return gradient;
}

// The glyph of a pressed button sits a little smaller, as if pushed in.
QRectF Pushed(const QRectF& box) {
    return box.adjusted(box.width() * 0.05, box.height() * 0.05, -box.width() * 0.05,
                        -box.height() * 0.05);
}

} // namespace

QImage FlatButton(Glyph glyph, ButtonState state, QSize size) {
    QImage image = Canvas(size);
    QPainter painter(&image);
    Prepare(painter);
    const QRectF box = Square(size);
    switch (state) {
    case ButtonState::Normal:
        DrawGlyph(painter, glyph, box, Palette::Glyph());
        break;
    case ButtonState::Hover:
        painter.setPen(Qt::NoPen);
        painter.setBrush(Palette::HoverHalo());
        painter.drawEllipse(box.adjusted(0.5, 0.5, -0.5, -0.5));
        DrawGlyph(painter, glyph, box, Palette::GlyphHover());
        break;
    case ButtonState::Pressed:
        painter.setPen(Qt::NoPen);
        painter.setBrush(Accent(box));
        painter.drawEllipse(box.adjusted(0.5, 0.5, -0.5, -0.5));
        DrawGlyph(painter, glyph, Pushed(box), Palette::GlyphHover());
        break;
    }
    return image;
}

QImage DiscButton(Glyph glyph, ButtonState state, QSize size) {
    QImage image = Canvas(size);
    QPainter painter(&image);
    Prepare(painter);
    const QRectF box = Square(size);
    const QRectF disc = box.adjusted(1.5, 1.5, -1.5, -1.5);
    painter.setPen(Qt::NoPen);
    switch (state) {
    case ButtonState::Normal:
        painter.setBrush(Palette::Knob());
        painter.drawEllipse(disc);
        DrawGlyph(painter, glyph, disc, Palette::KnobGlyph());
        break;
    case ButtonState::Hover: {
        QColor ring = Palette::AccentStart();
        ring.setAlpha(150);
        painter.setBrush(ring);
        painter.drawEllipse(box);
        painter.setBrush(QColor(Qt::white));
        painter.drawEllipse(disc);
        DrawGlyph(painter, glyph, disc, Palette::KnobGlyph());
        break;
    }
    case ButtonState::Pressed:
        painter.setBrush(Accent(disc));
        painter.drawEllipse(disc);
        DrawGlyph(painter, glyph, Pushed(disc), Palette::GlyphHover());
        break;
    }
    return image;
}

QImage CloseButton(ButtonState state, QSize size) {
    QImage image = Canvas(size);
    QPainter painter(&image);
    Prepare(painter);
    const QRectF box = Square(size);
    switch (state) {
    case ButtonState::Normal:
        DrawGlyph(painter, Glyph::Close, box, Palette::Glyph().darker(140));
        break;
    case ButtonState::Hover:
        painter.setPen(Qt::NoPen);
        painter.setBrush(Palette::CloseHover());
        painter.drawEllipse(box.adjusted(0.5, 0.5, -0.5, -0.5));
        DrawGlyph(painter, Glyph::Close, box, Palette::GlyphHover());
        break;
    case ButtonState::Pressed:
        painter.setPen(Qt::NoPen);
        painter.setBrush(Palette::ClosePressed());
        painter.drawEllipse(box.adjusted(0.5, 0.5, -0.5, -0.5));
        DrawGlyph(painter, Glyph::Close, Pushed(box), Palette::GlyphHover());
        break;
    }
    return image;
}

QImage Star(bool lit, QSize size) {
    QImage image = Canvas(size);
    QPainter painter(&image);
    Prepare(painter);
    const QRectF box = Square(size).adjusted(0.6, 0.6, -0.6, -0.6);
    const QPainterPath star = StarPath(box);
    if (lit) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(Palette::StarLit());
    } else {
        painter.setPen(
            QPen(Palette::StarUnlitEdge(), 0.9, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.setBrush(Palette::StarUnlitFill());
    }
    painter.drawPath(star);
    return image;
}

QImage ProgressBar(QSize size) {
    QImage image = Canvas(size);
    QPainter painter(&image);
    Prepare(painter);
    const QRectF bar(0, 0, size.width(), size.height());
    QLinearGradient gradient(bar.topLeft(), bar.topRight());
    gradient.setColorAt(0, Palette::AccentStart());
    gradient.setColorAt(1, Palette::AccentEnd());
    painter.setPen(Qt::NoPen);
    painter.setBrush(gradient);
    const double radius = size.height() / 2.0;
    painter.drawRoundedRect(bar, radius, radius);
    return image;
}

QImage Background(const Body& body) {
    // The window draws its background picture pixel for pixel, not stretched.
    QImage image = Canvas(body.Size, 1);
    QPainter painter(&image);
    Prepare(painter, 1);
    const QRectF frame(0, 0, body.Size.width(), body.Size.height());
    const double radius = body.CornerRadius;

    QLinearGradient fill(frame.topLeft(), frame.bottomLeft());
    fill.setColorAt(0, Palette::BodyTop());
    fill.setColorAt(1, Palette::BodyBottom());
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill);
    painter.drawRoundedRect(frame, radius, radius);

    // A faint light from the top left lifts the body off the desktop.
    QRadialGradient sheen(QPointF(frame.width() * 0.2, -frame.height() * 0.4), frame.width() * 0.9);
    sheen.setColorAt(0, Palette::Sheen());
    sheen.setColorAt(1, Qt::transparent);
    painter.setBrush(sheen);
    painter.drawRoundedRect(frame, radius, radius);

    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(Palette::Edge(), 1.0));
    const double inset = 0.5;
    painter.drawRoundedRect(frame.adjusted(inset, inset, -inset, -inset), radius, radius);

    painter.setPen(Qt::NoPen);
    for (const QRect& groove : body.Grooves) {
        painter.setBrush(Palette::Groove());
        const double r = groove.height() / 2.0;
        painter.drawRoundedRect(QRectF(groove), r, r);
    }
    for (const QRect& well : body.ArtworkWells) {
        painter.setBrush(Palette::Well());
        painter.drawRoundedRect(QRectF(well), 6, 6);
        const QRectF note = QRectF(well).adjusted(well.width() * 0.28, well.height() * 0.28,
                                                  -well.width() * 0.28, -well.height() * 0.28);
        DrawGlyph(painter, Glyph::Note, note, Palette::WellGlyph());
    }
    return image;
}

} // namespace Pelorin::SkinArt
