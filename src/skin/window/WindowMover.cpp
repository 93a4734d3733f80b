#include "WindowMover.h"

#include <QMouseEvent>
#include <QWidget>
#include <QWindow>

namespace Pelorin {

WindowMover::WindowMover(QWidget* window, Method method)
    : QObject(window), m_window(window), m_method(method) {}

bool WindowMover::StartMove(QPoint pressGlobal) {
    if (m_window.isNull())
        return false;
    if (m_method == Method::SystemFirst && m_window->windowHandle() != nullptr &&
        m_window->windowHandle()->startSystemMove())
        return true;
    if (m_byHand)
        return true;
    m_byHand = true;
    m_pressGlobal = pressGlobal;
    m_startPos = m_window->pos();
    m_window->installEventFilter(this);
    m_window->grabMouse();
    return true;
}

bool WindowMover::eventFilter(QObject* watched, QEvent* event) {
    if (!m_byHand || watched != m_window)
        return false;
    switch (event->type()) {
    case QEvent::MouseMove: {
        const auto* mouse = static_cast<QMouseEvent*>(event);
        if (mouse->buttons() == Qt::NoButton) {
            StopByHand();
            return true;
        }
        m_window->move(m_startPos + (mouse->globalPosition().toPoint() - m_pressGlobal));
        return true;
    }
    case QEvent::MouseButtonRelease: {
        const auto* mouse = static_cast<QMouseEvent*>(event);
        m_window->move(m_startPos + (mouse->globalPosition().toPoint() - m_pressGlobal));
        StopByHand();
        return true;
    }
    case QEvent::MouseButtonPress:
        return true;
    default:
        return false;
    }
}

void WindowMover::StopByHand() {
    m_byHand = false;
    if (!m_window.isNull()) {
        m_window->releaseMouse();
        m_window->removeEventFilter(this);
    }
    Q_EMIT MoveFinished();
}

} // namespace Pelorin
