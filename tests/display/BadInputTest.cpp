#include "DisplayRig.h"
#include "display/TagTemplate.h"

#include <QFileInfo>

using namespace Pelorin;
using Pelorin::Testing::ColourOf;
using Pelorin::Testing::DisplayRig;
using Pelorin::Testing::PictureBytes;
using Pelorin::Testing::StderrCapture;

namespace {

// A skin with a narrow and a wide label, a time label, stars and an artwork image, so every
// part of the display meets the bad input.
class BadInput : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(Testing::WritePictureFile(rig.folder + u"off.png"_qs, Qt::gray));
        ASSERT_TRUE(Testing::WritePictureFile(rig.folder + u"on.png"_qs, Qt::yellow));
        narrow = rig.Label(80, u"[Artist] - [Title]"_qs);
        wide = rig.Label(4000, u"[Title] ([Album], [Comment])"_qs);
        time = rig.Label(40, u"[CurrentPosition]"_qs);
        rig.Line(u"ratingscontrol=0;0;10;10;0;off.png;on.png"_qs);
        rig.Line(u"image=0;0;50;50;;ARTWORK"_qs);
    }

    // Refreshes and scrolls a while; then a plain track must show normally.
    void RunAndRecover() {
        rig.display.LoadSong();
        for (int tick = 0; tick < 40; ++tick) {
            rig.display.tmrScroll_Timer();
            rig.display.tmrProgress_Timer();
        }
        for (int i : {narrow, wide}) {
            const int width = rig.host.LabelWidth(i);
            EXPECT_LT(rig.TextWidth(i, rig.Caption(i)), std::max(width, 1)) << "label " << i;
        }
        MemoryTrackData plain = DisplayRig::Track(u"Ok"_qs, u"Fine"_qs, 100);
        plain.rating = 40;
        plain.artwork = {PictureBytes(Qt::red)};
        rig.PlayTrack(plain);
        rig.player.SetPlayerPosition(7);
        StderrCapture errors;
        rig.display.LoadSong();
        EXPECT_EQ(errors.Text(), QString());
        EXPECT_EQ(rig.Caption(narrow), u"Ok - Fine"_qs);
        EXPECT_EQ(rig.Caption(time), u"0:07"_qs);
        EXPECT_EQ(ColourOf(rig.host.artwork(1)), QColor(Qt::red));
        EXPECT_EQ(ColourOf(rig.host.star(1).picture), QColor(Qt::yellow));
        EXPECT_EQ(ColourOf(rig.host.star(2).picture), QColor(Qt::gray));
    }

    DisplayRig rig;
    int narrow = 0;
    int wide = 0;
    int time = 0;
};

} // namespace

TEST_F(BadInput, TagsOfTenThousandCharactersScrollWithoutHanging) {
    MemoryTrackData data = DisplayRig::Track(QString(10000, u'W'), QString(10000, u'i'));
    data.album = QString(10000, u'x');
    data.comment = QString(10000, u'.');
    rig.PlayTrack(data);
    rig.display.LoadSong();
    // Artist and title of 10,000 characters each: the caption is cut at 4,096, then led by the
    // five spaces of a scrolling text.
    EXPECT_EQ(rig.LabelText(narrow).size(), TagTemplate::MaxCaption + 5);
    EXPECT_NE(rig.display.ScrollTag(wide), u"noscroll"_qs);
    RunAndRecover();
}

TEST_F(BadInput, TagsWithLineBreaksAreShownAsTheyAre) {
    MemoryTrackData data = DisplayRig::Track(u"Line one\nline two"_qs, u"Carriage\r\nreturn"_qs);
    data.comment = u"\n\n\n"_qs;
    rig.PlayTrack(data);
    rig.display.LoadSong();
    EXPECT_TRUE(rig.LabelText(narrow).contains(u"Line one\nline two - Carriage\r\nreturn"_qs));
    RunAndRecover();
}

TEST_F(BadInput, RightToLeftTagsScrollLikeAnyOther) {
    MemoryTrackData data =
        DisplayRig::Track(u"\u0641\u064A\u0631\u0648\u0632"_qs,
                          u"\u05E9\u05DC\u05D5\u05DD \u05E2\u05D5\u05DC\u05DD"_qs);
    data.album = u"\u202EDesrever\u202C mixed \u0627\u0644\u0623\u0637\u0644\u0627\u0644"_qs;
    rig.PlayTrack(data);
    RunAndRecover();
}

TEST_F(BadInput, InvalidEncodingsAndBrokenSurrogatesDoNotBreakTheDisplay) {
    // Bytes that are not UTF-8 arrive as replacement characters; lone surrogates as they are.
    MemoryTrackData data = DisplayRig::Track(QString::fromUtf8("\xff\xfe\xc3\x28 bad"),
                                             QString(QChar(0xD800)) + u"x"_qs + QChar(0xDC00));
    data.album = QString(QChar(0xDBFF)).repeated(50);
    data.comment = QString(QChar(0)) + u"nul"_qs;
    rig.PlayTrack(data);
    RunAndRecover();
}

TEST_F(BadInput, StreamOfLengthZeroShowsItsTimesAndAnEmptyBar) {
    MemoryTrackData stream = DisplayRig::Track(u"Radio"_qs, u"Live"_qs, 0);
    stream.isFile = false;
    rig.PlayTrack(stream);
    rig.player.SetPlayerPosition(0);
    rig.display.LoadSong();
    EXPECT_FLOAT_EQ(rig.host.progressWidth(), 0.0f);
    RunAndRecover();
}

TEST_F(BadInput, CorruptArtworkIsReportedAndTheNextTrackShowsItsCover) {
    MemoryTrackData data = DisplayRig::Track(u"A"_qs, u"B"_qs);
    data.artwork = {QByteArray("\xff\xd8\xff\xe0 this is not really a JPEG", 30)};
    rig.PlayTrack(data);
    StderrCapture errors;
    rig.display.LoadSong();
    EXPECT_TRUE(errors.Text().contains(u"Pelorin: Error in RefreshInfo: Cannot load file"_qs))
        << errors.Text().toStdString();
    RunAndRecover();
}

TEST_F(BadInput, HugeArtworkDoesNotStopTheDisplay) {
    MemoryTrackData data = DisplayRig::Track(u"A"_qs, u"B"_qs);
    QImage huge(8000, 8000, QImage::Format_Grayscale8);
    huge.fill(128);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    ASSERT_TRUE(buffer.open(QIODevice::WriteOnly));
    ASSERT_TRUE(huge.save(&buffer, "PNG"));
    huge = QImage();
    data.artwork = {bytes};
    rig.PlayTrack(data);
    rig.display.LoadSong();
    const QImage shown = rig.host.artwork(1);
    EXPECT_EQ(shown.size(), QSize(8000, 8000));
    RunAndRecover();
}

TEST_F(BadInput, LabelOnePixelWideShowsNothingAndDoesNotHang) {
    const int tiny = rig.Label(1, u"[Artist] [Title]"_qs);
    const int none = rig.Label(0, u"[Artist]"_qs);
    rig.PlayTrack(DisplayRig::Track(u"Someone"_qs, u"Something"_qs));
    rig.display.LoadSong();
    EXPECT_EQ(rig.LabelText(tiny), u"    Someone Something "_qs);
    for (int tick = 0; tick < 30; ++tick)
        rig.display.tmrScroll_Timer();
    EXPECT_EQ(rig.Caption(tiny), QString());
    EXPECT_EQ(rig.Caption(none), QString());
    RunAndRecover();
}
