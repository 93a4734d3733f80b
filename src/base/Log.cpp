#include "base/Log.h"

namespace Pelorin {

Q_LOGGING_CATEGORY(lcApp, "pelorin.app")
Q_LOGGING_CATEGORY(lcDisplay, "pelorin.display")
// The subclassing trace is for whoever debugs hotkeys: off unless asked for.
Q_LOGGING_CATEGORY(lcHotkeys, "pelorin.hotkeys", QtInfoMsg)
// What the lyrics show, line by line, is for whoever checks a sync file: off unless asked for.
Q_LOGGING_CATEGORY(lcLyrics, "pelorin.lyrics", QtInfoMsg)
Q_LOGGING_CATEGORY(lcPicture, "pelorin.picture")
Q_LOGGING_CATEGORY(lcPlayer, "pelorin.player")
Q_LOGGING_CATEGORY(lcSettings, "pelorin.settings")
Q_LOGGING_CATEGORY(lcSkin, "pelorin.skin")
Q_LOGGING_CATEGORY(lcWindow, "pelorin.window")

void UseBareMessageFormat() {
    // The environment's pattern wins over this one.
    qSetMessagePattern(QStringLiteral("%{message}"));
}

} // namespace Pelorin
