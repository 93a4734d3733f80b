#include "player/TrackTime.h"
#include "support/player/memory/MemoryPlayer.h"

#include <gtest/gtest.h>

using namespace Pelorin;

namespace {

class TrackPropertyByName : public ::testing::Test {
protected:
    TrackPropertyByName() {
        MemoryTrackData data;
        data.name = QStringLiteral("Song");
        data.duration = 180;
        id = player.addLibraryTrack(data);
        player.enqueue(id);
        player.Play();
        track = player.CurrentTrack();
    }

    QString ErrorOf(const QString& name, const QString& value) {
        try {
            track->SetPropertyByName(name, value);
        } catch (const VbError& error) {
            return error.description();
        }
        return QString();
    }

    MemoryPlayer player;
    int id = 0;
    std::shared_ptr<IITTrack> track;
};

} // namespace

TEST_F(TrackPropertyByName, CommentIsSetToTheText) {
    track->SetPropertyByName(QStringLiteral("Comment"), QStringLiteral("from the runcode"));
    EXPECT_EQ(track->Comment(), QStringLiteral("from the runcode"));
}

TEST_F(TrackPropertyByName, NameIsFoundInAnyLetterCase) {
    track->SetPropertyByName(QStringLiteral("gEnRe"), QStringLiteral("Jazz"));
    EXPECT_EQ(track->Genre(), QStringLiteral("Jazz"));
}

TEST_F(TrackPropertyByName, NumericPropertiesAcceptDigits) {
    track->SetPropertyByName(QStringLiteral("Year"), QStringLiteral("1999"));
    track->SetPropertyByName(QStringLiteral("Rating"), QStringLiteral(" 80 "));
    track->SetPropertyByName(QStringLiteral("TrackNumber"), QStringLiteral("2.5"));
    EXPECT_EQ(track->Year(), 1999);
    EXPECT_EQ(track->Rating(), 80);
    EXPECT_EQ(track->TrackNumber(), 2); // halves round to even
}

TEST_F(TrackPropertyByName, NumericPropertyRejectsTextAsATypeMismatch) {
    EXPECT_EQ(ErrorOf(QStringLiteral("Year"), QStringLiteral("12abc")),
              QStringLiteral("Type mismatch"));
    EXPECT_EQ(ErrorOf(QStringLiteral("BPM"), QString()), QStringLiteral("Type mismatch"));
    EXPECT_EQ(track->Year(), 0);
}

TEST_F(TrackPropertyByName, BooleanPropertyTakesTrueFalseOrANumber) {
    track->SetPropertyByName(QStringLiteral("Compilation"), QStringLiteral("true"));
    EXPECT_TRUE(track->Compilation());
    track->SetPropertyByName(QStringLiteral("Compilation"), QStringLiteral("0"));
    EXPECT_FALSE(track->Compilation());
    EXPECT_EQ(ErrorOf(QStringLiteral("Compilation"), QStringLiteral("yes")),
              QStringLiteral("Type mismatch"));
}

TEST_F(TrackPropertyByName, MisspeltPropertyIsNotSupportedByTheObject) {
    EXPECT_EQ(ErrorOf(QStringLiteral("Coment"), QStringLiteral("x")),
              QStringLiteral("Object doesn't support this property or method"));
}

TEST_F(TrackPropertyByName, ReadOnlyPropertyCannotBeSet) {
    EXPECT_EQ(ErrorOf(QStringLiteral("Time"), QStringLiteral("1:00")),
              QStringLiteral("Object doesn't support this property or method"));
    EXPECT_EQ(ErrorOf(QStringLiteral("TrackDatabaseID"), QStringLiteral("5")),
              QStringLiteral("Object doesn't support this property or method"));
}

TEST_F(TrackPropertyByName, PlayerLimitsStillApply) {
    EXPECT_FALSE(ErrorOf(QStringLiteral("Rating"), QStringLiteral("120")).isEmpty());
    EXPECT_EQ(track->Rating(), 0);
}

TEST(TrackTime, IsWholeMinutesAndTwoDigitSeconds) {
    EXPECT_EQ(TrackTimeText(0), QStringLiteral("0:00"));
    EXPECT_EQ(TrackTimeText(187), QStringLiteral("3:07"));
    EXPECT_EQ(TrackTimeText(3723), QStringLiteral("62:03"));
    EXPECT_EQ(TrackTimeText(-4), QStringLiteral("0:00"));
}
