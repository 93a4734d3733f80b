#include "TextRules.h"

#include "VbError.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace Pelorin::Rules {

namespace {

bool IsBlank(QChar c) {
    return c == QLatin1Char(' ') || c == QLatin1Char('\t');
}

bool IsDigit(QChar c) {
    return c >= QLatin1Char('0') && c <= QLatin1Char('9');
}

int HexValue(QChar c) {
    const char16_t u = c.unicode();
    if (u >= u'0' && u <= u'9')
        return u - u'0';
    if (u >= u'a' && u <= u'f')
        return u - u'a' + 10;
    if (u >= u'A' && u <= u'F')
        return u - u'A' + 10;
    return -1;
}

// Reads one number at `pos` (no blanks skipped). Returns the characters consumed, 0 when no
// number starts there; `value` receives the number.
qsizetype ScanNumber(QStringView text, qsizetype pos, double& value) {
    const qsizetype start = pos;
    const qsizetype n = text.size();
    if (pos + 1 < n && text[pos] == QLatin1Char('&') &&
        (text[pos + 1] == QLatin1Char('H') || text[pos + 1] == QLatin1Char('h'))) {
        pos += 2;
        double hex = 0;
        qsizetype digits = 0;
        for (; pos < n && HexValue(text[pos]) >= 0; ++pos, ++digits)
            hex = hex * 16 + HexValue(text[pos]);
        if (digits == 0)
            return 0;
        // Eight hex digits are a 32-bit pattern: &HFFFFFFFF is -1, as the platform read it.
        if (digits <= 8 && hex > std::numeric_limits<std::int32_t>::max())
            hex -= 4294967296.0;
        value = hex;
        return pos - start;
    }

    QByteArray latin;
    if (pos < n && (text[pos] == QLatin1Char('+') || text[pos] == QLatin1Char('-')))
        latin.append(static_cast<char>(text[pos++].unicode()));
    qsizetype digits = 0;
    for (; pos < n && IsDigit(text[pos]); ++pos, ++digits)
        latin.append(static_cast<char>(text[pos].unicode()));
    if (pos < n && text[pos] == QLatin1Char('.')) {
        qsizetype fraction = 0;
        qsizetype p = pos + 1;
        QByteArray frac(".");
        for (; p < n && IsDigit(text[p]); ++p, ++fraction)
            frac.append(static_cast<char>(text[p].unicode()));
        if (fraction > 0 || digits > 0) {
            latin.append(frac);
            digits += fraction;
            pos = p;
        }
    }
    if (digits == 0)
        return 0;
    // from_chars reads the C grammar whatever the process locale: Qt sets the user's locale at
    // start-up, and under a decimal-comma locale strtod would read "1.25" as 1.
    const char* first = latin.constData();
    if (*first == '+')
        ++first;
    const auto result = std::from_chars(first, latin.constData() + latin.size(), value);
    if (result.ec == std::errc::result_out_of_range) {
        // Too large in magnitude when a whole digit other than 0 precedes the point, too small
        // otherwise: the values strtod gave.
        const qsizetype point = latin.indexOf('.');
        const QByteArray whole = point < 0 ? latin : latin.left(point);
        const bool huge =
            std::any_of(whole.begin(), whole.end(), [](char c) { return c >= '1' && c <= '9'; });
        value = (latin.startsWith('-') ? -1.0 : 1.0) * (huge ? HUGE_VAL : 0.0);
    }
    return pos - start;
}

} // namespace

double LeadingNumber(QStringView text) {
    qsizetype pos = 0;
    while (pos < text.size() && IsBlank(text[pos]))
        ++pos;
    double value = 0;
    if (ScanNumber(text, pos, value) == 0)
        return 0;
    return value;
}

bool IsWholeNumberText(QStringView text) {
    const QStringView trimmed = text.trimmed();
    if (trimmed.isEmpty())
        return false;
    double value = 0;
    return ScanNumber(trimmed, 0, value) == trimmed.size();
}

double RoundHalfEven(double value) {
    // nearbyint follows the current rounding mode, which is round-to-nearest-even by default.
    return std::nearbyint(value);
}

std::int16_t ToInt16(double value) {
    const double r = RoundHalfEven(value);
    if (!(r >= std::numeric_limits<std::int16_t>::min() &&
          r <= std::numeric_limits<std::int16_t>::max()))
        throw VbError::Overflow();
    return static_cast<std::int16_t>(r);
}

std::int32_t ToInt32(double value) {
    const double r = RoundHalfEven(value);
    if (!(r >= std::numeric_limits<std::int32_t>::min() &&
          r <= std::numeric_limits<std::int32_t>::max()))
        throw VbError::Overflow();
    return static_cast<std::int32_t>(r);
}

std::int16_t Int16Of(QStringView text) {
    return ToInt16(LeadingNumber(text));
}

std::int32_t Int32Of(QStringView text) {
    return ToInt32(LeadingNumber(text));
}

bool ToBoolean(QStringView text) {
    const QStringView trimmed = text.trimmed();
    if (trimmed.compare(u"true", Qt::CaseInsensitive) == 0)
        return true;
    if (trimmed.compare(u"false", Qt::CaseInsensitive) == 0)
        return false;
    if (!IsWholeNumberText(trimmed))
        throw VbError::TypeMismatch();
    return LeadingNumber(trimmed) != 0;
}

QStringList SplitFields(const QString& value, QChar separator) {
    if (value.isEmpty())
        return {};
    return value.split(separator, Qt::KeepEmptyParts);
}

QStringList SplitFirstFields(const QString& value, qsizetype maxFields, QChar separator) {
    QStringList fields;
    if (value.isEmpty())
        return fields;
    qsizetype start = 0;
    while (fields.size() < maxFields) {
        const qsizetype end = value.indexOf(separator, start);
        if (end < 0) {
            fields.append(value.mid(start));
            break;
        }
        fields.append(value.mid(start, end - start));
        start = end + 1;
    }
    return fields;
}

const QString& Field(const QStringList& fields, qsizetype index) {
    if (index < 0 || index >= fields.size())
        throw VbError::SubscriptOutOfRange();
    return fields[index];
}

QString LowerCase(QStringView text) {
    return text.toString().toLower();
}

bool EqualsIgnoringCase(QStringView a, QStringView b) {
    return a.compare(b, Qt::CaseInsensitive) == 0;
}

bool ContainsIgnoringCase(QStringView haystack, QStringView needle) {
    return haystack.contains(needle, Qt::CaseInsensitive);
}

bool IsLeft(QStringView mainString, QStringView checkString, int compareType) {
    if (checkString.size() > mainString.size())
        return false;
    const Qt::CaseSensitivity cs = compareType == 1 ? Qt::CaseInsensitive : Qt::CaseSensitive;
    return mainString.left(checkString.size()).compare(checkString, cs) == 0;
}

int Seconds(QStringView mmss) {
    const qsizetype colon = mmss.indexOf(QLatin1Char(':'));
    if (colon < 0)
        return 0;
    const QStringView minutes = mmss.left(colon);
    QStringView seconds = mmss.mid(colon + 1);
    const qsizetype second = seconds.indexOf(QLatin1Char(':'));
    if (second >= 0)
        seconds = seconds.left(second);
    if (!IsWholeNumberText(minutes) || !IsWholeNumberText(seconds))
        return 0;
    try {
        return ToInt32(LeadingNumber(minutes.trimmed()) * 60 + LeadingNumber(seconds.trimmed()));
    } catch (const VbError&) {
        return 0;
    }
}

std::int32_t TwipsToPixels(double twips) {
    return ToInt32(twips / TwipsPerPixel);
}

double PixelsToTwips(double pixels) {
    return pixels * TwipsPerPixel;
}

QString FormatNumber(double value) {
    QString digits;
    if (value == std::floor(value) && std::fabs(value) < 1e15) {
        digits = QString::number(static_cast<long long>(std::fabs(value)));
    } else {
        digits = QString::number(std::fabs(value), 'g', 15).toUpper();
        if (digits.startsWith(QLatin1String("0.")))
            digits.remove(0, 1); // the platform printed .5, not 0.5
    }
    return (value < 0 ? QLatin1Char('-') : QLatin1Char(' ')) + digits;
}

QString Printable(QStringView text) {
    QString shown;
    shown.reserve(text.size());
    for (const QChar c : text) {
        const char16_t u = c.unicode();
        const bool control = (u < 0x20 && u != u'\t') || (u >= 0x7f && u <= 0x9f);
        const bool reorders = (u >= 0x202a && u <= 0x202e) || (u >= 0x2066 && u <= 0x2069) ||
                              u == 0x200e || u == 0x200f || u == 0x061c;
        if (control)
            shown += QStringLiteral("\\x%1").arg(u, 2, 16, QLatin1Char('0'));
        else if (reorders)
            shown += QStringLiteral("\\u%1").arg(u, 4, 16, QLatin1Char('0'));
        else
            shown += c;
    }
    return shown;
}

} // namespace Pelorin::Rules
