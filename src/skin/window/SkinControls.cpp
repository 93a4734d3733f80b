#include "SkinControls.h"

#include <QDropEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QUrl>
#include <algorithm>

namespace Pelorin {

namespace {
const char* const TagProperty = "Tag";

// The local files a drag carries, in its order; other things dragged (text, remote links) are
// not files the player could read.
QStringList LocalFiles(const QMimeData* data) {
    QStringList files;
    if (data == nullptr || !data->hasUrls())
        return files;
    for (const QUrl& url : data->urls()) {
        if (url.isLocalFile())
            files.append(url.toLocalFile());
    }
    return files;
}
} // namespace

QString ControlTag(const QObject* control) {
    return control->property(TagProperty).toString();
}

void SetControlTag(QObject* control, const QString& tag) {
    control->setProperty(TagProperty, tag);
}

PictureBox::PictureBox(const QString& name, QWidget* parent) : QWidget(parent) {
    setObjectName(name);
    SetControlTag(this, QString());
}

void PictureBox::SetPicture(const QImage& picture) {
    m_picture = picture;
    m_scaled = QImage();
    update();
}

void PictureBox::SetStretchWidth(int width) {
    m_stretchWidth = width;
    update();
}

void PictureBox::paintEvent(QPaintEvent*) {
    if (m_picture.isNull())
        return;
    const QSize size(m_stretchWidth > 0 ? m_stretchWidth : width(), height());
    if (size.isEmpty())
        return;
    if (m_scaled.size() != size) {
        m_scaled = m_picture.size() == size
                       ? m_picture
                       : m_picture.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        m_scaled.convertTo(QImage::Format_ARGB32_Premultiplied);
    }
    QPainter painter(this);
    painter.drawImage(QPoint(0, 0), m_scaled);
}

void PictureBox::mousePressEvent(QMouseEvent* event) {
    Q_EMIT MousePressed(event->button(), event->modifiers(), event->position().toPoint());
}

void PictureBox::mouseMoveEvent(QMouseEvent* event) {
    Q_EMIT MouseMoved(event->buttons(), event->modifiers(), event->position().toPoint());
}

void PictureBox::mouseReleaseEvent(QMouseEvent* event) {
    Q_EMIT MouseReleased(event->button(), event->modifiers(), event->position().toPoint());
}

void PictureBox::dragEnterEvent(QDragEnterEvent* event) {
    if (!LocalFiles(event->mimeData()).isEmpty())
        event->acceptProposedAction();
}

void PictureBox::dragMoveEvent(QDragMoveEvent* event) {
    if (!LocalFiles(event->mimeData()).isEmpty())
        event->acceptProposedAction();
}

void PictureBox::dropEvent(QDropEvent* event) {
    const QStringList files = LocalFiles(event->mimeData());
    if (files.isEmpty())
        return;
    event->acceptProposedAction();
    Q_EMIT FilesDropped(files);
}

SkinLabelControl::SkinLabelControl(const QString& name, QWidget* parent) : QLabel(parent) {
    setObjectName(name);
    SetControlTag(this, QString());
    setWordWrap(false);
    setTextFormat(Qt::PlainText);
    setAlignment(Qt::AlignLeft | Qt::AlignTop);
}

void SkinLabelControl::paintEvent(QPaintEvent* event) {
    const QString caption = text();
    if (caption.isEmpty())
        return;
    // Several lines are laid out by QLabel itself.
    if (caption.contains(u'\n') || caption.contains(QChar::LineSeparator) ||
        caption.contains(QChar::ParagraphSeparator)) {
        QLabel::paintEvent(event);
        return;
    }
    if (m_layoutFont != font() || m_layouts.size() >= MaxLayouts) {
        m_layouts.clear();
        m_layoutFont = font();
    }
    auto layout = m_layouts.find(caption);
    if (layout == m_layouts.end()) {
        QStaticText laidOut(caption);
        laidOut.setTextFormat(Qt::PlainText);
        laidOut.setPerformanceHint(QStaticText::AggressiveCaching);
        laidOut.prepare(QTransform(), font());
        layout = m_layouts.insert(caption, laidOut);
    }
    QPainter painter(this);
    painter.setFont(font());
    painter.setPen(palette().color(foregroundRole()));
    const QRect box = contentsRect();
    qreal left = box.left();
    if (alignment() & Qt::AlignHCenter)
        left += (box.width() - layout->size().width()) / 2;
    else if (alignment() & Qt::AlignRight)
        left += box.width() - layout->size().width();
    painter.setClipRect(box);
    painter.drawStaticText(QPointF(left, box.top()), *layout);
}

LineControl::LineControl(const QString& name, QWidget* parent) : QWidget(parent) {
    setObjectName(name);
    SetControlTag(this, QString());
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void LineControl::SetColour(const QColor& colour) {
    m_colour = colour;
    update();
}

void LineControl::SetEnds(int x1, int y1, int x2, int y2) {
    setGeometry(std::min(x1, x2), std::min(y1, y2), std::abs(x2 - x1) + 1, std::abs(y2 - y1) + 1);
}

void LineControl::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), m_colour);
}

} // namespace Pelorin
