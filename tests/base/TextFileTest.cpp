#include "base/TextFile.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace Pelorin;

namespace {

QByteArray ReadBytes(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return file.readAll();
}

bool WriteBytes(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

} // namespace

TEST(TextFile, CrLfEndsALine) {
    EXPECT_EQ(TextFile::SplitLines(u"a\r\nb\r\n"), (QStringList{u"a"_qs, u"b"_qs}));
}

TEST(TextFile, LoneCrEndsALine) {
    EXPECT_EQ(TextFile::SplitLines(u"a\rb\rc"), (QStringList{u"a"_qs, u"b"_qs, u"c"_qs}));
}

TEST(TextFile, LoneLfStaysInsideTheLine) {
    EXPECT_EQ(TextFile::SplitLines(u"a\nb\r\nc\n"), (QStringList{u"a\nb"_qs, u"c\n"_qs}));
}

TEST(TextFile, LfCrIsAnLfInsideTheLineThenALineEnd) {
    EXPECT_EQ(TextFile::SplitLines(u"a\n\rb"), (QStringList{u"a\n"_qs, u"b"_qs}));
}

TEST(TextFile, TheEndOfTheTextEndsTheLastLineWithoutAnExtraEmptyLine) {
    EXPECT_EQ(TextFile::SplitLines(u"a\r\n"), QStringList{u"a"_qs});
    EXPECT_EQ(TextFile::SplitLines(u"a\r\n\r\n"), (QStringList{u"a"_qs, QString()}));
    EXPECT_EQ(TextFile::SplitLines(u"a"), QStringList{u"a"_qs});
    EXPECT_TRUE(TextFile::SplitLines(u"").isEmpty());
    EXPECT_EQ(TextFile::SplitLines(u"\r"), QStringList{QString()});
}

TEST(TextFile, AFileWithoutAnyCrHasItsLinesEndedByLf) {
    const TextFileContent content = TextFile::FromBytes("skinname=Unix\nwidth=200\n\nheight=60\n");
    EXPECT_EQ(content.Lines,
              (QStringList{u"skinname=Unix"_qs, u"width=200"_qs, QString(), u"height=60"_qs}));
    EXPECT_FALSE(content.MixesLineEnds);
    EXPECT_EQ(TextFile::FromBytes("a").Lines, QStringList{u"a"_qs});
    EXPECT_TRUE(TextFile::FromBytes("").Lines.isEmpty());
}

TEST(TextFile, AFileWithACrKeepsTheCrRuleAndSaysItMixesLineEnds) {
    const TextFileContent content = TextFile::FromBytes("a=1\r\nb=2\nc=3\r\n");
    EXPECT_EQ(content.Lines, (QStringList{u"a=1"_qs, u"b=2\nc=3"_qs}));
    EXPECT_TRUE(content.MixesLineEnds);
    EXPECT_FALSE(TextFile::FromBytes("a=1\r\nb=2\r\n").MixesLineEnds);
}

TEST(TextFile, ValidUtf8IsDecodedAsUtf8) {
    TextEncoding used = TextEncoding::Windows1252;
    EXPECT_EQ(TextFile::Decode("Caf\xC3\xA9 \xE2\x82\xAC", &used), u"Café €"_qs);
    EXPECT_EQ(used, TextEncoding::Utf8);
}

TEST(TextFile, InvalidUtf8IsDecodedAsWindows1252) {
    TextEncoding used = TextEncoding::Utf8;
    EXPECT_EQ(TextFile::Decode("Caf\xE9 \x80 \x93x\x94 \x81", &used),
              u"Caf\u00E9 \u20AC \u201Cx\u201D \u0081"_qs);
    EXPECT_EQ(used, TextEncoding::Windows1252);
}

TEST(TextFile, OverlongSurrogateAndTruncatedUtf8AreNotUtf8) {
    EXPECT_FALSE(TextFile::IsValidUtf8("\xC0\xAF"));         // overlong "/"
    EXPECT_FALSE(TextFile::IsValidUtf8("\xE0\x80\xAF"));     // overlong "/"
    EXPECT_FALSE(TextFile::IsValidUtf8("\xED\xA0\x80"));     // a surrogate
    EXPECT_FALSE(TextFile::IsValidUtf8("\xF4\x90\x80\x80")); // past U+10FFFF
    EXPECT_FALSE(TextFile::IsValidUtf8("ab\xE2\x82"));       // cut short
    EXPECT_FALSE(TextFile::IsValidUtf8("\x80"));             // a lone continuation byte
    EXPECT_TRUE(TextFile::IsValidUtf8("\xF0\x9F\x8E\xB5"));  // U+1F3B5
    EXPECT_TRUE(TextFile::IsValidUtf8(""));
}

TEST(TextFile, EveryWindows1252ByteSurvivesARoundTrip) {
    QByteArray all;
    for (int i = 0; i < 256; ++i)
        all.append(static_cast<char>(i));
    const QString text = TextFile::Decode(all);
    EXPECT_EQ(text.size(), 256);
    EXPECT_EQ(TextFile::Encode(text, TextEncoding::Windows1252), all);
}

TEST(TextFile, CharactersWindows1252CannotHoldBecomeQuestionMarks) {
    EXPECT_EQ(TextFile::Encode(u"a\u4E2Db", TextEncoding::Windows1252), QByteArray("a?b"));
}

TEST(TextFile, ByteOrderMarkIsDroppedAndWrittenBack) {
    const TextFileContent content = TextFile::FromBytes("\xEF\xBB\xBFskinname=x\r\n");
    EXPECT_TRUE(content.HadBom);
    EXPECT_EQ(content.Lines, QStringList{u"skinname=x"_qs});
    EXPECT_EQ(TextFile::ToBytes(content), QByteArray("\xEF\xBB\xBFskinname=x\r\n"));
}

TEST(TextFile, ReportsWhetherTheBytesHeldAnyCr) {
    EXPECT_FALSE(TextFile::FromBytes("a=1\nb=2\n").HasCR);
    EXPECT_TRUE(TextFile::FromBytes("a=1\rb=2").HasCR);
    EXPECT_FALSE(TextFile::FromBytes("").HasCR);
}

TEST(TextFile, AFileReadAsWindows1252IsWrittenBackInWindows1252WithCrLf) {
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    const QString path = dir.filePath(QStringLiteral("personal.ini"));
    ASSERT_TRUE(WriteBytes(path, "caf\xE9\rline\ntwo\r\n"));
    TextFileContent content;
    ASSERT_TRUE(TextFile::Read(path, content));
    EXPECT_EQ(content.Encoding, TextEncoding::Windows1252);
    EXPECT_EQ(content.Lines, (QStringList{u"caf\u00E9"_qs, u"line\ntwo"_qs}));
    content.Lines.append(u"\u20AC"_qs);
    ASSERT_TRUE(TextFile::Write(path, content));
    EXPECT_EQ(ReadBytes(path), QByteArray("caf\xE9\r\nline\ntwo\r\n\x80\r\n"));
}

TEST(TextFile, AUtf8FileIsWrittenBackInUtf8) {
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("a.lyr"));
    ASSERT_TRUE(WriteBytes(path, "\xC3\xA9"));
    TextFileContent content;
    ASSERT_TRUE(TextFile::Read(path, content));
    EXPECT_EQ(content.Encoding, TextEncoding::Utf8);
    ASSERT_TRUE(TextFile::Write(path, content));
    EXPECT_EQ(ReadBytes(path), QByteArray("\xC3\xA9\r\n"));
}

TEST(TextFile, AMissingFileIsAnErrorWithAReason) {
    QTemporaryDir dir;
    TextFileContent content;
    QString error;
    EXPECT_FALSE(TextFile::Read(dir.filePath(QStringLiteral("none.ini")), content, &error));
    EXPECT_FALSE(error.isEmpty());
}

TEST(TextFile, AFolderCannotBeReadAsAFile) {
    QTemporaryDir dir;
    TextFileContent content;
    EXPECT_FALSE(TextFile::Read(dir.path(), content));
}

TEST(TextFile, AFailedWriteLeavesTheOldFileWhole) {
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("personal.ini"));
    ASSERT_TRUE(WriteBytes(path, "old\r\n"));
    // A read-only folder: the new file cannot be made beside the old one.
    ASSERT_TRUE(QFile::setPermissions(dir.path(), QFileDevice::ReadOwner | QFileDevice::ExeOwner));
    TextFileContent content;
    content.Lines = {u"new"_qs};
    QString error;
    const bool written = TextFile::Write(path, content, &error);
    QFile::setPermissions(dir.path(),
                          QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    if (written)
        GTEST_SKIP() << "running with permissions that ignore a read-only folder";
    EXPECT_FALSE(error.isEmpty());
    EXPECT_EQ(ReadBytes(path), QByteArray("old\r\n"));
}

TEST(TextFile, BinaryGarbageDecodesWithoutLosingBytes) {
    QByteArray garbage;
    quint32 seed = 12345;
    for (int i = 0; i < 100000; ++i) {
        seed = seed * 1103515245u + 12345u;
        garbage.append(static_cast<char>(seed >> 16));
    }
    const TextFileContent content = TextFile::FromBytes(garbage);
    EXPECT_EQ(content.Encoding, TextEncoding::Windows1252);
    EXPECT_FALSE(content.Lines.isEmpty());
    EXPECT_EQ(TextFile::Encode(TextFile::Decode(garbage), TextEncoding::Windows1252), garbage);
}

TEST(TextFile, AOneMegabyteLineIsOneLine) {
    QByteArray bytes(1024 * 1024, 'x');
    bytes.append("\r\nend");
    const TextFileContent content = TextFile::FromBytes(bytes);
    ASSERT_EQ(content.Lines.size(), 2);
    EXPECT_EQ(content.Lines[0].size(), 1024 * 1024);
}

TEST(TextFile, AFiftyMegabyteFileIsSplitIntoItsLines) {
    const QByteArray line = "label=1;2;3;4;[Artist]\r\n";
    const qsizetype count = 50 * 1024 * 1024 / line.size();
    QByteArray bytes;
    bytes.reserve(count * line.size());
    for (qsizetype i = 0; i < count; ++i)
        bytes.append(line);
    const TextFileContent content = TextFile::FromBytes(bytes);
    EXPECT_EQ(content.Lines.size(), count);
    EXPECT_EQ(content.Lines.back(), u"label=1;2;3;4;[Artist]"_qs);
}

TEST(TextFile, OnlyTheFirstByteOrderMarkIsDropped) {
    const TextFileContent content = TextFile::FromBytes("\xEF\xBB\xBF\xEF\xBB\xBFx");
    EXPECT_TRUE(content.HadBom);
    EXPECT_EQ(content.Lines, QStringList{u"\uFEFFx"_qs});
    EXPECT_EQ(TextFile::ToBytes(content), QByteArray("\xEF\xBB\xBF\xEF\xBB\xBFx\r\n"));
}

TEST(TextFile, AWriteIntoAMissingFolderFailsWithAReason) {
    QTemporaryDir dir;
    TextFileContent content;
    content.Lines = {u"x"_qs};
    QString error;
    EXPECT_FALSE(TextFile::Write(dir.filePath(u"gone/personal.ini"_qs), content, &error));
    EXPECT_FALSE(error.isEmpty());
    EXPECT_FALSE(QFile::exists(dir.filePath(u"gone/personal.ini"_qs)));
}

TEST(TextFile, ARefusalNamesAFileWithPercentSignsAsItIs) {
    QTemporaryDir dir;
    const QString folder = dir.filePath(QStringLiteral("50%1 off %2/"));
    ASSERT_TRUE(QDir().mkpath(folder));
    QFile file(folder + QStringLiteral("skin.ini"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(QByteArray(100, 'x'));
    file.close();
    TextFileContent content;
    QString error;
    EXPECT_FALSE(
        TextFile::ReadConfined(folder + QStringLiteral("skin.ini"), folder, 10, content, &error));
    EXPECT_TRUE(error.startsWith(folder + QStringLiteral("skin.ini is larger than 10 bytes")))
        << error.toStdString();
}
