#include "skin/SkinLine.h"

#include <gtest/gtest.h>

using namespace Pelorin;

TEST(SkinLine, EmptyLineIsSkipped) {
    EXPECT_FALSE(ParseSkinLine(QString()).has_value());
}

TEST(SkinLine, DoubleSlashLineIsAComment) {
    EXPECT_FALSE(ParseSkinLine(u"// label=1;1;1;1;x"_qs).has_value());
    EXPECT_FALSE(ParseSkinLine(u"//label=1;1;1;1;x"_qs).has_value());
}

TEST(SkinLine, DoubleBackslashLineIsAComment) {
    EXPECT_FALSE(ParseSkinLine(u"\\\\label=1;1;1;1;x"_qs).has_value());
}

TEST(SkinLine, ApostropheLineIsAComment) {
    EXPECT_FALSE(ParseSkinLine(u"'label=1;1;1;1;x"_qs).has_value());
}

TEST(SkinLine, OneSlashOrOneBackslashIsNotAComment) {
    ASSERT_TRUE(ParseSkinLine(u"/label=1"_qs).has_value());
    EXPECT_EQ(ParseSkinLine(u"/label=1"_qs)->Keyword, u"/label"_qs);
    ASSERT_TRUE(ParseSkinLine(u"\\label=1"_qs).has_value());
}

TEST(SkinLine, BlanksBeforeDoubleSlashMakeAKeywordNotAComment) {
    const auto entry = ParseSkinLine(u"   //label=1;1;1;1;x"_qs);
    ASSERT_TRUE(entry.has_value());
    EXPECT_EQ(entry->Keyword, u"   //label"_qs);
    EXPECT_FALSE(ParseSkinLine(u"   // a note without equals"_qs).has_value());
}

TEST(SkinLine, LineWithoutEqualsIsSkipped) {
    EXPECT_FALSE(ParseSkinLine(u"[Settings]"_qs).has_value());
}

TEST(SkinLine, TheLineIsCutAtTheFirstEquals) {
    const auto entry = ParseSkinLine(u"runcode=if a=b then c"_qs);
    ASSERT_TRUE(entry.has_value());
    EXPECT_EQ(entry->Keyword, u"runcode"_qs);
    EXPECT_EQ(entry->Value, u"if a=b then c"_qs);
}

TEST(SkinLine, TheKeywordIsLowerCasedAndNothingIsTrimmed) {
    const auto entry = ParseSkinLine(u"LaBeL = 1;2 "_qs);
    ASSERT_TRUE(entry.has_value());
    EXPECT_EQ(entry->Keyword, u"label "_qs);
    EXPECT_EQ(entry->Value, u" 1;2 "_qs);
    EXPECT_EQ(entry->Fields, (QStringList{u" 1"_qs, u"2 "_qs}));
}

TEST(SkinLine, TheValueKeepsItsCase) {
    EXPECT_EQ(ParseSkinLine(u"SkinName=My Skin"_qs)->Value, u"My Skin"_qs);
}

TEST(SkinLine, AnEmptyValueHasNoFields) {
    const auto entry = ParseSkinLine(u"onlyoneinstance="_qs);
    ASSERT_TRUE(entry.has_value());
    EXPECT_TRUE(entry->Value.isEmpty());
    EXPECT_TRUE(entry->Fields.isEmpty());
}

TEST(SkinLine, EmptyFieldsBetweenSeparatorsAreKept) {
    EXPECT_EQ(ParseSkinLine(u"x=a;;b;"_qs)->Fields,
              (QStringList{u"a"_qs, QString(), u"b"_qs, QString()}));
}

TEST(SkinLine, ACommentAfterAValueIsPartOfTheValue) {
    EXPECT_EQ(ParseSkinLine(u"skinname=Blue // my skin"_qs)->Value, u"Blue // my skin"_qs);
}

TEST(SkinLine, AKeywordWithOnlyEqualsIsAnEmptyKeyword) {
    const auto entry = ParseSkinLine(u"=value"_qs);
    ASSERT_TRUE(entry.has_value());
    EXPECT_TRUE(entry->Keyword.isEmpty());
}

TEST(SkinLine, AFieldLimitSplitsOnlyTheFirstFields) {
    const auto entry = ParseSkinLine(u"label=1;2;3;4;5;6"_qs, 3);
    ASSERT_TRUE(entry.has_value());
    EXPECT_EQ(entry->Fields, (QStringList{u"1"_qs, u"2"_qs, u"3"_qs}));
    EXPECT_EQ(entry->Value, u"1;2;3;4;5;6"_qs);
}
