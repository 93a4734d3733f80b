#include "SkinLine.h"

#include "base/TextRules.h"

namespace Pelorin {

std::optional<SkinEntry> ParseSkinLine(const QString& line, qsizetype maxFields) {
    if (line.isEmpty() || line.startsWith(u"//") || line.startsWith(u"\\\\") ||
        line.startsWith(u'\''))
        return std::nullopt;
    const qsizetype equals = line.indexOf(u'=');
    if (equals < 0)
        return std::nullopt;
    SkinEntry entry;
    entry.Keyword = Rules::LowerCase(QStringView(line).left(equals));
    entry.Value = line.mid(equals + 1);
    entry.Fields = maxFields < 0 ? Rules::SplitFields(entry.Value)
                                 : Rules::SplitFirstFields(entry.Value, maxFields);
    return entry;
}

} // namespace Pelorin
