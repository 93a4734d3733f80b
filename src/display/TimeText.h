#pragma once

#include <QString>
#include <cstdint>

// The minutes-and-seconds text of running times.
namespace Pelorin {

// Milliseconds as minutes, ":" and two-digit seconds ("1:05"); there is no hours field
// (3723000 gives "62:03"). The part second is dropped, or counted as a whole second with
// roundOther. Minutes beyond a 16-bit Integer raise VbError::Overflow.
QString ConvertToTime(std::int32_t time, bool roundOther = false);

// A number's decimal text, with a "0" in front when that text is one character (7 gives "07",
// 42 gives "42", 123 gives "123").
QString MakeNum(std::int32_t aNum);

} // namespace Pelorin
