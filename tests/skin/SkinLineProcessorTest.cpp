#include "skin/SkinLineProcessor.h"

#include "SkinTestHost.h"
#include "skin/SkinModel.h"

#include <QDir>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <optional>

using namespace Pelorin;
using Pelorin::Testing::RecordingHost;
using Pelorin::Testing::WriteFile;
using Pelorin::Testing::WritePicture;

namespace {

class SkinFile : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(m_dir.isValid());
        folder = m_dir.path() + u'/';
        model.BeginLoad(folder);
    }

    // Applies a line; `lastLine` tells what it touched.
    SkinLineResult Apply(const QString& line) {
        return ProcessLine(model, line, folder, host, &lastLine);
    }

    // The error the line raises, or nothing when it applies cleanly.
    std::optional<VbError> Failure(const QString& line) {
        try {
            ProcessLine(model, line, folder, host, &lastLine);
        } catch (const VbError& error) {
            return error;
        }
        return std::nullopt;
    }

    int FailureNumber(const QString& line) {
        const auto error = Failure(line);
        return error ? error->number() : 0;
    }

    QString folder;
    SkinModel model;
    SkinLineTrace lastLine;
    RecordingHost host;

private:
    QTemporaryDir m_dir;
};

} // namespace

// Edge cases of the line syntax and the keyword table.

TEST_F(SkinFile, CommentLinesHaveNoEffectAndBlankFirstSlashesAreSkippedEitherWay) {
    const SkinModel before = model;
    EXPECT_EQ(Apply(u"// label=1;1;1;1;x"_qs), SkinLineResult::Skipped);
    EXPECT_EQ(Apply(u"'label=1;1;1;1;x"_qs), SkinLineResult::Skipped);
    EXPECT_EQ(Apply(u"\\\\label=1;1;1;1;x"_qs), SkinLineResult::Skipped);
    EXPECT_EQ(Apply(u"   //label=1;1;1;1;x"_qs), SkinLineResult::UnknownKeyword);
    EXPECT_EQ(Apply(u"   // just a note"_qs), SkinLineResult::Skipped);
    EXPECT_EQ(model, before);
    EXPECT_EQ(model.LabelCount(), 0);
}

TEST_F(SkinFile, LabelKeywordInAnyCaseCreatesLabelOneWithItsTemplate) {
    EXPECT_EQ(Apply(u"Label=10;20;100;15;[Artist]"_qs), SkinLineResult::Applied);
    ASSERT_EQ(model.LabelCount(), 1);
    const SkinLabel& label = model.lblInfo[1];
    EXPECT_TRUE(label.Visible);
    EXPECT_EQ(label.Geometry, (ElementGeometry{10, 20, 100, 15}));
    EXPECT_EQ(label.Tag, u"[Artist]"_qs);
    EXPECT_FALSE(model.lblInfo[0].Visible);
}

TEST_F(SkinFile, LabelWithoutTemplateReportsMissingParameterAndKeepsTheVisibleLabel) {
    const QString line = u"label=10;20;100;15"_qs;
    const auto error = Failure(line);
    ASSERT_TRUE(error.has_value());
    EXPECT_EQ(SkinLineErrorText(*error, line),
              u"There was an error while loading the skin:\nExpected parameter missing!\n"
              u"label=10;20;100;15"_qs);
    ASSERT_EQ(model.LabelCount(), 1);
    EXPECT_TRUE(model.lblInfo[1].Visible);
    EXPECT_EQ(model.lblInfo[1].Geometry, (ElementGeometry{10, 20, 100, 15}));
    EXPECT_TRUE(model.lblInfo[1].Tag.isEmpty());
    EXPECT_EQ(model.scrollWidth.size(), 2u);
}

TEST_F(SkinFile, LeftR120OnA1024PixelScreenIsPixel904) {
    host.Screen = QSize(1024, 768);
    Apply(u"left=r120"_qs);
    EXPECT_EQ(model.Geometry.Left, 904);
}

TEST_F(SkinFile, LowerCaseTransparentBackgroundIsTakenAsAFileNameAndFailsToLoad) {
    const auto error = Failure(u"backgroundpicture=[transparentbackground]"_qs);
    ASSERT_TRUE(error.has_value());
    EXPECT_EQ(error->number(), VbError::CannotLoadFileNumber);
    EXPECT_EQ(SkinLineErrorText(*error, u"x"_qs),
              u"There was an error while loading the skin:\nUnknown Error: Cannot load file\nx"_qs);
    EXPECT_EQ(host.Attempted, QStringList{folder + u"[transparentbackground]"_qs});
    EXPECT_FALSE(model.TransparentBackground);
    EXPECT_FALSE(model.Picture.has_value());
}

TEST_F(SkinFile, ImageWithPictureNoneHasNoPicture) {
    EXPECT_EQ(Apply(u"image=0;0;20;20;play;none"_qs), SkinLineResult::Applied);
    ASSERT_EQ(model.ImageCount(), 1);
    EXPECT_TRUE(model.img[1].Visible);
    EXPECT_EQ(model.img[1].Tag, u"play"_qs);
    EXPECT_FALSE(model.img[1].Picture.has_value());
    EXPECT_TRUE(host.Attempted.isEmpty());
    EXPECT_EQ(model.ImagePictures[1], u"none"_qs);
}

TEST_F(SkinFile, OnlyOneInstanceWithEmptyOrFalseValueSwitchesTheRuleOn) {
    Apply(u"onlyoneinstance="_qs);
    EXPECT_TRUE(model.OnlyOneInstance);
    SkinModel other;
    ProcessLine(other, u"onlyoneinstance=False"_qs, folder, host);
    EXPECT_TRUE(other.OnlyOneInstance);
    SkinModel without;
    ProcessLine(without, u"onlyoneinstance"_qs, folder, host);
    EXPECT_FALSE(without.OnlyOneInstance);
}

TEST_F(SkinFile, AutoresizeDoesNothing) {
    const SkinModel before = model;
    EXPECT_EQ(Apply(u"autoresize=True"_qs), SkinLineResult::Applied);
    EXPECT_EQ(model, before);
}

TEST_F(SkinFile, LabelFontWithoutSizeSetsTheFontNameThenReportsMissingParameter) {
    Apply(u"label=1;1;50;10;x"_qs);
    const QString line = u"labelfont=1;Arial"_qs;
    const auto error = Failure(line);
    ASSERT_TRUE(error.has_value());
    EXPECT_EQ(error->number(), VbError::SubscriptOutOfRangeNumber);
    EXPECT_TRUE(SkinLineErrorText(*error, line).contains(u"\nExpected parameter missing!\n"));
    EXPECT_EQ(model.lblInfo[1].Font.Name, u"Arial"_qs);
    EXPECT_EQ(model.scrollWidth[1].Font.Name, u"Arial"_qs);
    EXPECT_EQ(model.lblInfo[1].Font.Size, 0);
}

// The window.

TEST_F(SkinFile, WithoutSkinNameTheTagStaysLoadedBySkin) {
    EXPECT_EQ(model.Tag, u"loadedbyskin"_qs);
    EXPECT_EQ(model.SkinFolder, folder);
}

TEST_F(SkinFile, SkinNameSetsTheWindowTag) {
    Apply(u"SKINNAME=Blue Glass"_qs);
    EXPECT_EQ(model.Tag, u"Blue Glass"_qs);
    EXPECT_EQ(lastLine.Change.Part, SkinPart::Window);
}

TEST_F(SkinFile, BackgroundColorKeepsTheWindowsColourValue) {
    Apply(u"backgroundcolor=&HFF0000"_qs);
    EXPECT_EQ(model.BackColor, 16711680);
    EXPECT_EQ(ColourToRgb(*model.BackColor), (RgbColour{0, 0, 255}));
    Apply(u"backgroundcolor=255"_qs);
    EXPECT_EQ(ColourToRgb(*model.BackColor), (RgbColour{255, 0, 0}));
    Apply(u"backgroundcolor=32768"_qs);
    EXPECT_EQ(ColourToRgb(*model.BackColor), (RgbColour{0, 128, 0}));
}

TEST_F(SkinFile, BackgroundColorOutOfRangeIsOverflow) {
    Apply(u"backgroundcolor=255"_qs);
    EXPECT_EQ(FailureNumber(u"backgroundcolor=99999999999"_qs), VbError::OverflowNumber);
    EXPECT_EQ(model.BackColor, 255);
}

TEST_F(SkinFile, WindowPositionAndSizeArePixels) {
    Apply(u"left=100"_qs);
    Apply(u"top=50"_qs);
    Apply(u"width=300"_qs);
    Apply(u"height=120px"_qs);
    EXPECT_EQ(model.Geometry, (WindowGeometry{100, 50, 300, 120}));
}

TEST_F(SkinFile, WindowPixelsRoundHalvesToEven) {
    Apply(u"left=10.5"_qs);
    EXPECT_EQ(model.Geometry.Left, 10);
    Apply(u"left=11.5"_qs);
    EXPECT_EQ(model.Geometry.Left, 12);
}

TEST_F(SkinFile, TopRCountsFromTheBottomEdge) {
    host.Screen = QSize(1280, 800);
    Apply(u"top=r40"_qs);
    EXPECT_EQ(model.Geometry.Top, 760);
    Apply(u"left=r0"_qs);
    EXPECT_EQ(model.Geometry.Left, 1280);
}

TEST_F(SkinFile, UpperCaseRIsNotTheEdgeForm) {
    Apply(u"left=R120"_qs);
    EXPECT_EQ(model.Geometry.Left, 0);
}

TEST_F(SkinFile, ALaterWindowLineOverridesAnEarlierOne) {
    Apply(u"left=10"_qs);
    Apply(u"left=20"_qs);
    EXPECT_EQ(model.Geometry.Left, 20);
}

TEST_F(SkinFile, BackgroundPictureLoadsTheFileFromTheSkinFolder) {
    ASSERT_TRUE(QDir(folder).mkdir(u"Pics"_qs));
    ASSERT_TRUE(WritePicture(folder + u"Pics/Back.png"_qs));
    EXPECT_EQ(Apply(u"backgroundpicture=pics\\back.png"_qs), SkinLineResult::Applied);
    EXPECT_EQ(model.Picture, folder + u"Pics/Back.png"_qs);
}

TEST_F(SkinFile, BackgroundPictureThatIsMissingIsCannotLoadFileAndLeavesNoPicture) {
    EXPECT_EQ(FailureNumber(u"backgroundpicture=gone.png"_qs), VbError::CannotLoadFileNumber);
    EXPECT_FALSE(model.Picture.has_value());
}

TEST_F(SkinFile, APictureNameThatClimbsOutOfTheSkinIsCannotLoadFileAndIsNeverOpened) {
    EXPECT_EQ(FailureNumber(u"backgroundpicture=../../../home/user/private.png"_qs),
              VbError::CannotLoadFileNumber);
    EXPECT_EQ(FailureNumber(u"image=0;0;5;5;x;..\\..\\secret.png"_qs),
              VbError::CannotLoadFileNumber);
    EXPECT_TRUE(host.Attempted.empty());
    EXPECT_FALSE(model.Picture.has_value());
}

TEST_F(SkinFile, AnAbsolutePictureNameIsStillInsideTheSkinFolder) {
    ASSERT_TRUE(WritePicture(folder + u"abs.png"_qs));
    EXPECT_EQ(FailureNumber(u"backgroundpicture="_qs + folder + u"abs.png"_qs),
              VbError::CannotLoadFileNumber);
    EXPECT_EQ(host.Attempted.front(), folder + folder + u"abs.png"_qs);
}

TEST_F(SkinFile, ExactTransparentBackgroundSetsTheFlagWithoutAPicture) {
    Apply(u"backgroundpicture=[TransparentBackground]"_qs);
    EXPECT_TRUE(model.TransparentBackground);
    EXPECT_FALSE(model.Picture.has_value());
    EXPECT_TRUE(host.Attempted.isEmpty());
}

// Labels.

TEST_F(SkinFile, LabelsAreNumberedInFileOrderFromOne) {
    Apply(u"label=1;2;3;4;first"_qs);
    Apply(u"label=5;6;7;8;second"_qs);
    ASSERT_EQ(model.LabelCount(), 2);
    EXPECT_EQ(model.lblInfo[1].Tag, u"first"_qs);
    EXPECT_EQ(model.lblInfo[2].Tag, u"second"_qs);
    EXPECT_EQ(lastLine.Change, (SkinChange{SkinPart::Label, 2, true}));
}

TEST_F(SkinFile, LabelCreatesItsMeasuringTwinAndGrowsLabelTexts) {
    Apply(u"label=1;2;3;4;[Title] - [Artist]"_qs);
    EXPECT_EQ(model.scrollWidth.size(), 2u);
    EXPECT_EQ(model.LabelTexts.size(), 2);
}

TEST_F(SkinFile, LabelFieldsBeyondTheTemplateAreIgnored) {
    Apply(u"label=1;2;3;4;[Title];extra"_qs);
    EXPECT_EQ(model.lblInfo[1].Tag, u"[Title]"_qs);
}

TEST_F(SkinFile, LabelGeometryIsTakenAsItComesAndRoundedToPixels) {
    Apply(u"label=-5;2.5;3.5;abc;x"_qs);
    EXPECT_EQ(model.lblInfo[1].Geometry, (ElementGeometry{-5, 2, 4, 0}));
}

TEST_F(SkinFile, LabelFontSetsNameAndSizeOnTheLabelAndItsTwin) {
    Apply(u"label=1;1;50;10;x"_qs);
    Apply(u"labelfont=1;Tahoma;8.5"_qs);
    EXPECT_EQ(model.lblInfo[1].Font, (SkinFont{u"Tahoma"_qs, 8.5}));
    EXPECT_EQ(model.scrollWidth[1].Font, (SkinFont{u"Tahoma"_qs, 8.5}));
    EXPECT_EQ(lastLine.Change, (SkinChange{SkinPart::Label, 1, false}));
}

TEST_F(SkinFile, LabelFontSizeZeroKeepsTheSize) {
    Apply(u"label=1;1;50;10;x"_qs);
    Apply(u"labelfont=1;Tahoma;12"_qs);
    Apply(u"labelfont=1;Verdana;0"_qs);
    EXPECT_EQ(model.lblInfo[1].Font, (SkinFont{u"Verdana"_qs, 12}));
}

TEST_F(SkinFile, LabelSettingsBeforeTheirLabelAreControlArrayErrors) {
    const auto error = Failure(u"labelfont=1;Arial;10"_qs);
    ASSERT_TRUE(error.has_value());
    EXPECT_EQ(error->number(), VbError::ControlArrayElementMissingNumber);
    EXPECT_EQ(SkinLineErrorText(*error, u"labelfont=1;Arial;10"_qs),
              u"There was an error while loading the skin:\nUnknown Error: Control array element "
              u"'1' doesn't exist\nlabelfont=1;Arial;10"_qs);
    EXPECT_EQ(FailureNumber(u"labelcenter=3"_qs), VbError::ControlArrayElementMissingNumber);
    EXPECT_EQ(FailureNumber(u"labelcolor=-1;255"_qs), VbError::ControlArrayElementMissingNumber);
}

TEST_F(SkinFile, LabelIndexZeroIsTheUnusedModelAndNoError) {
    EXPECT_EQ(FailureNumber(u"labelcolor=0;255"_qs), 0);
    EXPECT_EQ(model.LabelCount(), 0);
}

TEST_F(SkinFile, LabelCenterWithOneFieldCentres) {
    Apply(u"label=1;1;50;10;x"_qs);
    Apply(u"labelcenter=1"_qs);
    EXPECT_TRUE(model.lblInfo[1].Centred);
}

TEST_F(SkinFile, LabelCenterWithABooleanCentresOrAlignsLeft) {
    Apply(u"label=1;1;50;10;x"_qs);
    Apply(u"labelcenter=1;TRUE"_qs);
    EXPECT_TRUE(model.lblInfo[1].Centred);
    Apply(u"labelcenter=1;false"_qs);
    EXPECT_FALSE(model.lblInfo[1].Centred);
    Apply(u"labelcenter=1;-1"_qs);
    EXPECT_TRUE(model.lblInfo[1].Centred);
    EXPECT_EQ(FailureNumber(u"labelcenter=1;yes"_qs), VbError::TypeMismatchNumber);
    EXPECT_EQ(FailureNumber(u"labelcenter=1;"_qs), VbError::TypeMismatchNumber);
}

TEST_F(SkinFile, LabelColorSetsTheTextColour) {
    Apply(u"label=1;1;50;10;x"_qs);
    Apply(u"labelcolor=1;&H00FF00"_qs);
    EXPECT_EQ(model.lblInfo[1].ForeColor, 0x00FF00);
    EXPECT_EQ(FailureNumber(u"labelcolor=1"_qs), VbError::SubscriptOutOfRangeNumber);
}

TEST_F(SkinFile, DisableLabelScrollAppendsTheIndexAsWritten) {
    Apply(u"disablelabelscroll=2"_qs);
    Apply(u"disablelabelscroll=02"_qs);
    EXPECT_EQ(model.NoScrollLabels, u"[2][02]"_qs);
    EXPECT_EQ(FailureNumber(u"disablelabelscroll="_qs), VbError::SubscriptOutOfRangeNumber);
}

// Images.

TEST_F(SkinFile, ImageLoadsItsFirstPictureAndKeepsAllThreeNames) {
    ASSERT_TRUE(WritePicture(folder + u"play.png"_qs));
    EXPECT_EQ(Apply(u"image=5;6;20;21;playpause;Play.PNG|hover.png|down.png"_qs),
              SkinLineResult::Applied);
    const SkinImage& image = model.img[1];
    EXPECT_EQ(image.Geometry, (ElementGeometry{5, 6, 20, 21}));
    EXPECT_EQ(image.Tag, u"playpause"_qs);
    EXPECT_EQ(image.Picture, folder + u"play.png"_qs);
    EXPECT_EQ(model.ImagePictures[1], u"Play.PNG|hover.png|down.png"_qs);
    EXPECT_EQ(lastLine.Change, (SkinChange{SkinPart::Image, 1, true}));
}

TEST_F(SkinFile, ImageFirstPictureArtworkSetsHasArtworkAndTakesDrops) {
    Apply(u"image=0;0;100;100;;Artwork|x.png"_qs);
    EXPECT_TRUE(model.HasArtwork);
    EXPECT_TRUE(model.img[1].AcceptsDrops);
    EXPECT_FALSE(model.img[1].Picture.has_value());
    EXPECT_TRUE(host.Attempted.isEmpty());
}

TEST_F(SkinFile, ImageWithAMissingPictureExistsWithoutAPicture) {
    EXPECT_EQ(FailureNumber(u"image=0;0;20;20;play;gone.png"_qs), VbError::CannotLoadFileNumber);
    ASSERT_EQ(model.ImageCount(), 1);
    EXPECT_TRUE(model.img[1].Visible);
    EXPECT_EQ(model.img[1].Tag, u"play"_qs);
    EXPECT_FALSE(model.img[1].Picture.has_value());
}

TEST_F(SkinFile, ImageWithACorruptPictureIsCannotLoadFile) {
    ASSERT_TRUE(WriteFile(folder + u"bad.png"_qs, "\x89PNG\r\n\x1a\nnot really a picture"));
    EXPECT_EQ(FailureNumber(u"image=0;0;20;20;play;bad.png"_qs), VbError::CannotLoadFileNumber);
    EXPECT_FALSE(model.img[1].Picture.has_value());
}

TEST_F(SkinFile, ImageWithAnEmptyPicturesFieldMissesItsFirstName) {
    EXPECT_EQ(FailureNumber(u"image=0;0;20;20;play;"_qs), VbError::SubscriptOutOfRangeNumber);
    EXPECT_EQ(model.ImageCount(), 1);
}

TEST_F(SkinFile, ImagesAndLabelsAreCountedSeparately) {
    Apply(u"label=1;1;1;1;a"_qs);
    Apply(u"image=0;0;1;1;x;none"_qs);
    Apply(u"label=1;1;1;1;b"_qs);
    EXPECT_EQ(model.LabelCount(), 2);
    EXPECT_EQ(model.ImageCount(), 1);
}

// Window settings.

TEST_F(SkinFile, OnTopReadsTheWholeValueAsABoolean) {
    Apply(u"ontop=True"_qs);
    EXPECT_TRUE(model.OnTop);
    Apply(u"ontop=0"_qs);
    EXPECT_FALSE(model.OnTop);
    Apply(u"ontop=-1"_qs);
    EXPECT_TRUE(model.OnTop);
    EXPECT_EQ(FailureNumber(u"ontop=yes"_qs), VbError::TypeMismatchNumber);
    EXPECT_EQ(FailureNumber(u"ontop=12abc"_qs), VbError::TypeMismatchNumber);
    EXPECT_EQ(FailureNumber(u"ontop=True;x"_qs), VbError::TypeMismatchNumber);
    EXPECT_TRUE(model.OnTop);
}

TEST_F(SkinFile, ScrollTimerSetsTheScrollInterval) {
    EXPECT_FALSE(model.ScrollInterval.has_value());
    Apply(u"scrolltimer=250"_qs);
    EXPECT_EQ(model.ScrollInterval, 250);
    EXPECT_EQ(lastLine.Change.Part, SkinPart::ScrollTimer);
}

TEST_F(SkinFile, BordersShowAllFourLinesWithTheirColour) {
    Apply(u"borders=True;&H808080"_qs);
    for (const BorderLine* line : {&model.lnTop, &model.lnBottom, &model.lnLeft, &model.lnRight}) {
        EXPECT_TRUE(line->Visible);
        EXPECT_EQ(line->BorderColor, 0x808080);
    }
    Apply(u"borders=False;0"_qs);
    EXPECT_FALSE(model.lnRight.Visible);
}

TEST_F(SkinFile, BordersWithoutColourAreShownThenMissTheColour) {
    EXPECT_EQ(FailureNumber(u"borders=True"_qs), VbError::SubscriptOutOfRangeNumber);
    EXPECT_TRUE(model.lnTop.Visible);
    EXPECT_FALSE(model.lnTop.BorderColor.has_value());
}

TEST_F(SkinFile, RoundWindowIsASixteenBitInteger) {
    Apply(u"roundwindow=12;ignored"_qs);
    EXPECT_EQ(model.RoundWindow, 12);
    Apply(u"roundwindow=2.5"_qs);
    EXPECT_EQ(model.RoundWindow, 2);
    EXPECT_EQ(FailureNumber(u"roundwindow=40000"_qs), VbError::OverflowNumber);
    EXPECT_EQ(model.RoundWindow, 2);
}

TEST_F(SkinFile, TransparencyIsASixteenBitIntegerOfTheWholeValue) {
    Apply(u"transparency=200"_qs);
    EXPECT_EQ(model.Transparency, 200);
    EXPECT_EQ(FailureNumber(u"transparency=32768"_qs), VbError::OverflowNumber);
}

TEST_F(SkinFile, RememberPosOnDesktopAndGlassifyReadTheirFirstField) {
    Apply(u"rememberpos=True;x"_qs);
    Apply(u"ondesktop=1"_qs);
    Apply(u"glassify=true"_qs);
    EXPECT_TRUE(model.RememberPos);
    EXPECT_TRUE(model.OnDesktop);
    EXPECT_TRUE(model.Glassify);
    EXPECT_EQ(FailureNumber(u"glassify="_qs), VbError::SubscriptOutOfRangeNumber);
    EXPECT_EQ(FailureNumber(u"ondesktop=maybe"_qs), VbError::TypeMismatchNumber);
}

TEST_F(SkinFile, ShowActionFormClickAndRatingsKeepTheirText) {
    Apply(u"showaction=FadeIn"_qs);
    Apply(u"formclick=playpause;nextsong"_qs);
    Apply(u"ratingscontrol=10;10;star.png;nostar.png"_qs);
    EXPECT_EQ(model.ShowAction, u"FadeIn"_qs);
    EXPECT_EQ(model.FormClickCode, u"playpause;nextsong"_qs);
    EXPECT_EQ(model.RatingsSpec, u"10;10;star.png;nostar.png"_qs);
}

TEST_F(SkinFile, EventLinesGoToTheEventTableWhole) {
    Apply(u"event=newsong;flash;x=1"_qs);
    EXPECT_EQ(host.Events, QStringList{u"newsong;flash;x=1"_qs});
}

TEST_F(SkinFile, RunCodeRunsAtOnceAndSeesOnlyTheElementsAboveIt) {
    class CountingHost : public RecordingHost {
    public:
        explicit CountingHost(const SkinModel& m) : Model(m) {}
        void RunCode(const QString& text) override {
            RecordingHost::RunCode(text);
            LabelsSeen.append(Model.LabelCount());
        }
        const SkinModel& Model;
        QList<int> LabelsSeen;
    } counting(model);
    ProcessLine(model, u"label=1;1;1;1;a"_qs, folder, counting);
    ProcessLine(model, u"runcode=hide 1"_qs, folder, counting);
    ProcessLine(model, u"label=1;1;1;1;b"_qs, folder, counting);
    EXPECT_EQ(counting.Codes, QStringList{u"hide 1"_qs});
    EXPECT_EQ(counting.LabelsSeen, QList<int>{1});
}

TEST_F(SkinFile, TimerEventCreatesNumberedEnabledTimers) {
    Apply(u"timerevent=1000;nextsong"_qs);
    Apply(u"timerevent=250.5;flash"_qs);
    ASSERT_EQ(model.TimerCount(), 2);
    EXPECT_EQ(model.tmr[1].Interval, 1000);
    EXPECT_EQ(model.tmr[1].Tag, u"nextsong"_qs);
    EXPECT_TRUE(model.tmr[1].Enabled);
    EXPECT_EQ(model.tmr[2].Interval, 250);
    EXPECT_EQ(model.tmr[0].Interval, 0);
    EXPECT_EQ(lastLine.Change, (SkinChange{SkinPart::Timer, 2, true}));
}

TEST_F(SkinFile, TimerEventWithoutCodeKeepsTheTimerWithItsInterval) {
    EXPECT_EQ(FailureNumber(u"timerevent=500"_qs), VbError::SubscriptOutOfRangeNumber);
    ASSERT_EQ(model.TimerCount(), 1);
    EXPECT_EQ(model.tmr[1].Interval, 500);
}

TEST_F(SkinFile, ProgressControlShowsTheBarWithItsFullWidthInTag) {
    ASSERT_TRUE(WritePicture(folder + u"bar.png"_qs));
    EXPECT_FALSE(model.imgProgress.Visible);
    Apply(u"progresscontrol=10;40;150;6;bar.png"_qs);
    const ProgressControl& bar = model.imgProgress;
    EXPECT_TRUE(bar.Visible);
    EXPECT_EQ(bar.Left, 10);
    EXPECT_EQ(bar.Top, 40);
    EXPECT_EQ(bar.Height, 6);
    EXPECT_EQ(bar.Tag, u"150"_qs);
    EXPECT_EQ(bar.Picture, folder + u"bar.png"_qs);
}

TEST_F(SkinFile, ProgressControlWithAMissingPictureStaysShownWithoutOne) {
    EXPECT_EQ(FailureNumber(u"progresscontrol=10;40;150.5;6;gone.png"_qs),
              VbError::CannotLoadFileNumber);
    EXPECT_TRUE(model.imgProgress.Visible);
    EXPECT_EQ(model.imgProgress.Tag, u"150.5"_qs);
    EXPECT_FALSE(model.imgProgress.Picture.has_value());
}

TEST_F(SkinFile, AnyInteractionAppendsToTheInteractionList) {
    Apply(u"anyinteraction=stopfade"_qs);
    Apply(u"anyinteraction="_qs);
    EXPECT_EQ(model.Interactions, (QStringList{u"stopfade"_qs, QString()}));
}

TEST_F(SkinFile, TheInteractionListStopsAtItsSixteenBitCount) {
    for (int i = 0; i < 32767; ++i)
        model.Interactions.append(QString());
    EXPECT_EQ(FailureNumber(u"anyinteraction=x"_qs), VbError::OverflowNumber);
    EXPECT_EQ(model.Interactions.size(), 32767);
}

TEST_F(SkinFile, KeyboardShortcutsAreAddedBeforeTheEmptySpareRecord) {
    EXPECT_EQ(model.KeyShortcuts, QList<KeyShortcut>{KeyShortcut()});
    Apply(u"keyboardshortcut=WIN+P;playpause"_qs);
    Apply(u"KeyboardShortcut=CTRL+ALT+N;nextsong"_qs);
    EXPECT_EQ(model.KeyShortcuts,
              (QList<KeyShortcut>{
                  {u"playpause"_qs, u"WIN+P"_qs}, {u"nextsong"_qs, u"CTRL+ALT+N"_qs}, {}}));
}

TEST_F(SkinFile, KeyboardShortcutWithoutCodeAddsNothing) {
    EXPECT_EQ(FailureNumber(u"keyboardshortcut=WIN+P"_qs), VbError::SubscriptOutOfRangeNumber);
    EXPECT_EQ(model.KeyShortcuts, QList<KeyShortcut>{KeyShortcut()});
}

TEST_F(SkinFile, LyricsCreatesTheDisplayAndSetsTheLyricsFlag) {
    EXPECT_FALSE(model.HasLyrics);
    Apply(u"lyrics=10;60;280;40;Verdana;9;&HFFFFFF;True"_qs);
    EXPECT_TRUE(model.HasLyrics);
    const LyricsDisplay& lyrics = model.Lyrics;
    EXPECT_TRUE(lyrics.Visible);
    EXPECT_EQ(lyrics.Geometry, (ElementGeometry{10, 60, 280, 40}));
    EXPECT_EQ(lyrics.Font, (SkinFont{u"Verdana"_qs, 9}));
    EXPECT_EQ(lyrics.ForeColor, 0xFFFFFF);
    EXPECT_TRUE(lyrics.Centred);
    EXPECT_EQ(lastLine.Change.Part, SkinPart::Lyrics);
}

TEST_F(SkinFile, LyricsWithOnlyItsPlaceKeepsTheDefaults) {
    Apply(u"lyrics=1;2;3;4"_qs);
    EXPECT_TRUE(model.HasLyrics);
    EXPECT_EQ(model.Lyrics.Font, SkinFont());
    EXPECT_FALSE(model.Lyrics.ForeColor.has_value());
    EXPECT_FALSE(model.Lyrics.Centred);
    Apply(u"lyrics=1;2;3;4;;;;"_qs);
    EXPECT_EQ(model.Lyrics.Font, SkinFont());
}

TEST_F(SkinFile, LyricsWithoutItsPlaceReportsTheMissingField) {
    EXPECT_EQ(FailureNumber(u"lyrics=1;2;3"_qs), VbError::SubscriptOutOfRangeNumber);
    EXPECT_TRUE(model.HasLyrics);
    EXPECT_EQ(FailureNumber(u"lyrics=1;2;3;4;Arial;9;0;perhaps"_qs), VbError::TypeMismatchNumber);
}

TEST_F(SkinFile, UnknownKeywordsAreSkippedSilently) {
    const SkinModel before = model;
    EXPECT_EQ(Apply(u"label =1;2;3;4;x"_qs), SkinLineResult::UnknownKeyword);
    EXPECT_EQ(Apply(u"colour=1"_qs), SkinLineResult::UnknownKeyword);
    EXPECT_EQ(model, before);
}

TEST_F(SkinFile, ALineThatTouchesNothingReportsNoChange) {
    Apply(u"label=1;1;1;1;a"_qs);
    Apply(u"// comment"_qs);
    EXPECT_EQ(lastLine.Change.Part, SkinPart::Nothing);
}

TEST_F(SkinFile, OtherErrorsAreReportedAsUnknownErrorWithTheirDescription) {
    EXPECT_EQ(SkinLineErrorTitle(), u"Error!"_qs);
    EXPECT_EQ(SkinLineErrorText(VbError::TypeMismatch(), u"ontop=yes"_qs),
              u"There was an error while loading the skin:\nUnknown Error: Type mismatch\n"
              u"ontop=yes"_qs);
}

TEST(SkinModel, ColourToRgbSplitsTheLowThreeBytes) {
    EXPECT_EQ(ColourToRgb(0x123456), (RgbColour{0x56, 0x34, 0x12}));
    EXPECT_EQ(ColourToRgb(-1), (RgbColour{255, 255, 255}));
}

TEST(SkinModel, ANewModelHasOnlyTheUnusedModelElements) {
    const SkinModel model;
    EXPECT_EQ(model.LabelCount(), 0);
    EXPECT_EQ(model.ImageCount(), 0);
    EXPECT_EQ(model.TimerCount(), 0);
    EXPECT_EQ(model.KeyShortcuts.size(), 1);
    EXPECT_TRUE(model.Tag.isEmpty());
    EXPECT_FALSE(model.imgProgress.Visible);
}
