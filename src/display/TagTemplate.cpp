#include "display/TagTemplate.h"

#include "base/TextRules.h"
#include "display/TimeText.h"

#include <algorithm>

namespace Pelorin {

namespace {

const QString& CurrentPositionText() {
    static const QString text = QStringLiteral("[CurrentPosition]");
    return text;
}

const QString& CurrentRemainingText() {
    static const QString text = QStringLiteral("[CurrentRemaining]");
    return text;
}

// Every occurrence of `what` (any letter case) replaced by `with`, the result never longer than
// `limit`: the copy stops there, so no step builds more than the limit whatever the tags hold.
void ReplaceWithin(QString& caption, const QString& what, const QString& with, qsizetype limit) {
    qsizetype found = caption.indexOf(what, 0, Qt::CaseInsensitive);
    if (found < 0)
        return;
    QString result;
    result.reserve(std::min(limit, caption.size() + with.size()));
    qsizetype from = 0;
    while (found >= 0 && result.size() < limit) {
        result += QStringView(caption).mid(from, found - from);
        result += with;
        from = found + what.size();
        found = caption.indexOf(what, from, Qt::CaseInsensitive);
    }
    if (result.size() < limit)
        result += QStringView(caption).mid(from);
    result.truncate(limit);
    caption = result;
}

} // namespace

QString TagTemplate::Text(Placeholder placeholder) {
    switch (placeholder) {
    case Placeholder::Artist:
        return QStringLiteral("[Artist]");
    case Placeholder::Title:
        return QStringLiteral("[Title]");
    case Placeholder::Album:
        return QStringLiteral("[Album]");
    case Placeholder::Time:
        return QStringLiteral("[Time]");
    case Placeholder::PlayCount:
        return QStringLiteral("[PlayCount]");
    case Placeholder::BitRate:
        return QStringLiteral("[BitRate]");
    case Placeholder::BPM:
        return QStringLiteral("[BPM]");
    case Placeholder::Comment:
        return QStringLiteral("[Comment]");
    case Placeholder::Compilation:
        return QStringLiteral("[Compilation]");
    case Placeholder::Composer:
        return QStringLiteral("[Composer]");
    case Placeholder::Genre:
        return QStringLiteral("[Genre]");
    case Placeholder::Rating:
        return QStringLiteral("[Rating]");
    case Placeholder::TrackNumber:
        return QStringLiteral("[TrackNumber]");
    case Placeholder::Year:
        return QStringLiteral("[Year]");
    case Placeholder::CurrentPlaylistName:
        return QStringLiteral("[CurrentPlaylistName]");
    case Placeholder::CurrentPlaylistTracks:
        return QStringLiteral("[CurrentPlaylistTracks]");
    case Placeholder::CurrentPlaylistDuration:
        return QStringLiteral("[CurrentPlaylistDuration]");
    case Placeholder::CurrentPosition:
        return CurrentPositionText();
    case Placeholder::CurrentRemaining:
        return CurrentRemainingText();
    }
    return QString();
}

bool TagTemplate::IsPlaylistPlaceholder(Placeholder placeholder) {
    return placeholder == Placeholder::CurrentPlaylistName ||
           placeholder == Placeholder::CurrentPlaylistTracks ||
           placeholder == Placeholder::CurrentPlaylistDuration;
}

void TagTemplate::Fill(QString& caption, TrackValues& values) {
    for (int row = 0; row < PlaceholderCount; ++row) {
        const auto placeholder = static_cast<Placeholder>(row);
        if (IsPlaylistPlaceholder(placeholder) && !values.HasCurrentPlaylist())
            continue;
        // The value is read whether or not the caption holds the placeholder, so a failing
        // read ends the refresh at the same place for every template.
        const QString value = values.Value(placeholder);
        ReplaceWithin(caption, Text(placeholder), value, MaxCaption);
    }
}

bool TagTemplate::HasRunningTime(const QString& tag) {
    return HasCurrentPosition(tag) || HasCurrentRemaining(tag);
}

bool TagTemplate::HasCurrentPosition(const QString& tag) {
    return Rules::ContainsIgnoringCase(tag, CurrentPositionText());
}

bool TagTemplate::HasCurrentRemaining(const QString& tag) {
    return Rules::ContainsIgnoringCase(tag, CurrentRemainingText());
}

QString TagTemplate::CurrentPositionCaption(const QString& tag, std::int32_t milliseconds) {
    QString caption = tag;
    return caption.replace(CurrentPositionText(), ConvertToTime(milliseconds), Qt::CaseSensitive);
}

QString TagTemplate::CurrentRemainingCaption(const QString& tag, std::int32_t milliseconds) {
    QString caption = tag;
    return caption.replace(CurrentRemainingText(), ConvertToTime(milliseconds), Qt::CaseSensitive);
}

} // namespace Pelorin
