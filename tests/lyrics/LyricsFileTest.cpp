// Lyrics sync files: a track's file name, the reader with its header lookup and line splitting,
// and the writer, over real files in a temporary folder.
#include "lyrics/LyricsFile.h"

#include "base/VbError.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <sys/stat.h>

using namespace Pelorin;

namespace {

class LyricsFileTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(dir.isValid());
        folder = dir.path() + u'/';
    }

    QString Write(const QString& name, const QByteArray& bytes) {
        const QString path = folder + name;
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return path;
    }

    QTemporaryDir dir;
    QString folder;
};

const QByteArray Example = "[CantomSyncFile]1\r\n[Timing] Normal\r\n[Creator]Some Name\r\n"
                           "[DefaultLyrics]~ instrumental ~\r\n[TimeOffset]0.5s\r\n[Lyrics]\r\n"
                           "[12.5] First line of the song\r\n[17] Second line\r\n[EndLyrics]\r\n";

TEST_F(LyricsFileTest, ATrackNamedAcDcByLive1991MapsToLive1991BackslashAcdc) {
    EXPECT_EQ(LyricsFile::GetFileName(QStringLiteral("Live: 1991"), QStringLiteral("AC/DC")),
              QStringLiteral("Live 1991\\ACDC.lyr"));
}

TEST_F(LyricsFileTest, FileNamesLoseForbiddenCharactersAndDoubleBackslashes) {
    EXPECT_EQ(LyricsFile::GetFileName(QString(), QStringLiteral("Song")),
              QStringLiteral("\\Song.lyr"));
    EXPECT_EQ(LyricsFile::GetFileName(QStringLiteral("A\\\\B"), QStringLiteral("x*?\"<>|y")),
              QStringLiteral("A\\B\\xy.lyr"));
    EXPECT_EQ(LyricsFile::GetFileName(QStringLiteral("A\\B"), QStringLiteral("C")),
              QStringLiteral("A\\B\\C.lyr"))
        << "a backslash in the artist makes a sub-folder";
}

TEST_F(LyricsFileTest, TheCurrentFileNameReplacesAppPathByTheProgramFolder) {
    LyricsFile lyrics(QStringLiteral("/home/u/pelorin/"));
    EXPECT_EQ(lyrics.GetCurFileName(QStringLiteral("APPPATH\\Lyrics\\"), QStringLiteral("Band"),
                                    QStringLiteral("Song")),
              QStringLiteral("/home/u/pelorin/\\Lyrics\\Band\\Song.lyr"));
    EXPECT_EQ(
        lyrics.GetCurFileName(QStringLiteral("apppath/"), QStringLiteral("B"), QStringLiteral("S")),
        QStringLiteral("apppath/B\\S.lyr"))
        << "only the exact spelling is replaced";
}

TEST_F(LyricsFileTest, AWholeFileLoadsWithCreatorOffsetAndLines) {
    LyricsFile lyrics;
    lyrics.LoadLyricFile(Write(QStringLiteral("a.lyr"), Example));
    EXPECT_EQ(lyrics.Creator(), QStringLiteral("Some Name"));
    EXPECT_DOUBLE_EQ(lyrics.TimeOffset(), 0.5) << "the leading number of 0.5s";
    ASSERT_EQ(lyrics.Lines().size(), 9);
    QString key = QStringLiteral("Lyrics");
    EXPECT_EQ(lyrics.GetCommand(key), QString());
    EXPECT_EQ(key, QStringLiteral("[Lyrics]")) << "the caller's key is wrapped";
    EXPECT_EQ(lyrics.CurLine(), 5);
}

TEST_F(LyricsFileTest, AVersionLineWithATrailingBlankIsRejected) {
    QByteArray bytes = Example;
    bytes.replace("[CantomSyncFile]1\r\n", "[CantomSyncFile]1 \r\n");
    LyricsFile lyrics;
    lyrics.LoadLyricFile(Write(QStringLiteral("a.lyr"), bytes));
    EXPECT_EQ(lyrics.Lines(), QStringList{QString()}) << "no lyrics";
}

TEST_F(LyricsFileTest, AFileWhoseFirstLineIsEmptyStillLoads) {
    LyricsFile lyrics;
    lyrics.LoadLyricFile(Write(QStringLiteral("a.lyr"), "\r\n\r\n" + Example));
    EXPECT_EQ(lyrics.Lines().first(), QStringLiteral("[CantomSyncFile]1"));
    EXPECT_EQ(lyrics.Creator(), QStringLiteral("Some Name"));
}

TEST_F(LyricsFileTest, ADefaultLyricsLineWithNothingAfterItGivesEmptyDefaultLyrics) {
    QByteArray bytes = Example;
    bytes.replace("[DefaultLyrics]~ instrumental ~", "[DefaultLyrics]");
    LyricsFile lyrics;
    lyrics.LoadLyricFile(Write(QStringLiteral("a.lyr"), bytes));
    QString key = QStringLiteral("DefaultLyrics");
    EXPECT_EQ(lyrics.GetCommand(key), QString());
    EXPECT_EQ(lyrics.CurLine(), 3) << "the line was found";
}

TEST_F(LyricsFileTest, ATimedLineWithBlanksInsideTheBracketsGivesTimeSevenAndTextHello) {
    EXPECT_EQ(LyricsFile::GetCommandPart(true, QStringLiteral("[ 7 ]hello")), QStringLiteral("7"));
    EXPECT_EQ(LyricsFile::GetCommandPart(false, QStringLiteral("[ 7 ]hello")),
              QStringLiteral("hello"));
}

TEST_F(LyricsFileTest, SplittingEmptyUnclosedAndBracketlessLines) {
    EXPECT_EQ(LyricsFile::GetCommandPart(true, QString()), QStringLiteral("0"));
    EXPECT_EQ(LyricsFile::GetCommandPart(false, QString()), QStringLiteral("0"));
    EXPECT_EQ(LyricsFile::GetCommandPart(true, QStringLiteral("x [12 open")),
              QStringLiteral("[12 open"));
    EXPECT_EQ(LyricsFile::GetCommandPart(false, QStringLiteral("  no brackets ")),
              QStringLiteral("no brackets"));
    EXPECT_THROW(LyricsFile::GetCommandPart(true, QStringLiteral("no brackets")), VbError);
}

TEST_F(LyricsFileTest, KeysAreMatchedExactlyAndTheFirstMatchWins) {
    LyricsFile lyrics;
    lyrics.LoadLyricFile(Write(QStringLiteral("a.lyr"),
                               "[creator]lower\r\n[CantomSyncFile]1\r\n[Creator]First\r\n"
                               "[Creator]Second\r\n"));
    EXPECT_EQ(lyrics.Creator(), QStringLiteral("First"));
    QString key = QStringLiteral("Missing");
    lyrics.SetCurLine(2);
    EXPECT_EQ(lyrics.GetCommand(key), QString());
    EXPECT_EQ(lyrics.CurLine(), 2) << "no match keeps the current line";
}

TEST_F(LyricsFileTest, AMissingFileAFolderAndAPipeAllReadAsNoLyrics) {
    LyricsFile lyrics;
    EXPECT_EQ(lyrics.ReadToString(folder + QStringLiteral("none.lyr")), QString());
    ASSERT_TRUE(QDir().mkpath(folder + QStringLiteral("dir.lyr")));
    EXPECT_EQ(lyrics.ReadToString(folder + QStringLiteral("dir.lyr")), QString());
    const QByteArray fifo = QFile::encodeName(folder + QStringLiteral("pipe.lyr"));
    ASSERT_EQ(::mkfifo(fifo.constData(), 0600), 0);
    EXPECT_EQ(lyrics.ReadToString(folder + QStringLiteral("pipe.lyr")), QString()) << "no hang";
    lyrics.LoadLyricFile(folder + QStringLiteral("none.lyr"));
    EXPECT_EQ(lyrics.Lines(), QStringList{QString()});
}

TEST_F(LyricsFileTest, AHundredMegabyteFileReadsAsNoLyricsAtOnce) {
    QFile file(folder + QStringLiteral("huge.lyr"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("[CantomSyncFile]1\r\n");
    ASSERT_TRUE(file.resize(100LL * 1024 * 1024));
    file.close();
    LyricsFile lyrics;
    lyrics.LoadLyricFile(file.fileName());
    EXPECT_EQ(lyrics.Lines(), QStringList{QString()});
}

TEST_F(LyricsFileTest, BinaryContentLoadsAsNoLyrics) {
    QByteArray bytes;
    for (int i = 0; i < 4096; ++i)
        bytes += static_cast<char>((i * 131) & 0xFF);
    LyricsFile lyrics;
    lyrics.LoadLyricFile(Write(QStringLiteral("binary.lyr"), bytes));
    EXPECT_EQ(lyrics.Lines(), QStringList{QString()});
}

TEST_F(LyricsFileTest, TheReaderStopsAfter10001Lines) {
    QByteArray bytes;
    for (int i = 0; i < 10100; ++i)
        bytes += "[" + QByteArray::number(i) + "]line\r\n";
    LyricsFile lyrics;
    const QString text = lyrics.ReadToString(Write(QStringLiteral("long.lyr"), bytes));
    EXPECT_EQ(lyrics.LinesRead(), 10001);
    EXPECT_EQ(text.split(QStringLiteral("\r\n")).size(), 10001);
    EXPECT_TRUE(text.endsWith(QStringLiteral("[10000]line")));
}

TEST_F(LyricsFileTest, WindowsTextLfOnlyFilesAndBackslashFoldersAreRead) {
    ASSERT_TRUE(QDir().mkpath(folder + QStringLiteral("Band")));
    Write(QStringLiteral("Band/Song.lyr"),
          "[CantomSyncFile]1\n[Creator]Jos\xe9\n[Lyrics]\n[1]Caf\xe9\n[EndLyrics]\n");
    LyricsFile lyrics(folder);
    lyrics.LoadLyricFile(QStringLiteral("APPPATH") + QStringLiteral("Band\\Song.lyr"));
    EXPECT_EQ(lyrics.Creator(), QStringLiteral("Jos\u00e9"));
    EXPECT_EQ(lyrics.Lines().at(3), QStringLiteral("[1]Caf\u00e9"));
}

TEST_F(LyricsFileTest, TheWriterWritesTheLayoutAndTheReaderReadsItBack) {
    const QString path = folder + QStringLiteral("w.lyr");
    ASSERT_TRUE(LyricsFile::WriteLyricsFile(path, QStringLiteral("[1]one\r\n[2]two"),
                                            QStringLiteral("~"), QStringLiteral("Me")));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), "[CantomSyncFile]1\r\n[Timing] Normal\r\n[Creator]Me\r\n"
                              "[DefaultLyrics]~\r\n[TimeOffset]0\r\n[Lyrics]\r\n[1]one\r\n"
                              "[2]two\r\n[EndLyrics]\r\n");
    LyricsFile lyrics;
    lyrics.LoadLyricFile(path);
    EXPECT_EQ(lyrics.Creator(), QStringLiteral("Me"));
}

TEST_F(LyricsFileTest, TheWriterDoesNotCreateMissingFolders) {
    QString error;
    EXPECT_FALSE(LyricsFile::WriteLyricsFile(folder + QStringLiteral("No Band/Song.lyr"), QString(),
                                             QString(), QString(), &error));
    EXPECT_FALSE(error.isEmpty());
    EXPECT_FALSE(QFile::exists(folder + QStringLiteral("No Band")));
}

} // namespace
