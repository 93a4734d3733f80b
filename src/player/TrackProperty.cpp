#include "player/TrackProperty.h"

#include "base/TextRules.h"
#include "base/VbError.h"

#include <array>

namespace Pelorin {

namespace {

struct PropertyInfo {
    TrackProperty property;
    const char16_t* name;
    TrackPropertyType type;
};

constexpr std::array<PropertyInfo, 18> Properties{{
    {TrackProperty::Name, u"Name", TrackPropertyType::Text},
    {TrackProperty::Artist, u"Artist", TrackPropertyType::Text},
    {TrackProperty::Album, u"Album", TrackPropertyType::Text},
    {TrackProperty::AlbumArtist, u"AlbumArtist", TrackPropertyType::Text},
    {TrackProperty::Composer, u"Composer", TrackPropertyType::Text},
    {TrackProperty::Genre, u"Genre", TrackPropertyType::Text},
    {TrackProperty::Comment, u"Comment", TrackPropertyType::Text},
    {TrackProperty::Grouping, u"Grouping", TrackPropertyType::Text},
    {TrackProperty::TrackNumber, u"TrackNumber", TrackPropertyType::Number},
    {TrackProperty::DiscNumber, u"DiscNumber", TrackPropertyType::Number},
    {TrackProperty::Year, u"Year", TrackPropertyType::Number},
    {TrackProperty::BPM, u"BPM", TrackPropertyType::Number},
    {TrackProperty::Compilation, u"Compilation", TrackPropertyType::Boolean},
    {TrackProperty::Rating, u"Rating", TrackPropertyType::Number},
    {TrackProperty::PlayedCount, u"PlayedCount", TrackPropertyType::Number},
    {TrackProperty::Start, u"Start", TrackPropertyType::Number},
    {TrackProperty::Finish, u"Finish", TrackPropertyType::Number},
    {TrackProperty::VolumeAdjustment, u"VolumeAdjustment", TrackPropertyType::Number},
}};

const PropertyInfo& InfoOf(TrackProperty property) {
    for (const PropertyInfo& info : Properties) {
        if (info.property == property)
            return info;
    }
    return Properties.front();
}

} // namespace

std::optional<TrackProperty> WritableTrackProperty(QStringView name) {
    for (const PropertyInfo& info : Properties) {
        if (Rules::EqualsIgnoringCase(name, QStringView(info.name)))
            return info.property;
    }
    return std::nullopt;
}

QString TrackPropertyName(TrackProperty property) {
    return QString::fromUtf16(InfoOf(property).name);
}

TrackPropertyType TypeOf(TrackProperty property) {
    return InfoOf(property).type;
}

int TrackNumberValue(QStringView text) {
    if (!Rules::IsWholeNumberText(text))
        throw VbError::TypeMismatch();
    return Rules::ToInt32(Rules::LeadingNumber(text));
}

bool TrackBooleanValue(QStringView text) {
    return Rules::ToBoolean(text);
}

} // namespace Pelorin
