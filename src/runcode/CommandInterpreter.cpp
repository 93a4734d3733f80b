#include "runcode/CommandInterpreter.h"

#include "base/FileNames.h"
#include "base/TextRules.h"
#include "base/VbError.h"
#include "player/IITFileOrCDTrack.h"
#include "player/IITPlaylist.h"
#include "player/IiTunes.h"
#include "player/PlayerError.h"
#include "player/link/PlayerAccess.h"
#include "runcode/RunCodeHost.h"

#include <QFileInfo>
#include <exception>

namespace Pelorin {

namespace {

// Ignoring case, as every prefix test of the language does.
constexpr int TextCompare = 1;

// The position skin window creation reads as "not given".
constexpr std::int16_t PositionNotGiven = -99;

bool Begins(const QString& text, QStringView word) {
    return Rules::IsLeft(text, word, TextCompare);
}

// The argument of a prefix command: the text between the first "=" and the next one (or the
// end). Without "=" there is none, which fails as a missing subscript.
QString Argument(const QString& TheCode) {
    return Rules::Field(Rules::SplitFirstFields(TheCode, 2, u'='), 1);
}

QString Description(const std::exception& error) {
    return QString::fromLocal8Bit(error.what());
}

} // namespace

CommandInterpreter::CommandInterpreter(RunCodeHost& host, WindowPlayer& player)
    : m_host(host), m_player(player), m_tracks(host, player) {}

void CommandInterpreter::RunCodeText(const QString& code) {
    QString copy = code;
    RunCode(copy);
}

void CommandInterpreter::RunCode(QString& TheCode) {
    // Nothing runs while the player refuses commands, not even window commands; a compound
    // code beeps once, before it is split.
    if (!m_player.COMCallsEnabled()) {
        m_host.Beep();
        return;
    }
    try {
        if (TheCode.isEmpty())
            return;
        if (TheCode.contains(u'}') || TheCode.contains(u'{')) {
            TheCode.remove(u'{');
            // Each piece is a call of its own with its own error handling, so a failing piece
            // does not stop the ones after it. No piece holds a brace any more.
            const QStringList pieces = Rules::SplitFields(TheCode, u'}');
            for (QString piece : pieces)
                RunCode(piece);
            // The whole text is matched as well, on purpose: see the class comment.
        }
        RunCommand(TheCode);
    } catch (const VbError& error) {
        ReportError(TheCode, error.description());
    } catch (const std::exception& error) {
        ReportError(TheCode, Description(error));
    }
}

void CommandInterpreter::RunCommand(const QString& TheCode) {
    if (RunBareWord(Rules::LowerCase(TheCode)))
        return;
    RunSuffixAndPrefixCommands(TheCode);
}

std::span<const CommandInterpreter::BareWord> CommandInterpreter::BareWords() {
    // In this order; the first match wins.
    static const BareWord table[] = {
        {QLatin1String("playpause"),
         [](CommandInterpreter& c) { PlayerAccess::R(c.m_player).PlayPause(); }},
        {QLatin1String("play"), [](CommandInterpreter& c) { PlayerAccess::R(c.m_player).Play(); }},
        {QLatin1String("pause"),
         [](CommandInterpreter& c) { PlayerAccess::R(c.m_player).Pause(); }},
        {QLatin1String("stop"), [](CommandInterpreter& c) { PlayerAccess::R(c.m_player).Stop(); }},
        {QLatin1String("previoustrack"),
         [](CommandInterpreter& c) { PlayerAccess::R(c.m_player).PreviousTrack(); }},
        {QLatin1String("nexttrack"),
         [](CommandInterpreter& c) { PlayerAccess::R(c.m_player).NextTrack(); }},
        {QLatin1String("quit"), [](CommandInterpreter& c) { PlayerAccess::R(c.m_player).Quit(); }},
        {QLatin1String("delete"),
         [](CommandInterpreter& c) {
             c.RequireTrust(u"delete");
             PlayerAccess::CurrentTrack(PlayerAccess::R(c.m_player))->Delete();
         }},
        {QLatin1String("deletecompletely"),
         [](CommandInterpreter& c) {
             c.RequireTrust(u"deletecompletely");
             c.DeleteCompletely();
         }},
        {QLatin1String("showitunes"), [](CommandInterpreter& c) { c.ShowPlayerApp(); }},
        {QLatin1String("updateipod"),
         [](CommandInterpreter& c) { PlayerAccess::R(c.m_player).UpdateIPod(); }},
        {QLatin1String("ejectipod"), [](CommandInterpreter& c) { c.EjectIPod(); }},
        {QLatin1String("closeprogram"), [](CommandInterpreter& c) { c.CloseProgram(); }},
        {QLatin1String("show"), [](CommandInterpreter& c) { c.m_host.ShowWindow(); }},
        {QLatin1String("normaltransparency"),
         [](CommandInterpreter& c) { c.m_host.NormalTransparency(); }},
        {QLatin1String("closeskin"), [](CommandInterpreter& c) { c.m_host.UnloadWindow(); }},
        {QLatin1String("movewindow"), [](CommandInterpreter& c) { c.m_host.MoveWindow(); }},
        {QLatin1String("fadein"), [](CommandInterpreter& c) { c.m_host.FadeIn(); }},
        {QLatin1String("fadeclose"), [](CommandInterpreter& c) { c.m_host.FadeClose(); }},
        {QLatin1String("volumeup"), [](CommandInterpreter& c) { c.VolumeUp(); }},
        {QLatin1String("volumedown"), [](CommandInterpreter& c) { c.VolumeDown(); }},
        {QLatin1String("swapartistandalbum"),
         [](CommandInterpreter& c) {
             c.RequireTrust(u"swapartistandalbum");
             c.SwapArtistAndAlbum();
         }},
        {QLatin1String("swapartistandtitle"),
         [](CommandInterpreter& c) {
             c.RequireTrust(u"swapartistandtitle");
             c.SwapArtistAndTitle();
         }},
        {QLatin1String("setasstart"),
         [](CommandInterpreter& c) {
             c.RequireTrust(u"setasstart");
             c.SetAsStart();
         }},
        {QLatin1String("setasend"),
         [](CommandInterpreter& c) {
             c.RequireTrust(u"setasend");
             c.SetAsEnd();
         }},
    };
    return table;
}

bool CommandInterpreter::RunBareWord(const QString& word) {
    for (const BareWord& entry : BareWords()) {
        if (word == entry.word) {
            entry.action(*this);
            return true;
        }
    }
    return false;
}

std::span<const CommandInterpreter::PrefixCommand> CommandInterpreter::PrefixCommands() {
    // Each is followed by "=" and its argument; in this order, and every one that matches runs.
    static const PrefixCommand commands[] = {
        {u"edittag", [](CommandInterpreter& c, const QString& code) { c.m_tracks.EditTag(code); }},
        {u"showskin", [](CommandInterpreter& c, const QString& code) { c.ShowSkinCode(code); }},
        {u"repeat",
         [](CommandInterpreter& c, const QString& code) {
             c.Repeat(Rules::LowerCase(Argument(code)));
         }},
        {u"shuffle",
         [](CommandInterpreter& c, const QString& code) {
             c.Shuffle(Rules::LowerCase(Argument(code)));
         }},
        {u"reloadtimer",
         [](CommandInterpreter& c, const QString& code) { c.ReloadTimer(Argument(code)); }},
        {u"playplaylist",
         [](CommandInterpreter& c, const QString& code) {
             c.m_tracks.PlayPlaylist(Argument(code));
         }},
        {u"addtoplaylist",
         [](CommandInterpreter& c, const QString& code) {
             c.RequireTrust(u"addtoplaylist");
             c.m_tracks.AddToPlaylist(Argument(code));
         }},
        {u"skip", [](CommandInterpreter& c, const QString& code) { c.Skip(Argument(code)); }},
        {u"addtovolume",
         [](CommandInterpreter& c, const QString& code) { c.AddToVolume(Argument(code)); }},
    };
    return commands;
}

QStringList CommandInterpreter::CommandWords() {
    QStringList words;
    for (const BareWord& entry : BareWords())
        words.append(entry.word);
    words.append(StarSuffix().toString());
    for (const PrefixCommand& command : PrefixCommands())
        words.append(command.prefix.toString());
    return words;
}

void CommandInterpreter::RunSuffixAndPrefixCommands(const QString& TheCode) {
    // Not exclusive: every test that matches runs, in this order.
    if (Rules::LowerCase(TheCode.right(4)) == StarSuffix()) {
        // The first character is the star count; anything else reads as 0.
        const double stars = Rules::RoundHalfEven(Rules::LeadingNumber(TheCode.left(1)));
        m_host.imgRatings_Click(static_cast<int>(stars) - 1);
    }
    for (const PrefixCommand& command : PrefixCommands()) {
        if (Begins(TheCode, command.prefix))
            command.run(*this, TheCode);
    }
}

void CommandInterpreter::RequireTrust(QStringView command) {
    if (!m_host.MayChangeLibrary(command.toString()))
        throw VbError::Player(RunCodeHost::LibraryChangeRefusedText());
}

void CommandInterpreter::ReportError(const QString& TheCode, const QString& description) {
    bool playerMissing = false;
    try {
        playerMissing = m_player.iTunesIsNothing(true);
    } catch (...) {
        // The guard answers "usable" when it fails itself.
    }
    if (playerMissing) {
        m_host.Beep();
        return;
    }
    m_host.ShowMessage(QStringLiteral("There was an error in the RunCode procedure: ") + u'\n' +
                           QStringLiteral("RunCode: ") + TheCode + u'\n' + description,
                       QStringLiteral("Error!"), RunCodeHost::MessageIcon::Critical);
}

void CommandInterpreter::ShowSkinCode(const QString& TheCode) {
    const QStringList fields = Rules::SplitFirstFields(Argument(TheCode), 3, u'|');
    const QString& skinName = Rules::Field(fields, 0);
    std::int16_t left = PositionNotGiven;
    std::int16_t top = PositionNotGiven;
    if (fields.size() > 1) {
        const double dx = Rules::LeadingNumber(Rules::Field(fields, 1));
        const double dy = Rules::LeadingNumber(Rules::Field(fields, 2));
        left = Rules::ToInt16(m_host.LeftTwips() + Rules::PixelsToTwips(dx));
        top = Rules::ToInt16(m_host.TopTwips() + Rules::PixelsToTwips(dy));
    }
    // A skin is one folder of the skins folder; a name that reaches elsewhere names no skin.
    if (!FileNames::IsPlainName(skinName))
        throw VbError::FileNotFound();
    m_host.OpenSkinWindow(m_host.SkinFolder(skinName), left, top);
}

void CommandInterpreter::DeleteCompletely() {
    const std::shared_ptr<IITTrack> track = PlayerAccess::CurrentTrack(PlayerAccess::R(m_player));
    std::shared_ptr<IITFileOrCDTrack> fileTrack =
        std::dynamic_pointer_cast<IITFileOrCDTrack>(track);
    // A track that is no file (a stream) cannot be taken as one.
    if (!fileTrack)
        throw VbError::TypeMismatch();
    m_player.SetCurrentFileTrack(fileTrack);
    const QString location = fileTrack->Location();
    m_tracks.DeleteCurrentTrack();
    m_host.LetMessagesRun();
    if (m_host.WindowGone())
        return;
    // Only the track's own file goes, and only to the trash: never a folder, never a path the
    // player could not name.
    if (location.isEmpty())
        throw VbError::Player(QStringLiteral(
            "The track was removed from the library, but the player does not say where its file "
            "is, so no file was moved to the trash"));
    if (!QFileInfo(location).isFile())
        throw VbError::Player(QStringLiteral("The track was removed from the library, but its "
                                             "file was not moved to the trash: ") +
                              location + QStringLiteral(" is not a file"));
    QString error;
    if (!m_host.MoveToTrash(location, &error))
        throw VbError::Player(QStringLiteral("The track was removed from the library, but its "
                                             "file could not be moved to the trash: ") +
                              location + QStringLiteral(" (") + error + u')');
}

void CommandInterpreter::EjectIPod() {
    m_host.SetBusyPointer(true);
    // The shell reports nothing when the tool cannot be started, and neither does the command.
    m_host.ShellOpen(m_host.ProgramFolder() + QStringLiteral("/Ostrelli"), QString());
    m_host.LetMessagesRun();
    if (m_host.WindowGone())
        return;
    m_host.SetBusyPointer(false);
}

void CommandInterpreter::ShowPlayerApp() {
    const QString program = m_host.PlayerApp();
    if (program.trimmed().isEmpty())
        throw PlayerError::NotSupported(
            QStringLiteral("showing its window (no program is set as \"PlayerApp\")"));
    m_host.ShellOpen(program, QString());
}

void CommandInterpreter::CloseProgram() {
    m_host.UnloadWindow();
    m_host.EndProgram();
}

void CommandInterpreter::VolumeUp() {
    IiTunes& player = PlayerAccess::R(m_player);
    if (player.SoundVolume() < 100)
        player.SetSoundVolume(player.SoundVolume() + 1);
}

void CommandInterpreter::VolumeDown() {
    // Stops at 1, unlike VolumeUp, which reaches 100.
    IiTunes& player = PlayerAccess::R(m_player);
    if (player.SoundVolume() > 1)
        player.SetSoundVolume(player.SoundVolume() - 1);
}

void CommandInterpreter::SwapArtistAndAlbum() {
    IiTunes& player = PlayerAccess::R(m_player);
    const QString artist = PlayerAccess::CurrentTrack(player)->Artist();
    const QString album = PlayerAccess::CurrentTrack(player)->Album();
    PlayerAccess::CurrentTrack(player)->SetArtist(album);
    PlayerAccess::CurrentTrack(player)->SetAlbum(artist);
}

void CommandInterpreter::SwapArtistAndTitle() {
    IiTunes& player = PlayerAccess::R(m_player);
    const QString artist = PlayerAccess::CurrentTrack(player)->Artist();
    const QString name = PlayerAccess::CurrentTrack(player)->Name();
    PlayerAccess::CurrentTrack(player)->SetArtist(name);
    PlayerAccess::CurrentTrack(player)->SetName(artist);
}

void CommandInterpreter::SetAsStart() {
    const std::shared_ptr<IITTrack> track = PlayerAccess::CurrentTrack(PlayerAccess::App(m_player));
    track->SetStart(PlayerAccess::R(m_player).PlayerPosition());
}

void CommandInterpreter::SetAsEnd() {
    const std::shared_ptr<IITTrack> track = PlayerAccess::CurrentTrack(PlayerAccess::App(m_player));
    track->SetFinish(PlayerAccess::R(m_player).PlayerPosition());
}

void CommandInterpreter::Repeat(const QString& argument) {
    int mode = -1;
    if (argument == QLatin1String("switch")) {
        const std::shared_ptr<IITPlaylist> playlist =
            PlayerAccess::Required(PlayerAccess::R(m_player).CurrentPlaylist());
        mode = (playlist->SongRepeat() + 1) % 3;
    } else if (argument == QLatin1String("one")) {
        mode = ITPlaylistRepeatModeOne;
    } else if (argument == QLatin1String("off")) {
        mode = ITPlaylistRepeatModeOff;
    } else if (argument == QLatin1String("all")) {
        mode = ITPlaylistRepeatModeAll;
    } else {
        return;
    }
    PlayerAccess::Required(PlayerAccess::R(m_player).CurrentPlaylist())->SetSongRepeat(mode);
}

void CommandInterpreter::Shuffle(const QString& argument) {
    bool value = false;
    if (argument == QLatin1String("switch")) {
        value = !PlayerAccess::Required(PlayerAccess::R(m_player).CurrentPlaylist())->Shuffle();
    } else if (argument == QLatin1String("on")) {
        value = true;
    } else if (argument == QLatin1String("off")) {
        value = false;
    } else {
        return;
    }
    PlayerAccess::Required(PlayerAccess::R(m_player).CurrentPlaylist())->SetShuffle(value);
}

void CommandInterpreter::ReloadTimer(const QString& argument) {
    // Control array indexes are 16-bit.
    const std::int16_t index = Rules::Int16Of(argument);
    // Element 0 is the design-time template: it exists, never ticks and has nothing to restart.
    if (index == 0)
        return;
    if (index < 0 || !m_host.ReloadTimer(index))
        throw VbError::ControlArrayElementMissing(index);
}

void CommandInterpreter::Skip(const QString& argument) {
    const double seconds = Rules::LeadingNumber(argument);
    IiTunes& player = PlayerAccess::R(m_player);
    player.SetPlayerPosition(Rules::ToInt32(player.PlayerPosition() + seconds));
}

void CommandInterpreter::AddToVolume(const QString& argument) {
    const double amount = Rules::LeadingNumber(argument);
    IiTunes& player = PlayerAccess::R(m_player);
    const int adjustment = PlayerAccess::CurrentTrack(player)->VolumeAdjustment();
    PlayerAccess::CurrentTrack(player)->SetVolumeAdjustment(Rules::ToInt32(adjustment + amount));
}

} // namespace Pelorin
