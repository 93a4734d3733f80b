#include "WindowShape.h"

#include "SkinControls.h"

#include <QWidget>
#include <algorithm>

namespace Pelorin {

QRegion RoundRectRegion(QSize size, int diameter) {
    const int w = std::max(0, size.width());
    const int h = std::max(0, size.height());
    if (w == 0 || h == 0)
        return {};
    const int dx = std::min(std::max(diameter, 0), w);
    const int dy = std::min(std::max(diameter, 0), h);
    if (dx == 0 || dy == 0)
        return QRegion(0, 0, w, h);
    const int rx = dx / 2;
    const int ry = dy / 2;
    QRegion region(rx, 0, w - 2 * rx, h);
    region += QRegion(0, ry, w, h - 2 * ry);
    region += QRegion(0, 0, dx, dy, QRegion::Ellipse);
    region += QRegion(w - dx, 0, dx, dy, QRegion::Ellipse);
    region += QRegion(0, h - dy, dx, dy, QRegion::Ellipse);
    region += QRegion(w - dx, h - dy, dx, dy, QRegion::Ellipse);
    return region;
}

QRegion GlassRegion(QSize outer, QSize client, const QList<QRect>& elements) {
    const int border = (outer.width() - client.width()) / 2;
    const int topInset = outer.height() - border - client.height();
    const QRect outerRect(0, 0, outer.width(), outer.height());
    const QRect inner(QPoint(border, topInset),
                      QPoint(outer.width() - border - 1, outer.height() - border - 1));
    QRegion region = QRegion(outerRect).subtracted(QRegion(inner));
    for (const QRect& element : elements)
        region += element.translated(border, topInset);
    return region;
}

QList<QRect> GlassElementRects(const QWidget* window) {
    QList<QRect> rects;
    for (const QObject* child : window->children()) {
        const auto* widget = qobject_cast<const QWidget*>(child);
        if (widget == nullptr || widget->isWindow() || widget->isHidden())
            continue;
        const QString name = widget->objectName();
        if (name.left(3).compare(QLatin1String("tmr"), Qt::CaseInsensitive) == 0 ||
            name.startsWith(QLatin1String("ln")))
            continue;
        if (ControlTag(widget) == QLatin1String("NoResize"))
            continue;
        if (widget->width() <= 0 || widget->height() <= 0)
            continue;
        rects.append(widget->geometry());
    }
    return rects;
}

void ApplyWindowRegion(QWidget* window, const QRegion& region) {
    if (region.isEmpty())
        window->setMask(QRegion(-1, -1, 1, 1));
    else
        window->setMask(region);
}

} // namespace Pelorin
