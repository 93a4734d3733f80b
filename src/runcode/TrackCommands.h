#pragma once

#include <QString>
#include <memory>

namespace Pelorin {

class IITPlaylist;
class RunCodeHost;
class WindowPlayer;

// The commands that edit the current track by property name, take it out of the library, and
// find playlists by name: "edittag", the library part of "deletecompletely", "playplaylist" and
// "addtoplaylist".
class TrackCommands {
public:
    TrackCommands(RunCodeHost& host, WindowPlayer& player);

    // "edittag=Comment=Nice": sets a property of the current track by its name. The word and the
    // one character after it are dropped whatever they are. Reports its own errors in a message
    // box and never throws.
    void EditTag(const QString& TheCode);

    // Removes the current track from the whole library (every list that holds it); the file
    // stays. Finds it with a library search for its artist, name and album and deletes the
    // results that are the same library track. Throws VbError.
    void DeleteCurrentTrack();

    // Plays the first playlist, sources and their playlists in the player's order, whose name
    // equals `PlayListName` ignoring case. A name that matches nothing fails ("Object variable
    // or With block variable not set"); throws VbError.
    void PlayPlaylist(const QString& PlayListName);

    // Adds the current track to the playlist found as PlayPlaylist finds it; throws VbError (also
    // when that playlist is not a user playlist).
    void AddToPlaylist(const QString& PlayListName);

private:
    std::shared_ptr<IITPlaylist> FindPlaylist(const QString& name) const;

    RunCodeHost& m_host;
    WindowPlayer& m_player;
};

} // namespace Pelorin
