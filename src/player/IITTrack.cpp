#include "player/IITTrack.h"

#include "player/PlayerError.h"
#include "player/TrackProperty.h"

namespace Pelorin {

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
