#include "EffectPacing.h"

#include <QCoreApplication>
#include <QThread>

namespace Pelorin {

void EventLoopPacing::LetMessagesRun() {
    QCoreApplication::processEvents();
}

void EventLoopPacing::Sleep(int milliseconds) {
    QThread::msleep(static_cast<unsigned long>(milliseconds));
}

} // namespace Pelorin
