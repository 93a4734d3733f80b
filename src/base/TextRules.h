#pragma once

#include <QString>
#include <QStringList>
#include <QStringView>
#include <cstdint>

// The one home of the text and number rules that skin files, the command language, settings and
// the display share. Nothing else parses numbers, splits fields or tests prefixes on its own.
namespace Pelorin::Rules {

// Twips survive only where files and the command line carry them.
inline constexpr int TwipsPerPixel = 15;

// The leading number of a text: blanks skipped, an optional sign, digits with an optional
// decimal part, or "&H" and hexadecimal digits; reading stops at the first other character and
// text without a number gives 0. Never fails.
double LeadingNumber(QStringView text);

// True when the whole text, blanks around it aside, is one number in the form LeadingNumber
// reads. Used where a number must stand alone (Booleans written as numbers).
bool IsWholeNumberText(QStringView text);

// Nearest whole number, halves to the even neighbour (2.5 -> 2, 3.5 -> 4, -2.5 -> -2).
double RoundHalfEven(double value);

// Rounded half to even, then range-checked; VbError::Overflow outside the range.
std::int16_t ToInt16(double value);
std::int32_t ToInt32(double value);

// LeadingNumber then ToInt16 / ToInt32.
std::int16_t Int16Of(QStringView text);
std::int32_t Int32Of(QStringView text);

// "True" / "False" in any letter case, or a number standing alone (zero is False);
// anything else raises VbError::TypeMismatch.
bool ToBoolean(QStringView text);

// The fields of a value: split at every separator, no quoting. An empty text has no fields at
// all (so its first field is already missing), as the original Split behaved.
QStringList SplitFields(const QString& value, QChar separator = QLatin1Char(';'));

// The first `maxFields` fields of SplitFields, without splitting the rest, so a line of millions
// of separators costs no more than the fields a reader uses.
QStringList SplitFirstFields(const QString& value, qsizetype maxFields,
                             QChar separator = QLatin1Char(';'));

// Field `index` of a split value; VbError::SubscriptOutOfRange when it is missing.
const QString& Field(const QStringList& fields, qsizetype index);

// Lower-casing for keyword, command and event comparisons (locale-independent).
QString LowerCase(QStringView text);
bool EqualsIgnoringCase(QStringView a, QStringView b);
bool ContainsIgnoringCase(QStringView haystack, QStringView needle);

// True when the first Len(check) characters of main equal check; compareType 1 ignores case,
// 0 compares exactly. A check longer than main never matches; an empty check always does.
bool IsLeft(QStringView mainString, QStringView checkString, int compareType);

// "m:ss" (a track's Time) to whole seconds: minutes times 60 plus seconds. Anything that fails
// (no ":", a part that is not a number, overflow) gives 0.
int Seconds(QStringView mmss);

// Twips and pixels at a fixed 15 twips per pixel; halves round to even.
std::int32_t TwipsToPixels(double twips);
double PixelsToTwips(double pixels);

// A number as the platform's default number format prints it: non-negative numbers get one
// leading blank (" 1200"), negative ones their sign ("-15"); no trailing zeros.
QString FormatNumber(double value);

// Text from a skin or a tag made safe for a terminal: control characters (other than the tab),
// DEL, the C1 controls and the characters that reorder text on screen (bidirectional overrides
// and isolates) become escapes such as "\x1b" and "\u202e"; everything else stays as it is.
QString Printable(QStringView text);

} // namespace Pelorin::Rules
