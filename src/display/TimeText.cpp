#include "display/TimeText.h"

#include "base/TextRules.h"

namespace Pelorin {

QString ConvertToTime(std::int32_t time, bool roundOther) {
    std::int32_t s = time / 1000; // integer division truncates toward zero, as the original did
    if (roundOther && time % 1000 != 0)
        ++s;
    const std::int16_t minutes = Rules::ToInt16(s / 60);
    const std::int32_t seconds = s % 60;
    return QString::number(minutes) + u':' + MakeNum(seconds);
}

QString MakeNum(std::int32_t aNum) {
    const QString text = QString::number(aNum);
    if (text.trimmed().size() == 1)
        return u'0' + text;
    return text;
}

} // namespace Pelorin
