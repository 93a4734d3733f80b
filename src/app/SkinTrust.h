#pragma once

#include <QSet>
#include <QString>
#include <QStringList>

namespace Pelorin {

class Settings;

// Which skins may change the user's music and playlists. Skins come from strangers: a skin that
// runs "edittag", "delete", "deletecompletely", "addtoplaylist", "swapartistandalbum",
// "swapartistandtitle", "setasstart" or "setasend" must be one shipped with Pelorin or one the
// user allowed. The first such command of any other skin in a run asks once; "Allow" is kept in
// the setting "TrustedSkins", "Deny" holds until the program ends.
class SkinTrust {
public:
    explicit SkinTrust(Settings& settings);

    // True when the skin in folder `skinName` may run `command`; asks the user when nobody has
    // decided for that skin yet.
    bool MayChangeLibrary(const QString& skinName, const QString& command);

    // The skins Pelorin ships (data/Skins).
    static QStringList ShippedSkins() {
        return {QStringLiteral("Default"), QStringLiteral("Lyrics"), QStringLiteral("Mini")};
    }
    static QString QuestionText(const QString& skinName, const QString& command);

private:
    bool Allowed(const QString& skinName) const;

    Settings& m_settings;
    QSet<QString> m_denied;
};

} // namespace Pelorin
