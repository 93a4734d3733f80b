// LRC files turned into sync files: tags, stamps and offsets, the file written under the track's
// name, and what cannot be imported.
#include "lyrics/LrcImport.h"

#include "base/TextFile.h"
#include "lyrics/LyricsFile.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace Pelorin;

namespace {

// The lines of LRC text as a file holding these bytes reads.
QStringList Lines(const QByteArray& bytes) {
    return TextFile::FromBytes(bytes).Lines;
}

class LrcImportTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(dir.isValid());
        lyricsFolder = dir.path() + QStringLiteral("/Lyrics/");
    }
    QString Write(const QByteArray& bytes) {
        const QString path = dir.path() + QStringLiteral("/song.lrc");
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return path;
    }
    static QByteArray Read(const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(missing)");
    }

    QTemporaryDir dir;
    QString lyricsFolder;
};

TEST_F(LrcImportTest, TagsStampsAndWordStampsBecomeTimedLinesInOrder) {
    LrcImport::Lyrics lyrics;
    ASSERT_TRUE(LrcImport::Parse(Lines("[ar: Band ]\n[ti:Song]\n[by:Someone]\n"
                                       "[00:12.50]<00:12.50>First <00:13.00>line\n"
                                       "[00:05.00][01:02]Chorus\n[00:20.7]\n"),
                                 lyrics));
    EXPECT_EQ(lyrics.artist, QStringLiteral("Band"));
    EXPECT_EQ(lyrics.title, QStringLiteral("Song"));
    EXPECT_EQ(lyrics.creator, QStringLiteral("Someone"));
    EXPECT_EQ(lyrics.timedLines, 4);
    EXPECT_EQ(lyrics.section,
              QStringLiteral("[5]Chorus\r\n[12.5]First line\r\n[20.7]\r\n[62]Chorus"));
}

TEST_F(LrcImportTest, APositiveOffsetMakesTheLinesEarlierAndNoneGoesBelowZero) {
    LrcImport::Lyrics lyrics;
    ASSERT_TRUE(LrcImport::Parse(
        Lines("[ar:A]\r\n[ti:T]\r\n[offset:+500]\r\n[00:00.20]zero\r\n[00:10.00]ten\r\n"), lyrics));
    EXPECT_EQ(lyrics.section, QStringLiteral("[0]zero\r\n[9.5]ten"));
    ASSERT_TRUE(LrcImport::Parse(Lines("[ar:A]\n[ti:T]\n[offset:-250]\n[00:10.00]ten\n"), lyrics));
    EXPECT_EQ(lyrics.section, QStringLiteral("[10.25]ten"));
}

TEST_F(LrcImportTest, ImportWritesTheSyncFileUnderTheTracksNameAndMakesTheArtistsFolder) {
    QString error;
    const QString written = LrcImport::Import(
        Write("[ar:Live: 1991]\n[ti:AC/DC]\n[00:01.00]one\n[00:03.50]two\n"), lyricsFolder, &error);
    EXPECT_EQ(error, QString());
    EXPECT_EQ(written, QDir::cleanPath(lyricsFolder + QStringLiteral("Live 1991/ACDC.lyr")));
    EXPECT_EQ(Read(written), "[CantomSyncFile]1\r\n[Timing] Normal\r\n[Creator]Pelorin (imported "
                             "from LRC)\r\n[DefaultLyrics]\r\n[TimeOffset]0\r\n[Lyrics]\r\n"
                             "[1]one\r\n[3.5]two\r\n[EndLyrics]\r\n");
    LyricsFile file;
    file.LoadLyricFile(written);
    EXPECT_EQ(file.Lines().size(), 9) << "the lyrics control reads it";
}

TEST_F(LrcImportTest, WindowsTextAndCrLfFilesAreRead) {
    const QString written = LrcImport::Import(
        Write("[ar:Jos\xe9]\r\n[ti:Caf\xe9]\r\n[00:01.00]d\xe9j\xe0 vu\r\n"), lyricsFolder);
    ASSERT_FALSE(written.isEmpty());
    EXPECT_TRUE(written.endsWith(QStringLiteral("Jos\u00e9/Caf\u00e9.lyr")));
    EXPECT_TRUE(Read(written).contains("[1]d\xc3\xa9j\xc3\xa0 vu"));
}

TEST_F(LrcImportTest, FilesWithoutArtistTitleOrTimedLinesWriteNothing) {
    QString error;
    EXPECT_EQ(LrcImport::Import(Write("[ti:T]\n[00:01.00]x\n"), lyricsFolder, &error), QString());
    EXPECT_NE(error.indexOf(QStringLiteral("no [ar:] tag")), -1) << error.toStdString();
    EXPECT_EQ(LrcImport::Import(Write("[ar:A]\n[00:01.00]x\n"), lyricsFolder, &error), QString());
    EXPECT_NE(error.indexOf(QStringLiteral("no [ti:] tag")), -1);
    EXPECT_EQ(LrcImport::Import(Write("[ar:A]\n[ti:T]\njust words\n"), lyricsFolder, &error),
              QString());
    EXPECT_NE(error.indexOf(QStringLiteral("no timed line")), -1);
    EXPECT_FALSE(QDir(lyricsFolder).exists()) << "nothing was written";
}

TEST_F(LrcImportTest, AFileThatCannotBeReadWritesNothing) {
    QString error;
    EXPECT_EQ(LrcImport::Import(dir.path() + QStringLiteral("/none.lrc"), lyricsFolder, &error),
              QString());
    EXPECT_FALSE(error.isEmpty());
    EXPECT_EQ(LrcImport::Import(dir.path(), lyricsFolder, &error), QString()) << "a folder";
    EXPECT_FALSE(error.isEmpty());
}

} // namespace
