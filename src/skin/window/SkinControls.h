#pragma once

#include <QFont>
#include <QHash>
#include <QImage>
#include <QLabel>
#include <QStaticText>
#include <QWidget>

namespace Pelorin {

// Every control of a skin window carries a Tag, as the skin and the command language use it
// (a label's template, an image's code, "NoResize" to keep a control out of the glass region).
QString ControlTag(const QObject* control);
void SetControlTag(QObject* control, const QString& tag);

// An image control: draws its picture stretched to its rectangle; where the picture is
// transparent (or there is none) the window behind shows through. Presses, moves and releases
// are handed on with the position in the control's own pixels.
class PictureBox : public QWidget {
    Q_OBJECT
public:
    PictureBox(const QString& name, QWidget* parent);

    void SetPicture(const QImage& picture);
    const QImage& Picture() const { return m_picture; }
    // The width the picture is stretched to; the control shows its left part (the progress bar,
    // whose width follows the track). 0: the control's own width.
    void SetStretchWidth(int width);

Q_SIGNALS:
    void MousePressed(Qt::MouseButton button, Qt::KeyboardModifiers modifiers, QPoint position);
    void MouseMoved(Qt::MouseButtons buttons, Qt::KeyboardModifiers modifiers, QPoint position);
    void MouseReleased(Qt::MouseButton button, Qt::KeyboardModifiers modifiers, QPoint position);
    // Local files dropped on the control (only while it accepts drops).
    void FilesDropped(const QStringList& files);

protected:
    void paintEvent(QPaintEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    QImage m_picture;
    int m_stretchWidth = 0;
    // The picture scaled to the size it is drawn at, made again only when the picture or that
    // size changes: a repaint then copies pixels instead of scaling a cover at every paint.
    QImage m_scaled;
};

// A text label. Presses go on to the window (a press on a label is a press on the window).
class SkinLabelControl : public QLabel {
    Q_OBJECT
public:
    SkinLabelControl(const QString& name, QWidget* parent);

protected:
    // Draws the caption as QLabel would, from a laid-out text kept per caption: a scrolling
    // label comes back to each of its captions once per round, and laying out (shaping) the
    // text is most of what drawing it costs.
    void paintEvent(QPaintEvent* event) override;

private:
    // More captions than this and the kept layouts start afresh.
    static constexpr qsizetype MaxLayouts = 512;

    QFont m_layoutFont;
    QHash<QString, QStaticText> m_layouts;
};

// A border line: one pixel thick, in its colour.
class LineControl : public QWidget {
    Q_OBJECT
public:
    LineControl(const QString& name, QWidget* parent);
    void SetColour(const QColor& colour);
    // Places the line from (x1, y1) to (x2, y2); lines are horizontal or vertical.
    void SetEnds(int x1, int y1, int x2, int y2);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QColor m_colour = Qt::black;
};

} // namespace Pelorin
