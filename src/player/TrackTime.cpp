#include "player/TrackTime.h"

namespace Pelorin {

QString TrackTimeText(int seconds) {
    if (seconds < 0)
        seconds = 0;
    return QStringLiteral("%1:%2").arg(seconds / 60).arg(seconds % 60, 2, 10, QLatin1Char('0'));
}

} // namespace Pelorin
