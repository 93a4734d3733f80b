#pragma once

#include <QString>
#include <QStringList>
#include <optional>

namespace Pelorin {

// One skin line cut into its parts. Lives only while its line is applied.
struct SkinEntry {
    QString Keyword;    // lower-cased, exactly as written otherwise (blanks included)
    QString Value;      // everything after the first "=", untouched
    QStringList Fields; // the value split at every ";"; an empty value has no fields
};

// The entry of a raw line, or nothing for a line that is skipped: empty, beginning with "//",
// "\\" or "'", or without "=". Only the first characters decide a comment, and nothing is
// trimmed, so "   //x=1" is a line whose keyword is "   //x". With `maxFields` at 0 or more only
// that many fields are split off; fields beyond those a keyword reads are ignored anyway.
std::optional<SkinEntry> ParseSkinLine(const QString& line, qsizetype maxFields = -1);

} // namespace Pelorin
