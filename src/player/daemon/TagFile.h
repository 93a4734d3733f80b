#pragma once

#include "player/TrackProperty.h"

#include <QByteArray>
#include <QList>
#include <QString>

namespace Pelorin {

// Reading and writing a music file's own tags and pictures, for what the daemon does not tell or
// cannot change. Every writer throws VbError::Player with a clear text when the file is missing,
// unreadable, of a format that cannot hold the value, or cannot be saved; a failed write leaves
// the file as it was.
namespace TagFile {

// What the daemon does not report about a file; zeros and false when it cannot be read.
struct Facts {
    int bitRate = 0; // kilobits per second
    int bpm = 0;
    bool compilation = false;
};
Facts ReadFacts(const QString& path);

// Tags and pictures a skin or a drop puts into the user's files: a value of at most this many
// characters, a picture of at most this many bytes that is a PNG or a JPEG.
inline constexpr qsizetype MaxTagValue = 1024;
inline constexpr qint64 MaxPictureBytes = 16 * 1024 * 1024;
bool IsPngOrJpeg(const QByteArray& picture);

// The file is never changed in place: a copy beside it is edited and renamed over it, so a crash
// or a full disk mid-save leaves the original as it was.
// Writes one property (its value as text; empty removes it). Only the text and number tags
// (Name, Artist, Album, AlbumArtist, Composer, Genre, Comment, Grouping, TrackNumber,
// DiscNumber, Year, BPM, Compilation) live in the file.
void WriteProperty(const QString& path, TrackProperty property, const QString& value);
// The key the property is stored under ("TITLE" for Name); empty for properties not in the file.
QString PropertyKey(TrackProperty property);

// The pictures embedded in the file, the front cover first.
QList<QByteArray> Pictures(const QString& path);
// Embeds `picture` (JPEG or PNG bytes) as the front cover, replacing any earlier front cover.
void EmbedFrontCover(const QString& path, const QByteArray& picture);

} // namespace TagFile

} // namespace Pelorin
