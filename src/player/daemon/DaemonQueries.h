#pragma once

#include "player/daemon/SongInfo.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <optional>

namespace Pelorin {

struct DaemonStatus;

class DaemonSession;

// Lists and searches of the daemon's database, queue and stored playlists, and its stickers.
namespace DaemonQueries {

QList<SongInfo> Queue(DaemonSession& session);
QList<SongInfo> Library(DaemonSession& session);
// With nothing queued (by `status`, read just before), queues the whole library ordered by album
// artist (or artist), album, disc and track number, then file name; true when it queued anything.
bool QueueLibraryWhenEmpty(DaemonSession& session, const DaemonStatus& status);
QStringList StoredPlaylistNames(DaemonSession& session);
QList<SongInfo> StoredPlaylist(DaemonSession& session, const QString& name);

// Where a search looks for each word.
enum class SearchScope { AnyTagOrFileName, Artist, Album, Composer, Title };

// Songs of the database in which every blank-separated word of `text` occurs (ignoring case)
// in the scope; the whole library when `text` has no words.
QList<SongInfo> Search(DaemonSession& session, const QString& text, SearchScope scope);
// The filter expression Search sends (one expression per word, all joined with AND).
QString SearchExpression(const QString& text, SearchScope scope);

// A song's sticker; none when the song has no such sticker or is not in the database.
std::optional<QString> Sticker(DaemonSession& session, const QString& uri, const char* name);
void SetSticker(DaemonSession& session, const QString& uri, const char* name, const QString& value);
// Removes a sticker; removing one that is not there is no error.
void DeleteSticker(DaemonSession& session, const QString& uri, const char* name);
// The URIs of every song that has the sticker.
QStringList SongsWithSticker(DaemonSession& session, const char* name);

// Gives every queued entry of these songs that is not the current one the range its "start" and
// "finish" stickers ask for (the daemon refuses to change the current entry's range). Entries that
// already have it are left alone, so applying them does not change the queue again.
void ApplyRanges(DaemonSession& session, const QStringList& uris);
// The same for every song with a "start" or "finish" sticker (after the queue changed).
void ApplyAllRanges(DaemonSession& session);

} // namespace DaemonQueries

} // namespace Pelorin
