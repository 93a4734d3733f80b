#pragma once

#include <QObject>
#include <QPoint>
#include <QPointer>

class QWidget;

namespace Pelorin {

// Moves a window with the mouse while the button that started it is held. The window manager
// does it when it can (startSystemMove); without one the window follows the pointer by hand
// until the button is released.
class WindowMover : public QObject {
    Q_OBJECT
public:
    enum class Method { SystemFirst, ByHandOnly };

    explicit WindowMover(QWidget* window, Method method = Method::SystemFirst);

    // Call while the button is down, with the press's position on the screen. True when a move
    // started (by the system or by hand).
    bool StartMove(QPoint pressGlobal);
    bool IsMovingByHand() const { return m_byHand; }

Q_SIGNALS:
    // A move by hand ended with the button's release.
    void MoveFinished();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void StopByHand();

    QPointer<QWidget> m_window;
    Method m_method;
    bool m_byHand = false;
    QPoint m_pressGlobal;
    QPoint m_startPos;
};

} // namespace Pelorin
