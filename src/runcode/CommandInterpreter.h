#pragma once

#include "runcode/TrackCommands.h"

#include <QString>
#include <QStringList>
#include <span>

namespace Pelorin {

class RunCodeHost;
class WindowPlayer;

// The command language: one skin window's RunCode. Holds no state between calls; everything it
// reads or changes is reached through the host (the window, the program) or the window's player.
//
// A code is one command ("playpause", "skip=-5") or a compound code of commands in braces
// ("{play}{volumeup}"). Bare words match the whole text and the first match wins; when none
// matches, the "star" suffix test and every prefix test are made in turn and each that matches
// runs. A compound code runs piece by piece and is then matched as a whole as well, so its first
// command may run twice; skins rely on it.
class CommandInterpreter {
public:
    CommandInterpreter(RunCodeHost& host, WindowPlayer& player);

    // Runs a code. A compound code loses its "{" characters in the caller's variable. Never
    // throws: a failure beeps when the player is missing, else shows the RunCode error box.
    void RunCode(QString& TheCode);
    // RunCode on a copy, for callers whose text must stay as it is.
    void RunCodeText(const QString& code);

    // "showskin=Name" or "showskin=Name|dx|dy": opens skin window Name, dx and dy pixels from
    // this window's left and top edges (without offsets wherever windows open by default).
    // Throws VbError.
    void ShowSkinCode(const QString& TheCode);

    TrackCommands& Tracks() { return m_tracks; }

    // Every command word the language knows: the bare words, the star suffix ("3star") and the
    // commands that take an argument after "=".
    static QStringList CommandWords();

private:
    struct BareWord {
        QLatin1String word;
        void (*action)(CommandInterpreter&);
    };
    struct PrefixCommand {
        QStringView prefix;
        void (*run)(CommandInterpreter&, const QString& code);
    };
    static std::span<const BareWord> BareWords();
    static std::span<const PrefixCommand> PrefixCommands();
    static QStringView StarSuffix() { return u"star"; }

    void RunCommand(const QString& TheCode);
    // Skin trust before a command that changes the user's music or playlists: throws the
    // refusal as that command's failure.
    void RequireTrust(QStringView command);
    bool RunBareWord(const QString& word);
    void RunSuffixAndPrefixCommands(const QString& TheCode);
    void ReportError(const QString& TheCode, const QString& description);

    void DeleteCompletely();
    void EjectIPod();
    void ShowPlayerApp();
    void CloseProgram();
    void VolumeUp();
    void VolumeDown();
    void SwapArtistAndAlbum();
    void SwapArtistAndTitle();
    void SetAsStart();
    void SetAsEnd();
    void Repeat(const QString& argument);
    void Shuffle(const QString& argument);
    void ReloadTimer(const QString& argument);
    void Skip(const QString& argument);
    void AddToVolume(const QString& argument);

    RunCodeHost& m_host;
    WindowPlayer& m_player;
    TrackCommands m_tracks;
};

} // namespace Pelorin
