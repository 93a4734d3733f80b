#pragma once

#include <QHash>
#include <QLatin1String>
#include <QSettings>
#include <QString>
#include <memory>

namespace Pelorin {

// The per-user settings store: organisation and application "Pelorin", group "Options", values
// are text. One instance is created at start-up and passed by reference to whoever needs it.
//
// A settings file that cannot be parsed is never overwritten: a copy is kept beside it
// ("Pelorin.conf.corrupt-<timestamp>"), stderr says so, and the store starts from defaults.
class Settings {
public:
    // Every key the program keeps, all in the group "Options".
    // How many normal starts there have been (decimal text). Default "0".
    static constexpr QLatin1String RunCount{"RunCount"};
    // The skin folder name under Skins/ that start-up and Reload open. Default "Default".
    static constexpr QLatin1String CurrentSkin{"CurrentSkin"};
    // "1" quits the player when the last skin window closes. Default empty, which is not 1; the
    // options dialog reads it with its own default, CloseiTunesOnExitDialogDefault.
    static constexpr QLatin1String CloseiTunesOnExit{"CloseiTunesOnExit"};
    // The lyrics folder. Default "APPPATH\Lyrics\"; APPPATH stands for the program folder and is
    // expanded by the lyrics code.
    static constexpr QLatin1String CantomPath{"CantomPath"};
    // Check-box values of the options dialog (0 or 1). Defaults "1", "0", "0". PelorinTray is
    // written by the dialog but never read back: the dialog reads PelorinTrayIcon instead.
    static constexpr QLatin1String OpenPelorinWithiTunes{"OpenPelorinWithiTunes"};
    static constexpr QLatin1String PelorinTray{"PelorinTray"};
    static constexpr QLatin1String PelorinTrayIcon{"PelorinTrayIcon"};
    // The program that "showitunes" starts (for example the user's player client). Default empty:
    // none.
    static constexpr QLatin1String PlayerApp{"PlayerApp"};
    // The player backend: empty or "mpd" for MPD, "mpris" or "mpris:NAME" for a desktop player.
    // Default empty.
    static constexpr QLatin1String Player{"Player"};
    // Skin folder names the user allowed to change the music library, separated by "|".
    // Default empty.
    static constexpr QLatin1String TrustedSkins{"TrustedSkins"};

    static constexpr QLatin1String CloseiTunesOnExitDialogDefault{"1"};

    // The default of a key above when it is missing; empty for any other key.
    static QString DefaultFor(QStringView key);

    // The user's store: $XDG_CONFIG_HOME/Pelorin/Pelorin.conf (default ~/.config).
    Settings();
    // A store in the given INI file (tests, tools).
    explicit Settings(const QString& fileName);
    ~Settings();

    Settings(const Settings&) = delete;
    Settings& operator=(const Settings&) = delete;

    // The value under `key`, or `defaultValue` when the key is missing.
    QString GetSetting(const QString& key, const QString& defaultValue) const;
    // The value under `key`, or DefaultFor(key) when it is missing.
    QString GetSetting(const QString& key) const;
    // The leading number of GetSetting(key) (no number: 0).
    double GetNumber(const QString& key) const;

    // Stores the text and writes the file.
    void SaveSetting(const QString& key, const QString& text);

    // Writes pending changes; false when the file could not be written.
    bool Flush();

    const QString& FileName() const { return m_fileName; }
    // The copy of a corrupt file made when this store was opened; empty when there was none.
    const QString& PreservedCorruptCopy() const { return m_corruptCopy; }

    static QString DefaultFileName();

private:
    void Open();

    QString m_fileName;
    QString m_corruptCopy;
    std::unique_ptr<QSettings> m_store;
    // Set when a corrupt file could not be moved aside: nothing is written to it then.
    bool m_memoryOnly = false;
    QHash<QString, QString> m_memory;
};

// Start-up's run count: the old value's leading number plus one, saved as text. Returns the new
// count.
double CountRun(Settings& settings);

// True when "CloseiTunesOnExit" reads as the number 1 ("1", "1.0"); "yes" and empty are not 1.
bool ShouldCloseiTunesOnExit(const Settings& settings);

// The lyrics folder setting as stored, "APPPATH\Lyrics\" when missing; APPPATH is not expanded.
QString GetLyricsPath(const Settings& settings);

} // namespace Pelorin
