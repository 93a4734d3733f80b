// The number rules read skin values, command arguments and settings: a German or French desktop
// must read "1.25" exactly as an English one does. Qt hands the user's locale to the C library at
// start-up, so these tests switch the C library's numeric locale to one with a decimal comma.
#include "base/TextRules.h"

#include <clocale>
#include <gtest/gtest.h>
#include <string>

using namespace Pelorin::Rules;

namespace {

class DecimalCommaLocale : public ::testing::Test {
protected:
    void SetUp() override {
        saved_ = std::setlocale(LC_NUMERIC, nullptr);
        // scripts/install-deps.sh generates de_DE.UTF-8; the others are there for machines that
        // have a different one.
        for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "fr_FR.utf8"}) {
            if (std::setlocale(LC_NUMERIC, name) != nullptr)
                break;
        }
        const std::lconv* conventions = std::localeconv();
        ASSERT_STREQ(conventions->decimal_point, ",")
            << "no decimal-comma locale is installed (scripts/install-deps.sh makes de_DE.UTF-8)";
    }
    void TearDown() override { std::setlocale(LC_NUMERIC, saved_.c_str()); }

private:
    std::string saved_;
};

} // namespace

TEST_F(DecimalCommaLocale, LeadingNumberReadsThePointAsTheDecimalSeparator) {
    EXPECT_DOUBLE_EQ(LeadingNumber(u"1.25"), 1.25);
    EXPECT_DOUBLE_EQ(LeadingNumber(u".5"), 0.5);
    EXPECT_DOUBLE_EQ(LeadingNumber(u" -3.5x"), -3.5);
}

TEST_F(DecimalCommaLocale, LeadingNumberStopsAtAComma) {
    EXPECT_DOUBLE_EQ(LeadingNumber(u"1,25"), 1.0);
}

TEST_F(DecimalCommaLocale, WholeNumberRoundingAndBooleansReadAsInTheCLocale) {
    EXPECT_EQ(Int32Of(u"2.5"), 2);
    EXPECT_EQ(Int32Of(u"3.5"), 4);
    EXPECT_TRUE(ToBoolean(u"0.5"));
    EXPECT_FALSE(ToBoolean(u"0.0"));
}

TEST_F(DecimalCommaLocale, SecondsReadFractionalMinutesAndSeconds) {
    EXPECT_EQ(Seconds(u"1:30.4"), 90);
}

TEST_F(DecimalCommaLocale, HugeAndTinyNumbersStillOverflowOrVanish) {
    const QString huge = QStringLiteral("1") + QString(400, QLatin1Char('0'));
    EXPECT_GT(LeadingNumber(huge), 1e300);
    EXPECT_LT(LeadingNumber(QLatin1Char('-') + huge), -1e300);
    const QString tiny = QStringLiteral("0.") + QString(400, QLatin1Char('0')) + QLatin1Char('1');
    EXPECT_EQ(LeadingNumber(tiny), 0.0);
}
