#include "player/IITTrack.h"

#include "base/VbError.h"
#include "player/PlayerError.h"
#include "player/TrackProperty.h"

#include <limits>

namespace Pelorin {

namespace {

void RequireRange(const char* what, int value, int low, int high) {
    if (value < low || value > high) {
        throw VbError::Player(QStringLiteral("%1 must lie between %2 and %3")
                                  .arg(QLatin1String(what))
                                  .arg(low)
                                  .arg(high));
    }
}

} // namespace

void IITTrack::SetRating(int value) {
    RequireRange("Rating", value, 0, 100);
    WriteRating(value);
}

void IITTrack::SetPlayedCount(int value) {
    RequireRange("PlayedCount", value, 0, std::numeric_limits<int>::max());
    WritePlayedCount(value);
}

void IITTrack::SetStart(int seconds) {
    RequireRange("Start", seconds, 0, Finish());
    WriteStart(seconds);
}

void IITTrack::SetFinish(int seconds) {
    const int length = Duration();
    RequireRange("Finish", seconds, Start(), length > 0 ? length : std::numeric_limits<int>::max());
    WriteFinish(seconds);
}

void IITTrack::SetVolumeAdjustment(int value) {
    RequireRange("VolumeAdjustment", value, -100, 100);
    WriteVolumeAdjustment(value);
}

void IITTrack::SetPropertyByName(const QString& name, const QString& value) {
    const std::optional<TrackProperty> property = WritableTrackProperty(name);
    if (!property)
        throw PlayerError::NoSuchProperty();
    switch (*property) {
    case TrackProperty::Name:
        return SetName(value);
    case TrackProperty::Artist:
        return SetArtist(value);
    case TrackProperty::Album:
        return SetAlbum(value);
    case TrackProperty::AlbumArtist:
        return SetAlbumArtist(value);
    case TrackProperty::Composer:
        return SetComposer(value);
    case TrackProperty::Genre:
        return SetGenre(value);
    case TrackProperty::Comment:
        return SetComment(value);
    case TrackProperty::Grouping:
        return SetGrouping(value);
    case TrackProperty::TrackNumber:
        return SetTrackNumber(TrackNumberValue(value));
    case TrackProperty::DiscNumber:
        return SetDiscNumber(TrackNumberValue(value));
    case TrackProperty::Year:
        return SetYear(TrackNumberValue(value));
    case TrackProperty::BPM:
        return SetBPM(TrackNumberValue(value));
    case TrackProperty::Compilation:
        return SetCompilation(TrackBooleanValue(value));
    case TrackProperty::Rating:
        return SetRating(TrackNumberValue(value));
    case TrackProperty::PlayedCount:
        return SetPlayedCount(TrackNumberValue(value));
    case TrackProperty::Start:
        return SetStart(TrackNumberValue(value));
    case TrackProperty::Finish:
        return SetFinish(TrackNumberValue(value));
    case TrackProperty::VolumeAdjustment:
        return SetVolumeAdjustment(TrackNumberValue(value));
    }
}

} // namespace Pelorin
