#include "CoverPainter.h"

#include <QBuffer>
#include <QColor>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QRadialGradient>
#include <array>
#include <cmath>

namespace Pelorin {

namespace {

struct Palette {
    QColor top;
    QColor bottom;
    QColor accent;
    QColor detail;
};

const std::array<Palette, 8> kPalettes{{
    {QColor(0xff, 0x9a, 0x5a), QColor(0x6a, 0x3d, 0x9a), QColor(0xff, 0xe0, 0x66),
     QColor(0xff, 0xff, 0xff)},
    {QColor(0x0b, 0x10, 0x3a), QColor(0x8e, 0x1f, 0x7a), QColor(0x00, 0xf0, 0xff),
     QColor(0xff, 0x3c, 0xac)},
    {QColor(0xd8, 0xf0, 0xe8), QColor(0x3a, 0x7c, 0x8c), QColor(0xf4, 0xf1, 0xde),
     QColor(0x2b, 0x4c, 0x59)},
    {QColor(0x10, 0x08, 0x30), QColor(0x30, 0x10, 0x60), QColor(0xc0, 0x7a, 0xff),
     QColor(0xff, 0xf2, 0xb0)},
    {QColor(0x3e, 0xc8, 0xf0), QColor(0xff, 0xd8, 0x7a), QColor(0xff, 0x6f, 0x59),
     QColor(0xff, 0xff, 0xff)},
    {QColor(0xfd, 0xc8, 0x30), QColor(0xf3, 0x73, 0x35), QColor(0xff, 0xf6, 0xd5),
     QColor(0x7a, 0x2e, 0x0e)},
    {QColor(0x1a, 0x2a, 0x6c), QColor(0xb2, 0x1f, 0x1f), QColor(0xfd, 0xbb, 0x2d),
     QColor(0xe0, 0xf0, 0xff)},
    {QColor(0x14, 0x1e, 0x30), QColor(0x24, 0x3b, 0x55), QColor(0xe8, 0xd5, 0x9e),
     QColor(0x9a, 0xb8, 0xd8)},
}};

// A fixed pseudo-random sequence, so stars land in the same places on every run.
class Sequence {
public:
    explicit Sequence(quint32 seed) : m_state(seed) {}
    double Next() {
        m_state = m_state * 1664525u + 1013904223u;
        return static_cast<double>(m_state >> 8) / static_cast<double>(1u << 24);
    }

private:
    quint32 m_state;
};

void PaintBackground(QPainter& painter, const Palette& palette) {
    QLinearGradient gradient(0, 0, 0, CoverPainter::Size);
    gradient.setColorAt(0, palette.top);
    gradient.setColorAt(1, palette.bottom);
    painter.fillRect(0, 0, CoverPainter::Size, CoverPainter::Size, gradient);
}

void PaintSunrise(QPainter& painter, const Palette& palette) {
    const QPointF centre(CoverPainter::Size / 2.0, CoverPainter::Size * 0.68);
    for (int ring = 5; ring >= 0; --ring) {
        QColor colour = palette.accent;
        colour.setAlpha(60 + ring * 30);
        painter.setBrush(colour);
        painter.setPen(Qt::NoPen);
        const double radius = 40.0 + ring * 22.0;
        painter.drawEllipse(centre, radius, radius);
    }
    painter.fillRect(QRectF(0, CoverPainter::Size * 0.7, CoverPainter::Size, CoverPainter::Size),
                     palette.bottom.darker(140));
}

void PaintGrid(QPainter& painter, const Palette& palette) {
    const double horizon = CoverPainter::Size * 0.55;
    QRadialGradient sun(CoverPainter::Size / 2.0, horizon, 90);
    sun.setColorAt(0, palette.detail);
    sun.setColorAt(1, Qt::transparent);
    painter.setBrush(sun);
    painter.setPen(Qt::NoPen);
    painter.drawEllipse(QPointF(CoverPainter::Size / 2.0, horizon), 90, 90);
    painter.fillRect(QRectF(0, horizon, CoverPainter::Size, CoverPainter::Size - horizon),
                     palette.top);
    painter.setPen(QPen(palette.accent, 2));
    for (int i = -8; i <= 8; ++i) {
        painter.drawLine(QPointF(CoverPainter::Size / 2.0, horizon),
                         QPointF(CoverPainter::Size / 2.0 + i * 60.0, CoverPainter::Size));
    }
    for (int i = 1; i <= 8; ++i) {
        const double y = horizon + (CoverPainter::Size - horizon) * (i * i) / 64.0;
        painter.drawLine(QPointF(0, y), QPointF(CoverPainter::Size, y));
    }
}

void PaintWaves(QPainter& painter, const Palette& palette) {
    for (int band = 0; band < 6; ++band) {
        QPainterPath path;
        const double base = 90.0 + band * 36.0;
        path.moveTo(0, CoverPainter::Size);
        for (int x = 0; x <= CoverPainter::Size; x += 5) {
            path.lineTo(x, base + 14.0 * std::sin(x / 28.0 + band * 0.9));
        }
        path.lineTo(CoverPainter::Size, CoverPainter::Size);
        path.closeSubpath();
        QColor colour = band % 2 == 0 ? palette.accent : palette.detail;
        colour.setAlpha(90 + band * 20);
        painter.setPen(Qt::NoPen);
        painter.setBrush(colour);
        painter.drawPath(path);
    }
}

void PaintOrbit(QPainter& painter, const Palette& palette, int style) {
    Sequence sequence(static_cast<quint32>(style) * 7919u + 17u);
    painter.setPen(Qt::NoPen);
    for (int i = 0; i < 70; ++i) {
        const double x = sequence.Next() * CoverPainter::Size;
        const double y = sequence.Next() * CoverPainter::Size;
        const double r = 0.6 + sequence.Next() * 1.6;
        painter.setBrush(palette.detail);
        painter.drawEllipse(QPointF(x, y), r, r);
    }
    const QPointF centre(CoverPainter::Size * 0.5, CoverPainter::Size * 0.52);
    QRadialGradient planet(centre - QPointF(25, 25), 110);
    planet.setColorAt(0, palette.accent.lighter(130));
    planet.setColorAt(1, palette.accent.darker(220));
    painter.setBrush(planet);
    painter.drawEllipse(centre, 70, 70);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(palette.detail, 5));
    painter.save();
    painter.translate(centre);
    painter.rotate(-18);
    painter.drawEllipse(QPointF(0, 0), 125, 30);
    painter.restore();
}

} // namespace

QImage CoverPainter::Paint(int style) {
    QImage image(Size, Size, QImage::Format_RGB32);
    const Palette& palette = kPalettes[static_cast<size_t>(style) % kPalettes.size()];
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    PaintBackground(painter, palette);
    switch (style % 4) {
    case 0:
        PaintSunrise(painter, palette);
        break;
    case 1:
        PaintGrid(painter, palette);
        break;
    case 2:
        PaintWaves(painter, palette);
        break;
    default:
        PaintOrbit(painter, palette, style);
        break;
    }
    return image;
}

QByteArray CoverPainter::Encode(const QImage& image, CoverFormat format) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    const bool saved =
        format == CoverFormat::Png ? image.save(&buffer, "PNG") : image.save(&buffer, "JPEG", 88);
    return saved ? bytes : QByteArray();
}

QString CoverPainter::MimeType(CoverFormat format) {
    return format == CoverFormat::Png ? QStringLiteral("image/png") : QStringLiteral("image/jpeg");
}

} // namespace Pelorin
