#include "display/TimeText.h"

#include "base/VbError.h"

#include <gtest/gtest.h>

using namespace Pelorin;

TEST(ConvertToTime, DropsThePartSecondUnlessAskedToRoundItUp) {
    EXPECT_EQ(ConvertToTime(59999, false), u"0:59"_qs);
    EXPECT_EQ(ConvertToTime(59999, true), u"1:00"_qs);
    EXPECT_EQ(ConvertToTime(65999), u"1:05"_qs);
    EXPECT_EQ(ConvertToTime(65999, true), u"1:06"_qs);
}

TEST(ConvertToTime, WholeSecondsAreNotRoundedUp) {
    EXPECT_EQ(ConvertToTime(0), u"0:00"_qs);
    EXPECT_EQ(ConvertToTime(7000), u"0:07"_qs);
    EXPECT_EQ(ConvertToTime(7000, true), u"0:07"_qs);
}

TEST(ConvertToTime, HasNoHoursField) {
    EXPECT_EQ(ConvertToTime(3723000), u"62:03"_qs);
}

TEST(ConvertToTime, MinutesBeyondASixteenBitIntegerOverflow) {
    EXPECT_EQ(ConvertToTime(32767 * 60 * 1000 + 59000), u"32767:59"_qs);
    try {
        ConvertToTime(32768 * 60 * 1000);
        FAIL() << "no overflow";
    } catch (const VbError& error) {
        EXPECT_EQ(error.number(), VbError::OverflowNumber);
    }
}

TEST(ConvertToTime, NegativeTimesKeepTheirSignInTheSeconds) {
    EXPECT_EQ(ConvertToTime(-5000), u"0:-5"_qs);
    EXPECT_EQ(ConvertToTime(-65000), u"-1:-5"_qs);
}

TEST(MakeNum, PadsOneCharacterNumbersWithAZero) {
    EXPECT_EQ(MakeNum(0), u"00"_qs);
    EXPECT_EQ(MakeNum(7), u"07"_qs);
    EXPECT_EQ(MakeNum(42), u"42"_qs);
    EXPECT_EQ(MakeNum(123), u"123"_qs);
}
