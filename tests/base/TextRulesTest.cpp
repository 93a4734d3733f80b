#include "base/TextRules.h"

#include "base/VbError.h"

#include <gtest/gtest.h>

using namespace Pelorin;
using namespace Pelorin::Rules;

namespace {

int ErrorNumberOf(auto&& f) {
    try {
        f();
    } catch (const VbError& e) {
        return e.number();
    }
    return 0;
}

} // namespace

TEST(LeadingNumber, ReadsPlainDigits) {
    EXPECT_EQ(LeadingNumber(u"1200"), 1200);
}

TEST(LeadingNumber, SkipsLeadingBlanksAndTabs) {
    EXPECT_EQ(LeadingNumber(u"   \t 42"), 42);
}

TEST(LeadingNumber, ReadsOptionalSign) {
    EXPECT_EQ(LeadingNumber(u"-15"), -15);
    EXPECT_EQ(LeadingNumber(u"+7"), 7);
    EXPECT_EQ(LeadingNumber(u" -3.5x"), -3.5);
}

TEST(LeadingNumber, ReadsDecimalPart) {
    EXPECT_DOUBLE_EQ(LeadingNumber(u"1.25"), 1.25);
    EXPECT_DOUBLE_EQ(LeadingNumber(u".5"), 0.5);
    EXPECT_DOUBLE_EQ(LeadingNumber(u"3."), 3.0);
}

TEST(LeadingNumber, StopsAtFirstOtherCharacter) {
    EXPECT_EQ(LeadingNumber(u"12abc"), 12);
    EXPECT_EQ(LeadingNumber(u"10;20"), 10);
    EXPECT_EQ(LeadingNumber(u"1 2"), 1);
    EXPECT_EQ(LeadingNumber(u"1e3"), 1);
    EXPECT_DOUBLE_EQ(LeadingNumber(u"1.2.3"), 1.2);
}

TEST(LeadingNumber, NoNumberGivesZero) {
    EXPECT_EQ(LeadingNumber(u""), 0);
    EXPECT_EQ(LeadingNumber(u"abc"), 0);
    EXPECT_EQ(LeadingNumber(u"-"), 0);
    EXPECT_EQ(LeadingNumber(u"."), 0);
    EXPECT_EQ(LeadingNumber(u"r120"), 0);
    EXPECT_EQ(LeadingNumber(u"yes"), 0);
}

TEST(LeadingNumber, ReadsHexadecimalAfterAmpersandH) {
    EXPECT_EQ(LeadingNumber(u"&HFF0000"), 16711680);
    EXPECT_EQ(LeadingNumber(u"&hff"), 255);
    EXPECT_EQ(LeadingNumber(u"  &H10zz"), 16);
    EXPECT_EQ(LeadingNumber(u"&H"), 0);
    EXPECT_EQ(LeadingNumber(u"&Hxyz"), 0);
}

TEST(LeadingNumber, EightHexDigitsAreA32BitPattern) {
    EXPECT_EQ(LeadingNumber(u"&HFFFFFFFF"), -1);
    EXPECT_EQ(LeadingNumber(u"&H7FFFFFFF"), 2147483647);
}

TEST(LeadingNumber, HugeDigitStringsDoNotCrash) {
    const QString huge(100000, QLatin1Char('9'));
    EXPECT_GT(LeadingNumber(huge), 1e300);
    EXPECT_EQ(ErrorNumberOf([&] { (void)Int32Of(huge); }), VbError::OverflowNumber);
}

TEST(RoundHalfEven, RoundsHalvesToTheEvenNeighbour) {
    EXPECT_EQ(RoundHalfEven(0.5), 0);
    EXPECT_EQ(RoundHalfEven(1.5), 2);
    EXPECT_EQ(RoundHalfEven(2.5), 2);
    EXPECT_EQ(RoundHalfEven(3.5), 4);
    EXPECT_EQ(RoundHalfEven(-2.5), -2);
    EXPECT_EQ(RoundHalfEven(-3.5), -4);
    EXPECT_EQ(RoundHalfEven(2.4999), 2);
    EXPECT_EQ(RoundHalfEven(2.5001), 3);
}

TEST(WholeNumbers, SixteenBitRangeIsChecked) {
    EXPECT_EQ(ToInt16(32767), 32767);
    EXPECT_EQ(ToInt16(-32768), -32768);
    EXPECT_EQ(ToInt16(32767.4), 32767);
    EXPECT_EQ(ErrorNumberOf([] { (void)ToInt16(32767.5); }), VbError::OverflowNumber);
    EXPECT_EQ(ErrorNumberOf([] { (void)ToInt16(-32769); }), VbError::OverflowNumber);
}

TEST(WholeNumbers, ThirtyTwoBitRangeIsChecked) {
    EXPECT_EQ(ToInt32(2147483647.0), 2147483647);
    EXPECT_EQ(ToInt32(-2147483648.0), -2147483647 - 1);
    EXPECT_EQ(ErrorNumberOf([] { (void)ToInt32(2147483648.0); }), VbError::OverflowNumber);
    EXPECT_EQ(ErrorNumberOf([] { (void)ToInt32(-2147483649.0); }), VbError::OverflowNumber);
}

TEST(WholeNumbers, TextIsReadWithTheLeadingNumberRuleThenRounded) {
    EXPECT_EQ(Int16Of(u"2.5px"), 2);
    EXPECT_EQ(Int32Of(u"  -7.5"), -8);
    EXPECT_EQ(Int32Of(u"junk"), 0);
    EXPECT_EQ(ErrorNumberOf([] { (void)Int16Of(u"40000"); }), VbError::OverflowNumber);
}

TEST(Booleans, TrueAndFalseInAnyCase) {
    EXPECT_TRUE(ToBoolean(u"True"));
    EXPECT_TRUE(ToBoolean(u"TRUE"));
    EXPECT_TRUE(ToBoolean(u"tRuE"));
    EXPECT_FALSE(ToBoolean(u"false"));
    EXPECT_FALSE(ToBoolean(u"FALSE"));
    EXPECT_TRUE(ToBoolean(u" true "));
}

TEST(Booleans, NumbersAreZeroOrNot) {
    EXPECT_FALSE(ToBoolean(u"0"));
    EXPECT_FALSE(ToBoolean(u"0.0"));
    EXPECT_TRUE(ToBoolean(u"1"));
    EXPECT_TRUE(ToBoolean(u"-1"));
    EXPECT_TRUE(ToBoolean(u"0.5"));
    EXPECT_TRUE(ToBoolean(u"&H1"));
    EXPECT_FALSE(ToBoolean(u" 0 "));
}

TEST(Booleans, AnythingElseIsATypeMismatch) {
    for (const char16_t* text : {u"", u"yes", u"no", u"12abc", u"truex", u"1 1", u"on"})
        EXPECT_EQ(ErrorNumberOf([&] { (void)ToBoolean(text); }), VbError::TypeMismatchNumber)
            << QString::fromUtf16(text).toStdString();
}

TEST(FieldSplitting, SplitsAtEverySemicolonKeepingEmptyFields) {
    EXPECT_EQ(
        SplitFields(QStringLiteral("10;20;;x")),
        (QStringList{QStringLiteral("10"), QStringLiteral("20"), QString(), QStringLiteral("x")}));
    EXPECT_EQ(SplitFields(QStringLiteral(";")), (QStringList{QString(), QString()}));
}

TEST(FieldSplitting, EmptyValueHasNoFieldsAtAll) {
    EXPECT_TRUE(SplitFields(QString()).isEmpty());
    EXPECT_EQ(ErrorNumberOf([] { (void)Field(SplitFields(QString()), 0); }),
              VbError::SubscriptOutOfRangeNumber);
}

TEST(FieldSplitting, NoQuotingOrEscaping) {
    EXPECT_EQ(SplitFields(QStringLiteral("a\\;b")).size(), 2);
    EXPECT_EQ(SplitFields(QStringLiteral("\"a;b\"")).size(), 2);
}

TEST(FieldSplitting, OtherSeparators) {
    EXPECT_EQ(SplitFields(QStringLiteral("a|b|c"), QLatin1Char('|')).size(), 3);
}

TEST(FieldSplitting, FirstFieldsStopAfterTheFieldsAsked) {
    const QString value = QStringLiteral("a;;b;c");
    for (qsizetype n = 0; n <= 5; ++n)
        EXPECT_EQ(SplitFirstFields(value, n), SplitFields(value).mid(0, n)) << n;
    EXPECT_TRUE(SplitFirstFields(QString(), 3).isEmpty());
    EXPECT_EQ(SplitFirstFields(QStringLiteral(";"), 5), (QStringList{QString(), QString()}));
    EXPECT_EQ(SplitFirstFields(QStringLiteral("x|y"), 1, QLatin1Char('|')),
              QStringList{QStringLiteral("x")});
}

TEST(FieldSplitting, MissingFieldIsSubscriptOutOfRange) {
    const QStringList fields = SplitFields(QStringLiteral("1;2"));
    EXPECT_EQ(Field(fields, 1), QStringLiteral("2"));
    EXPECT_EQ(ErrorNumberOf([&] { (void)Field(fields, 2); }), VbError::SubscriptOutOfRangeNumber);
    EXPECT_EQ(ErrorNumberOf([&] { (void)Field(fields, -1); }), VbError::SubscriptOutOfRangeNumber);
}

TEST(IsLeft, TextComparisonIgnoresCase) {
    EXPECT_TRUE(IsLeft(u"SkipForward", u"skip", 1));
    EXPECT_FALSE(IsLeft(u"SkipForward", u"skip", 0));
    EXPECT_TRUE(IsLeft(u"skipForward", u"skip", 0));
}

TEST(IsLeft, LongerCheckNeverMatchesAndEmptyCheckAlwaysDoes) {
    EXPECT_FALSE(IsLeft(u"vol", u"volume", 1));
    EXPECT_TRUE(IsLeft(u"anything", u"", 0));
    EXPECT_TRUE(IsLeft(u"", u"", 1));
}

TEST(Seconds, MinutesAndSecondsToWholeSeconds) {
    EXPECT_EQ(Seconds(u"3:07"), 187);
    EXPECT_EQ(Seconds(u"0:00"), 0);
    EXPECT_EQ(Seconds(u"61:01"), 3661);
}

TEST(Seconds, AnythingThatFailsGivesZero) {
    EXPECT_EQ(Seconds(u""), 0);
    EXPECT_EQ(Seconds(u"187"), 0);
    EXPECT_EQ(Seconds(u"a:07"), 0);
    EXPECT_EQ(Seconds(u"3:xx"), 0);
    EXPECT_EQ(Seconds(u"99999999999:00"), 0);
}

TEST(Seconds, OnlyTheFirstTwoPartsCount) {
    EXPECT_EQ(Seconds(u"1:02:03"), 62);
}

TEST(LowerCasing, IsLocaleIndependentAndUnicodeAware) {
    EXPECT_EQ(LowerCase(u"LABEL"), QStringLiteral("label"));
    EXPECT_EQ(LowerCase(u"ÄÖÜ"), QStringLiteral("äöü"));
    EXPECT_TRUE(EqualsIgnoringCase(u"NewSong", u"newsong"));
    EXPECT_TRUE(ContainsIgnoringCase(u"C:/Program Files/ITUNES/x", u"iTunes"));
    EXPECT_FALSE(ContainsIgnoringCase(u"/usr/bin/mpc", u"mpd"));
}

TEST(Twips, FifteenTwipsPerPixelHalvesToEven) {
    EXPECT_EQ(TwipsToPixels(300), 20);
    EXPECT_EQ(TwipsToPixels(450), 30);
    EXPECT_EQ(TwipsToPixels(22.5), 2); // 1.5 px
    EXPECT_EQ(TwipsToPixels(37.5), 2); // 2.5 px
    EXPECT_EQ(PixelsToTwips(80), 1200);
}

TEST(FormatNumber, NonNegativeNumbersGetOneLeadingBlank) {
    EXPECT_EQ(FormatNumber(1200), QStringLiteral(" 1200"));
    EXPECT_EQ(FormatNumber(0), QStringLiteral(" 0"));
    EXPECT_EQ(FormatNumber(-15), QStringLiteral("-15"));
    EXPECT_EQ(FormatNumber(1.5), QStringLiteral(" 1.5"));
    EXPECT_EQ(FormatNumber(0.5), QStringLiteral(" .5"));
}

TEST(FormatNumber, RoundTripsThroughTheLeadingNumberRule) {
    for (double v : {0.0, 1200.0, -300.0, 13560.0, -1.0})
        EXPECT_EQ(LeadingNumber(FormatNumber(v)), v);
}

TEST(VbErrors, CarryNumberAndDescription) {
    EXPECT_EQ(VbError::TypeMismatch().number(), 13);
    EXPECT_EQ(VbError::TypeMismatch().description(), QStringLiteral("Type mismatch"));
    EXPECT_EQ(VbError::Overflow().number(), 6);
    EXPECT_EQ(VbError::Overflow().description(), QStringLiteral("Overflow"));
    EXPECT_EQ(VbError::SubscriptOutOfRange().number(), 9);
    EXPECT_EQ(VbError::SubscriptOutOfRange().description(),
              QStringLiteral("Subscript out of range"));
    EXPECT_EQ(VbError::ControlArrayElementMissing(3).number(), 340);
    EXPECT_EQ(VbError::ControlArrayElementMissing(3).description(),
              QStringLiteral("Control array element '3' doesn't exist"));
    EXPECT_EQ(VbError::ObjectNotSet().number(), 91);
    EXPECT_EQ(VbError::CannotLoadFile().number(), 5);
    EXPECT_EQ(VbError::CannotLoadFile().description(), QStringLiteral("Cannot load file"));
    EXPECT_STREQ(VbError::CannotLoadFile().what(), "Cannot load file");
}

TEST(Printable, ControlCharactersBecomeEscapesAndTheRestStays) {
    EXPECT_EQ(Printable(u"Title\x1b[2J done"), QStringLiteral("Title\\x1b[2J done"));
    EXPECT_EQ(Printable(u"a\tb"), QStringLiteral("a\tb"));
    EXPECT_EQ(Printable(u"bell\x07 del\x7f c1\u0085"),
              QStringLiteral("bell\\x07 del\\x7f c1\\x85"));
    EXPECT_EQ(Printable(u"Björk – Jóga ♪"), QStringLiteral("Björk – Jóga ♪"));
}

TEST(Printable, CharactersThatReorderTheLineAreShownAsEscapes) {
    EXPECT_EQ(Printable(u"evil\u202egnp.exe"), QStringLiteral("evil\\u202egnp.exe"));
    EXPECT_EQ(Printable(u"\u2066x\u2069"), QStringLiteral("\\u2066x\\u2069"));
}
