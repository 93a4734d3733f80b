#pragma once

#include <QString>

namespace Pelorin {

// A track length as the player's Time property shows it: whole minutes (not wrapped into
// hours), ":" and two-digit seconds: 187 -> "3:07", 3723 -> "62:03". Negative lengths give "0:00".
QString TrackTimeText(int seconds);

} // namespace Pelorin
