// Skin events and interaction codes: the event table, its matching and its failure rule, and
// the interaction flag that stays raised.
#include "runcode/SkinEvents.h"

#include "RecordingRunCodeHost.h"
#include "base/TextRules.h"
#include "base/VbError.h"
#include "runcode/CommandInterpreter.h"
#include "support/player/memory/MemoryPlayer.h"

#include <gtest/gtest.h>

inline void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toStdString() << '"';
}

namespace Pelorin::Testing {
namespace {

// Records the codes in the order they ran.
struct CodeLog {
    QStringList ran;
    SkinEvents::RunCodeFunction Runner() {
        return [this](QString& code) { ran.append(code); };
    }
};

TEST(SkinEvents, NewsongAndNewSongBothRunOnATrackChangeInFileOrder) {
    SkinEvents events;
    events.NewEvent(QStringLiteral("newsong;first"));
    events.NewEvent(QStringLiteral("stopsong;other"));
    events.NewEvent(QStringLiteral("NewSong;second"));
    CodeLog log;
    events.CheckEvent(QStringLiteral("newsong"), log.Runner());
    EXPECT_EQ(log.ran, (QStringList{QStringLiteral("first"), QStringLiteral("second")}));
}

TEST(SkinEvents, AnEventNamedStopsongRunsOnStopAndOneNamedPauseNeverRuns) {
    SkinEvents events;
    events.NewEvent(QStringLiteral("Stopsong;stopped"));
    events.NewEvent(QStringLiteral("pause;paused"));
    CodeLog log;
    for (const char* fired : {"newsong", "stopsong", "databasechanged"})
        events.CheckEvent(QString::fromLatin1(fired), log.Runner());
    EXPECT_EQ(log.ran, QStringList{QStringLiteral("stopped")});
}

TEST(SkinEvents, TheCodeEndsAtTheSecondSemicolon) {
    SkinEvents events;
    events.NewEvent(QStringLiteral("newsong;volumeup;volumeup"));
    ASSERT_EQ(events.EventCount(), 1);
    EXPECT_EQ(events.Events()[0].Code, QStringLiteral("volumeup"));
}

TEST(SkinEvents, ADeclarationWithoutSemicolonFailsAndTheNextOneTakesItsSlot) {
    SkinEvents events;
    EXPECT_THROW(events.NewEvent(QStringLiteral("newsong")), VbError);
    EXPECT_EQ(events.EventCount(), 0);
    EXPECT_EQ(events.Events().size(), 1);
    EXPECT_THROW(events.NewEvent(QString()), VbError);
    events.NewEvent(QStringLiteral("stopsong;stop"));
    EXPECT_EQ(events.EventCount(), 1);
    ASSERT_EQ(events.Events().size(), 1);
    EXPECT_EQ(events.Events()[0].Name, QStringLiteral("stopsong"));
    CodeLog log;
    events.CheckEvent(QStringLiteral("newsong"), log.Runner());
    EXPECT_TRUE(log.ran.isEmpty());
}

TEST(SkinEvents, AFailingCodeDoesNotStopTheOtherRecords) {
    MemoryPlayer player;
    RecordingRunCodeHost host(&player);
    CommandInterpreter interpreter(host, host);
    player.SetSoundVolume(10);
    SkinEvents events;
    events.NewEvent(QStringLiteral("newsong;repeat"));
    events.NewEvent(QStringLiteral("newsong;volumeup"));
    events.CheckEvent(QStringLiteral("NEWSONG"),
                      [&interpreter](QString& code) { interpreter.RunCode(code); });
    // Stopped, so the failure only beeps.
    EXPECT_EQ(host.beeps, 1);
    EXPECT_EQ(player.SoundVolume(), 11);
}

TEST(SkinEvents, ACompoundCodeInTheTableLosesItsOpeningBracesWhenItRuns) {
    MemoryPlayer player;
    RecordingRunCodeHost host(&player);
    CommandInterpreter interpreter(host, host);
    SkinEvents events;
    events.NewEvent(QStringLiteral("databasechanged;{volumeup}{volumeup}"));
    const auto run = [&interpreter](QString& code) { interpreter.RunCode(code); };
    player.SetSoundVolume(10);
    events.CheckEvent(QStringLiteral("databasechanged"), run);
    EXPECT_EQ(events.Events()[0].Code, QStringLiteral("volumeup}volumeup}"));
    EXPECT_EQ(player.SoundVolume(), 12);
    events.CheckEvent(QStringLiteral("databasechanged"), run);
    EXPECT_EQ(player.SoundVolume(), 14);
}

TEST(TimedRules, SecondsReadsATracksTime) {
    EXPECT_EQ(Rules::Seconds(u"3:07"), 187);
    EXPECT_EQ(Rules::Seconds(u"307"), 0);
    EXPECT_EQ(Rules::Seconds(u"a:b"), 0);
}

TEST(TimedRules, IsLeftIgnoresCaseWithTextCompare) {
    EXPECT_TRUE(Rules::IsLeft(u"ReloadTimer=2", u"reloadtimer", 1));
    EXPECT_FALSE(Rules::IsLeft(u"ReloadTimer=2", u"reloadtimer", 0));
}

} // namespace
} // namespace Pelorin::Testing
