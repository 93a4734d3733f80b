#pragma once

#include <QString>
#include <QStringView>
#include <optional>

namespace Pelorin {

// The track properties that can be written by name (the "edittag" command), with the
// conversion of the text value that the original automation layer made.
enum class TrackProperty {
    Name,
    Artist,
    Album,
    AlbumArtist,
    Composer,
    Genre,
    Comment,
    Grouping,
    TrackNumber,
    DiscNumber,
    Year,
    BPM,
    Compilation,
    Rating,
    PlayedCount,
    Start,
    Finish,
    VolumeAdjustment,
};

enum class TrackPropertyType { Text, Number, Boolean };

// The writable property of that name, ignoring case; nullopt for unknown and read-only names.
std::optional<TrackProperty> WritableTrackProperty(QStringView name);

// The property's name as the track interface spells it ("TrackNumber").
QString TrackPropertyName(TrackProperty property);

TrackPropertyType TypeOf(TrackProperty property);

// A text value for a Number property: a number standing alone, rounded half to even;
// VbError::TypeMismatch or VbError::Overflow otherwise.
int TrackNumberValue(QStringView text);

// A text value for a Boolean property: "True"/"False" or a number; VbError::TypeMismatch
// otherwise.
bool TrackBooleanValue(QStringView text);

} // namespace Pelorin
