#include "base/Log.h"

namespace Pelorin {

Q_LOGGING_CATEGORY(lcApp, "pelorin.app")
Q_LOGGING_CATEGORY(lcDisplay, "pelorin.display")
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
