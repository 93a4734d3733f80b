#include "base/PositionFile.h"

#include "base/TextRules.h"
#include "base/VbError.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <optional>
#include <sys/stat.h>

using Pelorin::ReadPositionFile;
using Pelorin::VbError;
using Pelorin::WritePositionFile;

namespace {

class PositionIni : public ::testing::Test {
protected:
    QTemporaryDir dir;
    QString path = dir.filePath(QStringLiteral("position.ini"));
    std::optional<double> left;
    std::optional<double> top;

    void Write(const QByteArray& bytes) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }
    QByteArray Bytes() const {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    void Read() {
        ReadPositionFile(
            path, [this](double v) { left = v; }, [this](double v) { top = v; });
    }
};

} // namespace

TEST_F(PositionIni, WritesLeftAndTopAsPrintedNumbersWithCrLf) {
    ASSERT_TRUE(WritePositionFile(path, 1200, 450));
    EXPECT_EQ(Bytes(), QByteArray(" 1200\r\n 450\r\n"));
}

TEST_F(PositionIni, WritesPixelPositionsConvertedToTwips) {
    ASSERT_TRUE(WritePositionFile(path, Pelorin::Rules::PixelsToTwips(80),
                                  Pelorin::Rules::PixelsToTwips(30)));
    EXPECT_EQ(Bytes(), QByteArray(" 1200\r\n 450\r\n"));
}

TEST_F(PositionIni, NegativePositionsCarryTheirSignAndReadBack) {
    ASSERT_TRUE(WritePositionFile(path, -1500, -15));
    EXPECT_EQ(Bytes(), QByteArray("-1500\r\n-15\r\n"));
    Read();
    EXPECT_EQ(left, -1500);
    EXPECT_EQ(top, -15);
    EXPECT_EQ(Pelorin::Rules::TwipsToPixels(*left), -100);
}

TEST_F(PositionIni, WritingReplacesTheWholeOldFile) {
    Write("   99999999\r\n   88888888\r\n and a long tail that must go\r\n");
    ASSERT_TRUE(WritePositionFile(path, 15, 30));
    EXPECT_EQ(Bytes(), QByteArray(" 15\r\n 30\r\n"));
}

TEST_F(PositionIni, ReadsWhatItWrote) {
    ASSERT_TRUE(WritePositionFile(path, 1200, 450));
    Read();
    EXPECT_EQ(left, 1200);
    EXPECT_EQ(top, 450);
}

TEST_F(PositionIni, OneLineKeepsTheLeftAndFailsOnTop) {
    Write(" 1200\r\n");
    try {
        Read();
        FAIL() << "reading the Top of a one-line file must fail";
    } catch (const VbError& e) {
        EXPECT_EQ(e.number(), VbError::InputPastEndOfFileNumber);
        EXPECT_EQ(e.description(), QStringLiteral("Input past end of file"));
    }
    EXPECT_EQ(left, 1200);
    EXPECT_FALSE(top.has_value());
}

TEST_F(PositionIni, EmptyFileFailsBeforeAnyValue) {
    Write("");
    EXPECT_THROW(Read(), VbError);
    EXPECT_FALSE(left.has_value());
    EXPECT_FALSE(top.has_value());
}

TEST_F(PositionIni, GarbageLinesReadAsZeroOrTheirLeadingNumber) {
    Write("left edge\r\n12abc\r\n\x01\x02\xff\r\n");
    Read();
    EXPECT_EQ(left, 0);
    EXPECT_EQ(top, 12);
}

TEST_F(PositionIni, LastLineNeedsNoLineEnd) {
    Write(" 300\r\n 450");
    Read();
    EXPECT_EQ(left, 300);
    EXPECT_EQ(top, 450);
}

TEST_F(PositionIni, AFileWithLinuxLineEndsReadsBothValues) {
    // Without a single CR, LF ends the lines.
    Write(" 300\n 450\n");
    Read();
    EXPECT_EQ(left, 300);
    EXPECT_EQ(top, 450);
}

TEST_F(PositionIni, InAFileWithCrALoneLineFeedDoesNotEndALine) {
    // One line with CR LF, and inside it a lone LF: the Top is missing.
    Write(" 300\n 450\r\n");
    EXPECT_THROW(Read(), VbError);
    EXPECT_EQ(left, 300);
    EXPECT_FALSE(top.has_value());
}

TEST_F(PositionIni, MissingFileIsAnErrorAndSetsNothing) {
    try {
        Read();
        FAIL() << "a missing file must fail";
    } catch (const VbError& e) {
        EXPECT_EQ(e.number(), 53);
        EXPECT_EQ(e.description(), QStringLiteral("File not found"));
    }
    EXPECT_FALSE(left.has_value());
}

TEST_F(PositionIni, WriteIntoAMissingFolderFailsWithAMessage) {
    QString error;
    EXPECT_FALSE(
        WritePositionFile(dir.filePath(QStringLiteral("no/such/position.ini")), 1, 2, &error));
    EXPECT_FALSE(error.isEmpty());
}

namespace {

// A skin folder inside a home folder, for files a skin points elsewhere.
class PositionIniInASkin : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(QDir(dir.path()).mkpath(QStringLiteral("Skins/Hostile")));
        skin = dir.filePath(QStringLiteral("Skins/Hostile/"));
        victim = dir.filePath(QStringLiteral(".bashrc"));
        QFile file(victim);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("export PATH=$HOME/bin:$PATH\n");
    }
    QByteArray VictimBytes() const {
        QFile file(victim);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    int ReadError(const QString& path) {
        try {
            ReadPositionFile(
                path, [](double) {}, [](double) {});
        } catch (const VbError& error) {
            return error.number();
        }
        return 0;
    }

    QTemporaryDir dir;
    QString skin;
    QString victim;
};

} // namespace

TEST_F(PositionIniInASkin, APositionFileThatLinksOutOfTheSkinIsNeitherWrittenNorRead) {
    const QString position = skin + QStringLiteral("position.ini");
    ASSERT_TRUE(QFile::link(QStringLiteral("../../.bashrc"), position));
    QString error;
    EXPECT_FALSE(WritePositionFile(position, 1200, 600, &error));
    EXPECT_FALSE(error.isEmpty());
    EXPECT_EQ(VictimBytes(), QByteArray("export PATH=$HOME/bin:$PATH\n"));
    EXPECT_TRUE(QFileInfo(position).isSymLink()) << "the link itself stays as the skin shipped it";
    EXPECT_EQ(ReadError(position), 75);
}

TEST_F(PositionIniInASkin, ADanglingLinkCreatesNothingWhereItPoints) {
    const QString position = skin + QStringLiteral("position.ini");
    const QString target = dir.filePath(QStringLiteral("autostart.desktop"));
    ASSERT_TRUE(QFile::link(target, position));
    EXPECT_FALSE(WritePositionFile(position, 1200, 600));
    EXPECT_FALSE(QFileInfo::exists(target));
}

TEST_F(PositionIniInASkin, AFifoNamedPositionIniIsRefusedWithoutWaitingForAWriter) {
    const QString position = skin + QStringLiteral("position.ini");
    ASSERT_EQ(mkfifo(QFile::encodeName(position).constData(), 0600), 0);
    EXPECT_EQ(ReadError(position), 75);
    EXPECT_FALSE(WritePositionFile(position, 1200, 600));
}

TEST_F(PositionIniInASkin, APositionFileOfMoreThan64BytesIsRefused) {
    const QString position = skin + QStringLiteral("position.ini");
    QFile file(position);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(" 1200\r\n 600\r\n" + QByteArray(60, ' '));
    file.close();
    EXPECT_EQ(ReadError(position), 75);
}

TEST_F(PositionIniInASkin, ALinkThatStaysInsideTheSkinIsRead) {
    QFile file(skin + QStringLiteral("saved.ini"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(" 1200\r\n 600\r\n");
    file.close();
    const QString position = skin + QStringLiteral("position.ini");
    ASSERT_TRUE(QFile::link(QStringLiteral("saved.ini"), position));
    std::optional<double> left;
    std::optional<double> top;
    ReadPositionFile(
        position, [&](double v) { left = v; }, [&](double v) { top = v; });
    EXPECT_EQ(left, 1200);
    EXPECT_EQ(top, 600);
}
