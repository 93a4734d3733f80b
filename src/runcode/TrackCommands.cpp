#include "runcode/TrackCommands.h"

#include "base/TextRules.h"
#include "base/VbError.h"
#include "player/IITPlaylist.h"
#include "player/IITSource.h"
#include "player/IiTunes.h"
#include "player/link/PlayerAccess.h"
#include "runcode/RunCodeHost.h"

#include <exception>

namespace Pelorin {

namespace {

QString EditTagMessage(const QString& code, const QString& description) {
    return QStringLiteral("There was an error in the runcode, Edit Tag. The input was:") + u'\n' +
           code + u'\n' + QStringLiteral("The error caused was: ") + description + u'\n' +
           QStringLiteral("Please make sure that the code is correct, and that the tag you are "
                          "trying to access is available.");
}

} // namespace

TrackCommands::TrackCommands(RunCodeHost& host, WindowPlayer& player)
    : m_host(host), m_player(player) {}

void TrackCommands::EditTag(const QString& TheCode) {
    QString description;
    try {
        // "edittag" and whatever single character follows it.
        const QString assignment = TheCode.mid(8);
        const QStringList fields = Rules::SplitFirstFields(assignment, 2, u'=');
        const QString& property = Rules::Field(fields, 0);
        const QString& value = Rules::Field(fields, 1);
        if (!m_host.MayChangeLibrary(QStringLiteral("edittag")))
            throw VbError::Player(RunCodeHost::LibraryChangeRefusedText());
        PlayerAccess::CurrentTrack(PlayerAccess::R(m_player))->SetPropertyByName(property, value);
        return;
    } catch (const VbError& error) {
        description = error.description();
    } catch (const std::exception& error) {
        description = QString::fromLocal8Bit(error.what());
    }
    m_host.ShowMessage(EditTagMessage(TheCode, description), QString(),
                       RunCodeHost::MessageIcon::Information);
}

void TrackCommands::DeleteCurrentTrack() {
    IiTunes& app = PlayerAccess::App(m_player);
    const std::shared_ptr<IITTrack> current = PlayerAccess::CurrentTrack(app);
    const QString searchText = current->Artist() + u' ' + current->Name() + u' ' + current->Album();
    const std::shared_ptr<IITPlaylist> library = PlayerAccess::Required(app.LibraryPlaylist());
    const std::shared_ptr<IITTrackCollection> found =
        library->Search(searchText, ITPlaylistSearchFieldAll);
    if (!found)
        return;
    const int count = found->Count();
    if (count <= 0)
        return;
    // The identity is read once: deleting the playing track moves the player on, and the next
    // track must not be taken for it.
    const int currentId = PlayerAccess::CurrentTrack(PlayerAccess::R(m_player))->TrackDatabaseID();
    for (int i = 1; i <= count; ++i) {
        const std::shared_ptr<IITTrack> track = found->Item(i);
        if (track && track->TrackDatabaseID() == currentId)
            track->Delete();
    }
}

std::shared_ptr<IITPlaylist> TrackCommands::FindPlaylist(const QString& name) const {
    const std::shared_ptr<IITSourceCollection> sources =
        PlayerAccess::Required(PlayerAccess::R(m_player).Sources());
    const int sourceCount = sources->Count();
    for (int s = 1; s <= sourceCount; ++s) {
        const std::shared_ptr<IITSource> source = PlayerAccess::Required(sources->Item(s));
        const std::shared_ptr<IITPlaylistCollection> playlists =
            PlayerAccess::Required(source->Playlists());
        const int playlistCount = playlists->Count();
        for (int p = 1; p <= playlistCount; ++p) {
            std::shared_ptr<IITPlaylist> playlist = PlayerAccess::Required(playlists->Item(p));
            if (Rules::EqualsIgnoringCase(playlist->Name(), name))
                return playlist;
        }
    }
    return nullptr;
}

void TrackCommands::PlayPlaylist(const QString& PlayListName) {
    PlayerAccess::Required(FindPlaylist(PlayListName))->PlayFirstTrack();
}

void TrackCommands::AddToPlaylist(const QString& PlayListName) {
    const std::shared_ptr<IITPlaylist> playlist =
        PlayerAccess::Required(FindPlaylist(PlayListName));
    playlist->AddTrack(*PlayerAccess::CurrentTrack(PlayerAccess::R(m_player)));
}

} // namespace Pelorin
