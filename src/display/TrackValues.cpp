#include "display/TrackValues.h"

#include "base/TextRules.h"
#include "base/VbError.h"
#include "player/IiTunes.h"

#include <QLocale>

namespace Pelorin {

TrackValues::TrackValues(IiTunes* player) : m_player(player) {}

TrackValues::~TrackValues() = default;

QString TrackValues::Value(Placeholder placeholder) {
    std::optional<QString>& value = m_values[static_cast<std::size_t>(placeholder)];
    if (!value)
        value = Read(placeholder);
    return *value;
}

bool TrackValues::HasCurrentPlaylist() {
    if (!m_playlist)
        m_playlist = Player().CurrentPlaylist();
    return *m_playlist != nullptr;
}

QString TrackValues::RatingText(int rating) {
    QLocale locale;
    locale.setNumberOptions(QLocale::OmitGroupSeparator);
    return locale.toString(rating / 20.0, 'g', QLocale::FloatingPointShortest);
}

std::shared_ptr<IITTrack> TrackValues::CurrentTrack() {
    Track();
    return m_track;
}

int TrackValues::Rating() {
    if (!m_rating)
        m_rating = Track().Rating();
    return *m_rating;
}

int TrackValues::LengthSeconds() {
    // Whole seconds from the track's length text, as everything that measures the track reads it.
    return Rules::Seconds(Value(Placeholder::Time));
}

IiTunes& TrackValues::Player() {
    if (m_player == nullptr)
        throw VbError::ObjectNotSet();
    return *m_player;
}

IITTrack& TrackValues::Track() {
    if (!m_track) {
        m_track = Player().CurrentTrack();
        if (!m_track)
            throw VbError::ObjectNotSet();
    }
    return *m_track;
}

IITPlaylist& TrackValues::Playlist() {
    if (!HasCurrentPlaylist())
        throw VbError::ObjectNotSet();
    return **m_playlist;
}

QString TrackValues::Read(Placeholder placeholder) {
    switch (placeholder) {
    case Placeholder::Artist:
        return Track().Artist();
    case Placeholder::Title:
        return Track().Name();
    case Placeholder::Album:
        return Track().Album();
    case Placeholder::Time:
        return Track().Time();
    case Placeholder::PlayCount:
        return QString::number(Track().PlayedCount());
    case Placeholder::BitRate:
        return QString::number(Track().BitRate());
    case Placeholder::BPM:
        return QString::number(Track().BPM());
    case Placeholder::Comment:
        return Track().Comment();
    case Placeholder::Compilation:
        return Track().Compilation() ? QStringLiteral("True") : QStringLiteral("False");
    case Placeholder::Composer:
        return Track().Composer();
    case Placeholder::Genre:
        return Track().Genre();
    case Placeholder::Rating:
        return RatingText(Track().Rating());
    case Placeholder::TrackNumber:
        return QString::number(Track().TrackNumber());
    case Placeholder::Year:
        return QString::number(Track().Year());
    case Placeholder::CurrentPlaylistName:
        return Playlist().Name();
    case Placeholder::CurrentPlaylistTracks: {
        const auto tracks = Playlist().Tracks();
        if (!tracks)
            throw VbError::ObjectNotSet();
        return QString::number(tracks->Count());
    }
    case Placeholder::CurrentPlaylistDuration:
        // Whole seconds on purpose, not a time text.
        return QString::number(Playlist().Duration());
    case Placeholder::CurrentPosition:
    case Placeholder::CurrentRemaining:
        // Stand-by text until the progress timer writes the running time.
        return QStringLiteral("xx:xx");
    }
    return QString();
}

} // namespace Pelorin
