#pragma once

#include <QLoggingCategory>

namespace Pelorin {

// Diagnostics by subsystem, so that QT_LOGGING_RULES can silence or select them
// ("pelorin.picture.warning=false"). What users are told goes through message boxes instead.
Q_DECLARE_LOGGING_CATEGORY(lcApp)      // "pelorin.app": start-up and the program folder
Q_DECLARE_LOGGING_CATEGORY(lcDisplay)  // "pelorin.display": the track display
Q_DECLARE_LOGGING_CATEGORY(lcHotkeys)  // "pelorin.hotkeys": global hotkeys and shortcuts
Q_DECLARE_LOGGING_CATEGORY(lcLyrics)   // "pelorin.lyrics": synchronized lyrics
Q_DECLARE_LOGGING_CATEGORY(lcPicture)  // "pelorin.picture": pictures refused or unreadable
Q_DECLARE_LOGGING_CATEGORY(lcPlayer)   // "pelorin.player": the player and its daemon
Q_DECLARE_LOGGING_CATEGORY(lcSettings) // "pelorin.settings": the settings file
Q_DECLARE_LOGGING_CATEGORY(lcSkin)     // "pelorin.skin": skin files
Q_DECLARE_LOGGING_CATEGORY(lcWindow)   // "pelorin.window": window system features

// Diagnostics print as their bare text, as the program's own lines on stderr always have, unless
// the user chose a format with QT_MESSAGE_PATTERN.
void UseBareMessageFormat();

} // namespace Pelorin
