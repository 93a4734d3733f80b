#include "skin/SkinLint.h"

#include "SkinTestHost.h"
#include "skin/SkinLineProcessor.h"
#include "skin/SkinModel.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <sys/stat.h>

using namespace Pelorin;
using Pelorin::Testing::LoadPictureFile;
using Pelorin::Testing::RecordingHost;
using Pelorin::Testing::WriteFile;
using Pelorin::Testing::WritePicture;

namespace {

class SkinCheck : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(m_dir.isValid());
        folder = m_dir.path() + u'/';
    }

    bool WriteSkin(const QByteArray& bytes) { return WriteFile(folder + u"skin.ini"_qs, bytes); }

    int Check() {
        output.clear();
        QTextStream out(&output);
        return CheckSkin(folder, &LoadPictureFile, out);
    }

    QStringList OutputLines() const { return output.split(u'\n', Qt::SkipEmptyParts); }

    QString folder;
    QString output;

private:
    QTemporaryDir m_dir;
};

} // namespace

TEST_F(SkinCheck, ACleanSkinHasNoFaults) {
    ASSERT_TRUE(WritePicture(folder + u"back.png"_qs));
    ASSERT_TRUE(WritePicture(folder + u"play.png"_qs));
    ASSERT_TRUE(WriteSkin("// a clean skin\r\n"
                          "skinname=Clean\r\n"
                          "width=200\r\nheight=60\r\nleft=r200\r\n"
                          "backgroundpicture=Back.png\r\n"
                          "label=5;5;190;15;[Artist] - [Title]\r\n"
                          "labelfont=1;Sans;9\r\nlabelcolor=1;&HFFFFFF\r\nlabelcenter=1\r\n"
                          "image=5;25;20;20;playpause;play.png|play.png|play.png\r\n"
                          "runcode=whatever the command language makes of this\r\n"
                          "lyrics=5;45;190;15\r\n"));
    EXPECT_EQ(Check(), 0);
    EXPECT_TRUE(output.isEmpty()) << output.toStdString();
}

TEST_F(SkinCheck, EveryFaultIsReportedOnItsOwnLineWithItsLineNumber) {
    ASSERT_TRUE(WriteSkin("skinname=Faulty\r\n"
                          "label=1;2;3;4\r\n"
                          "labelfont=2;Arial;9\r\n"
                          "ontop=yes\r\n"
                          "backgroundcolor=99999999999\r\n"
                          "image=0;0;10;10;x;gone.png\r\n"
                          "colour=1\r\n"
                          "// fine\r\n"
                          "label =1;2;3;4;x\r\n"
                          "roundwindow=40000\r\n"
                          "glassify=perhaps\r\n"));
    EXPECT_EQ(Check(), 9);
    EXPECT_EQ(OutputLines(),
              (QStringList{
                  u"skin.ini:2: missing field 5 (template): label=1;2;3;4"_qs,
                  u"skin.ini:3: label settings before their label (Control array element '2' "
                  u"doesn't exist): labelfont=2;Arial;9"_qs,
                  u"skin.ini:4: not True, False or a number in the value (Type mismatch): "
                  u"ontop=yes"_qs,
                  u"skin.ini:5: colour out of range in the value (Overflow): "
                  u"backgroundcolor=99999999999"_qs,
                  u"skin.ini:6: missing picture "_qs + folder +
                      u"gone.png (Cannot load file): image=0;0;10;10;x;gone.png"_qs,
                  u"skin.ini:7: unknown keyword \"colour\": colour=1"_qs,
                  u"skin.ini:9: unknown keyword \"label \": label =1;2;3;4;x"_qs,
                  u"skin.ini:10: number out of range in field 1 (corner diameter) (Overflow): "
                  u"roundwindow=40000"_qs,
                  u"skin.ini:11: not True, False or a number in field 1 (Boolean) (Type "
                  u"mismatch): glassify=perhaps"_qs,
              }));
}

TEST_F(SkinCheck, AMissingSkinFileIsOneClearFault) {
    EXPECT_EQ(Check(), 1);
    ASSERT_EQ(OutputLines().size(), 1);
    EXPECT_TRUE(output.startsWith(u"skin.ini: cannot read "_qs + folder + u"skin.ini: "_qs))
        << output.toStdString();
}

TEST_F(SkinCheck, AMissingSkinFolderIsOneClearFault) {
    folder += u"nowhere"_qs; // no trailing slash either
    EXPECT_EQ(Check(), 1);
    EXPECT_TRUE(output.startsWith(u"skin.ini: cannot read "_qs));
}

TEST_F(SkinCheck, TheSkinFileIsFoundInAnyLetterCase) {
    ASSERT_TRUE(WriteFile(folder + u"Skin.INI"_qs, "skinname=x\r\n"));
    EXPECT_EQ(Check(), 0) << output.toStdString();
}

TEST_F(SkinCheck, ASkinWrittenInALinuxEditorIsReadLineByLineWithoutAFault) {
    ASSERT_TRUE(WriteSkin("skinname=Unix\nwidth=200\nheight=60\nontop=maybe\n"));
    EXPECT_EQ(Check(), 1) << output.toStdString();
    EXPECT_TRUE(output.startsWith(u"skin.ini:4: "_qs)) << "the fourth line is the fault";
}

TEST_F(SkinCheck, AFileThatMixesCrLfAndLoneLfGetsOneWarning) {
    ASSERT_TRUE(WriteSkin("skinname=Mixed\r\nwidth=200\nheight=60\r\n"));
    EXPECT_EQ(Check(), 1);
    ASSERT_EQ(OutputLines().size(), 1);
    EXPECT_TRUE(output.startsWith(u"skin.ini: mixes CR LF and lone LF line ends"_qs))
        << output.toStdString();
}

TEST_F(SkinCheck, AnEmptyFileIsReported) {
    ASSERT_TRUE(WriteSkin(QByteArray()));
    EXPECT_EQ(Check(), 1);
    EXPECT_EQ(output, u"skin.ini: the file is empty\n"_qs);
}

TEST_F(SkinCheck, ACommentOnlySkinIsClean) {
    ASSERT_TRUE(WriteSkin("// nothing here\r\n' nor here\r\n"));
    EXPECT_EQ(Check(), 0);
}

TEST_F(SkinCheck, ALineWithAnLfInsideIsShownOnOneOutputLine) {
    ASSERT_TRUE(WriteSkin("label=1;2;3\n4\r\n"));
    // The lone LF inside a file with CR line ends is reported too.
    EXPECT_EQ(Check(), 2);
    EXPECT_EQ(OutputLines().size(), 2);
    EXPECT_EQ(OutputLines().last(), u"skin.ini:1: missing field 4 (height): label=1;2;3\\n4"_qs);
}

TEST_F(SkinCheck, AWindows1252SkinIsReadAndReportedInUnicode) {
    ASSERT_TRUE(WriteSkin("label=1;2;3;4;Caf\xE9\r\nlabelcolor=1;caf\xE9\r\nontop=caf\xE9\r\n"));
    EXPECT_EQ(Check(), 1);
    EXPECT_EQ(output, u"skin.ini:3: not True, False or a number in the value (Type mismatch): "
                      u"ontop=caf\u00E9\n"_qs);
}

TEST_F(SkinCheck, BinaryGarbageIsCheckedWithoutCrashing) {
    QByteArray garbage;
    quint32 seed = 99;
    for (int i = 0; i < 200000; ++i) {
        seed = seed * 1664525u + 1013904223u;
        garbage.append(static_cast<char>(seed >> 24));
    }
    ASSERT_TRUE(WriteSkin(garbage));
    const int faults = Check();
    EXPECT_GE(faults, 0);
    EXPECT_EQ(OutputLines().size(), faults);
}

TEST_F(SkinCheck, AOneMegabyteLineIsAppliedAndShownShortened) {
    QByteArray line = "label=1;2;3;4;";
    line.append(QByteArray(1024 * 1024, 'x'));
    line.append("\r\nlabelfont=1;");
    line.append(QByteArray(1024 * 1024, ';'));
    line.append("\r\n");
    ASSERT_TRUE(WriteSkin(line));
    EXPECT_EQ(Check(), 0) << output.left(500).toStdString();

    ASSERT_TRUE(WriteSkin("label=" + QByteArray(1024 * 1024, '1') + "\r\n"));
    EXPECT_EQ(Check(), 1);
    EXPECT_LT(output.size(), 400);
    EXPECT_TRUE(output.contains(u"more characters)"_qs));
}

TEST_F(SkinCheck, AFifteenMegabyteFileIsCheckedWhole) {
    // Long comment lines keep the element count (and the test) small; the last line is a fault.
    const QByteArray comment = "// " + QByteArray(1021, 'c') + "\r\n";
    QByteArray bytes;
    bytes.reserve(16 * 1024 * 1024);
    while (bytes.size() < 15 * 1024 * 1024)
        bytes.append(comment);
    const qsizetype lines = bytes.size() / comment.size();
    bytes.append("ontop=maybe\r\n");
    ASSERT_TRUE(WriteSkin(bytes));
    EXPECT_EQ(Check(), 1);
    EXPECT_TRUE(output.startsWith(QStringLiteral("skin.ini:%1: ").arg(lines + 1)));
}

TEST_F(SkinCheck, ASkinFileOfMoreThanSixteenMegabytesIsNotReadAtAll) {
    ASSERT_TRUE(WriteSkin(QByteArray(16 * 1024 * 1024 + 1, '\'')));
    EXPECT_EQ(Check(), 1);
    EXPECT_TRUE(output.contains(u"is larger than 16777216 bytes"_qs)) << output.toStdString();
}

TEST_F(SkinCheck, ASkinFileThatIsAFifoIsRefusedWithoutWaiting) {
    ASSERT_EQ(mkfifo(QFile::encodeName(folder + u"skin.ini"_qs).constData(), 0600), 0);
    EXPECT_EQ(Check(), 1);
    EXPECT_TRUE(output.contains(u"is not a regular file"_qs)) << output.toStdString();
}

// The loop that loads a whole skin.

TEST(SkinLoader, TenLinesWithAMissingFieldGiveTenMessagesAndLoadingGoesOn) {
    QTemporaryDir dir;
    const QString folder = dir.path() + u'/';
    QStringList lines;
    for (int i = 0; i < 10; ++i)
        lines.append(QStringLiteral("label=%1;0;10;10").arg(i));
    lines.append(u"skinname=Loaded"_qs);
    SkinModel model;
    model.BeginLoad(folder);
    RecordingHost host;
    QStringList messages;
    QList<qsizetype> afterLines;
    const int faults = ProcessLines(
        model, lines, folder, host,
        [&](const SkinLineFault& fault) {
            messages.append(SkinLineErrorText(fault.Error, fault.Line));
        },
        [&](qsizetype index, SkinLineResult, const SkinChange&) { afterLines.append(index); });
    EXPECT_EQ(faults, 10);
    ASSERT_EQ(messages.size(), 10);
    EXPECT_EQ(messages[3], u"There was an error while loading the skin:\nExpected parameter "
                           u"missing!\nlabel=3;0;10;10"_qs);
    EXPECT_EQ(model.LabelCount(), 10);
    EXPECT_EQ(model.lblInfo[10].Geometry.Left, 9);
    EXPECT_EQ(model.Tag, u"Loaded"_qs);
    EXPECT_EQ(afterLines.size(), 11);
}

TEST(SkinLoader, AFaultTellsWhichFieldFailed) {
    SkinModel model;
    RecordingHost host;
    QList<SkinLineFault> faults;
    ProcessLines(model, {u"labelfont=0;Arial"_qs, u"image=1;2;3;4;x;y.png"_qs}, u"/nowhere/"_qs,
                 host, [&](const SkinLineFault& fault) { faults.append(fault); });
    ASSERT_EQ(faults.size(), 2);
    EXPECT_EQ(faults[0].LineIndex, 0);
    EXPECT_EQ(faults[0].Trace.Field, 2);
    EXPECT_EQ(faults[0].Trace.Meaning, u"font size"_qs);
    EXPECT_EQ(faults[1].Trace.File, u"/nowhere/y.png"_qs);
}

TEST_F(SkinCheck, AFaultyLineIsReportedWithItsControlCharactersEscaped) {
    ASSERT_TRUE(
        WriteSkin("width=100\r\nbogus\x1b]0;owned\x07=1\r\nimage=0;0;5;5;x;\x1b[2Jgone.png\r\n"));
    EXPECT_EQ(Check(), 2);
    EXPECT_FALSE(output.contains(QChar(0x1b))) << output.toStdString();
    EXPECT_FALSE(output.contains(QChar(0x07)));
    EXPECT_TRUE(output.contains(u"bogus\\x1b]0;owned\\x07"_qs)) << output.toStdString();
    EXPECT_TRUE(output.contains(u"\\x1b[2Jgone.png"_qs)) << output.toStdString();
}
