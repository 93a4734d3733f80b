// Track editing and playlists against the in-memory player, including what the real player
// cannot be brought into (two playlists of one name in two sources).
#include "RecordingRunCodeHost.h"
#include "base/VbError.h"
#include "runcode/CommandInterpreter.h"
#include "support/player/memory/MemoryPlayer.h"

#include <gtest/gtest.h>

inline void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toStdString() << '"';
}

namespace Pelorin::Testing {
namespace {

MemoryTrackData Song(const QString& name, const QString& artist = QStringLiteral("Band")) {
    MemoryTrackData data;
    data.name = name;
    data.artist = artist;
    data.album = QStringLiteral("Record");
    data.duration = 180;
    return data;
}

class TrackCommandsTest : public ::testing::Test {
protected:
    TrackCommandsTest() : host(&player), interpreter(host, host) {
        a = player.addLibraryTrack(Song(QStringLiteral("Alpha")));
        b = player.addLibraryTrack(Song(QStringLiteral("Beta")));
        c = player.addLibraryTrack(Song(QStringLiteral("Gamma")));
        for (int id : {a, b})
            player.enqueue(id);
        player.Play();
    }

    void Run(const QString& code) { interpreter.RunCodeText(code); }

    QString CurrentName() const {
        const std::shared_ptr<IITTrack> track = player.CurrentTrack();
        return track ? track->Name() : QStringLiteral("-");
    }

    MemoryPlayer player;
    RecordingRunCodeHost host;
    CommandInterpreter interpreter;
    int a = 0, b = 0, c = 0;
};

QString EditTagError(const QString& code, const QString& description) {
    return QStringLiteral("There was an error in the runcode, Edit Tag. The input was:\n") + code +
           QStringLiteral("\nThe error caused was: ") + description +
           QStringLiteral("\nPlease make sure that the code is correct, and that the tag you are "
                          "trying to access is available.");
}

TEST_F(TrackCommandsTest, EditTagCommentSetsTheCommentToTheTextAfterTheEquals) {
    Run(QStringLiteral("edittag=Comment=Heard it live"));
    EXPECT_EQ(player.trackData(a).comment, QStringLiteral("Heard it live"));
    EXPECT_TRUE(host.messages.isEmpty());
}

TEST_F(TrackCommandsTest, EditTagTakesAnyOneCharacterAfterTheWord) {
    Run(QStringLiteral("EditTag:Genre=Jazz"));
    Run(QStringLiteral("edittag Year=1999"));
    EXPECT_EQ(player.trackData(a).genre, QStringLiteral("Jazz"));
    EXPECT_EQ(player.trackData(a).year, 1999);
}

TEST_F(TrackCommandsTest, EditTagIgnoresTextAfterASecondEquals) {
    Run(QStringLiteral("edittag=Comment=one=two"));
    EXPECT_EQ(player.trackData(a).comment, QStringLiteral("one"));
}

TEST_F(TrackCommandsTest, EditTagRatingTakesDigits) {
    Run(QStringLiteral("edittag=rating=60"));
    EXPECT_EQ(player.trackData(a).rating, 60);
}

TEST_F(TrackCommandsTest, EditTagWithAMisspeltPropertyShowsTheEditTagMessage) {
    Run(QStringLiteral("edittag=Coment=x"));
    ASSERT_EQ(host.messages.size(), 1);
    EXPECT_EQ(host.messages[0].icon, RunCodeHost::MessageIcon::Information);
    EXPECT_EQ(host.messages[0].title, QString());
    EXPECT_EQ(host.messages[0].text,
              EditTagError(QStringLiteral("edittag=Coment=x"),
                           QStringLiteral("Object doesn't support this property or method")));
    EXPECT_EQ(host.beeps, 0);
}

TEST_F(TrackCommandsTest, EditTagWithoutAValueShowsTheEditTagMessage) {
    Run(QStringLiteral("edittag=Comment"));
    ASSERT_EQ(host.messages.size(), 1);
    EXPECT_EQ(host.messages[0].text, EditTagError(QStringLiteral("edittag=Comment"),
                                                  QStringLiteral("Subscript out of range")));
}

TEST_F(TrackCommandsTest, EditTagWithANumberThatIsNoNumberShowsTheEditTagMessage) {
    Run(QStringLiteral("edittag=Year=soon"));
    ASSERT_EQ(host.messages.size(), 1);
    EXPECT_TRUE(host.messages[0].text.contains(QStringLiteral("Type mismatch")));
    EXPECT_EQ(player.trackData(a).year, 0);
}

TEST_F(TrackCommandsTest, EditTagWithoutAPlayerShowsItsMessageRatherThanABeep) {
    host.player = nullptr;
    Run(QStringLiteral("edittag=Comment=x"));
    ASSERT_EQ(host.messages.size(), 1);
    EXPECT_TRUE(host.messages[0].text.contains(
        QStringLiteral("Object variable or With block variable not set")));
    EXPECT_EQ(host.beeps, 0);
}

TEST_F(TrackCommandsTest, PlayPlaylistPlaysTheNamedPlaylistInAnyCase) {
    player.addUserPlaylist(QStringLiteral("Evening Mix"), {c, b});
    Run(QStringLiteral("playplaylist=EVENING mix"));
    EXPECT_EQ(CurrentName(), QStringLiteral("Gamma"));
    EXPECT_EQ(player.queueTrackIds(), (QList<int>{c, b}));
    EXPECT_EQ(player.CurrentPlaylist()->Name(), QStringLiteral("Evening Mix"));
}

TEST_F(TrackCommandsTest, PlayPlaylistTakesTheFirstOfTwoPlaylistsOfOneNameInASource) {
    player.addUserPlaylist(QStringLiteral("Mix"), {c});
    player.addUserPlaylist(QStringLiteral("mix"), {b});
    Run(QStringLiteral("playplaylist=MIX"));
    EXPECT_EQ(player.queueTrackIds(), QList<int>{c});
}

TEST_F(TrackCommandsTest, WithTwoPlaylistsOfOneNameInDifferentSourcesTheFirstSourceWins) {
    const int device = player.addSource(QStringLiteral("Device"));
    player.addUserPlaylist(QStringLiteral("Mix"), {b}, device);
    player.addUserPlaylist(QStringLiteral("Mix"), {c}, 1);
    Run(QStringLiteral("playplaylist=Mix"));
    EXPECT_EQ(player.queueTrackIds(), QList<int>{c});
}

TEST_F(TrackCommandsTest, PlayPlaylistOfANameThatMatchesNothingShowsTheRunCodeError) {
    Run(QStringLiteral("playplaylist=Nowhere"));
    ASSERT_EQ(host.messages.size(), 1);
    EXPECT_EQ(host.messages[0].title, QStringLiteral("Error!"));
    EXPECT_TRUE(host.messages[0].text.endsWith(
        QStringLiteral("Object variable or With block variable not set")));
    EXPECT_EQ(CurrentName(), QStringLiteral("Alpha"));
}

TEST_F(TrackCommandsTest, AddToPlaylistAppendsTheCurrentTrack) {
    player.addUserPlaylist(QStringLiteral("Keep"), {c});
    Run(QStringLiteral("addtoplaylist=keep"));
    EXPECT_EQ(player.userPlaylistTrackIds(QStringLiteral("Keep")), (QList<int>{c, a}));
    EXPECT_TRUE(host.messages.isEmpty());
}

TEST_F(TrackCommandsTest, AddToPlaylistOfTheLibraryFailsWithTheRunCodeError) {
    Run(QStringLiteral("addtoplaylist=Library"));
    ASSERT_EQ(host.messages.size(), 1);
    EXPECT_EQ(host.messages[0].title, QStringLiteral("Error!"));
}

TEST_F(TrackCommandsTest, AddToPlaylistOfANameThatMatchesNothingShowsTheRunCodeError) {
    Run(QStringLiteral("addtoplaylist=Nowhere"));
    ASSERT_EQ(host.messages.size(), 1);
}

TEST_F(TrackCommandsTest, DeleteCurrentTrackRemovesItFromTheQueueAndEveryPlaylist) {
    player.addUserPlaylist(QStringLiteral("Keep"), {a, c});
    interpreter.Tracks().DeleteCurrentTrack();
    EXPECT_EQ(player.queueTrackIds(), QList<int>{b});
    EXPECT_EQ(player.userPlaylistTrackIds(QStringLiteral("Keep")), QList<int>{c});
}

TEST_F(TrackCommandsTest, DeleteCurrentTrackLeavesOtherTracksTheSearchFinds) {
    // Same artist, name and album: the search finds both, only the playing one goes.
    const int twin = player.addLibraryTrack(Song(QStringLiteral("Alpha")));
    player.addUserPlaylist(QStringLiteral("Keep"), {a, twin});
    interpreter.Tracks().DeleteCurrentTrack();
    EXPECT_EQ(player.userPlaylistTrackIds(QStringLiteral("Keep")), QList<int>{twin});
}

TEST_F(TrackCommandsTest, DeleteCurrentTrackWithoutACurrentTrackFails) {
    player.Stop();
    EXPECT_THROW(interpreter.Tracks().DeleteCurrentTrack(), VbError);
    EXPECT_EQ(player.queueTrackIds(), (QList<int>{a, b}));
}

} // namespace
} // namespace Pelorin::Testing
