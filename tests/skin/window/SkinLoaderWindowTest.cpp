// Loading skin files into real skin windows: the window's geometry and controls as the lines
// create them, the loader's error boxes word for word, the remembered position and the steps
// after the file. Message boxes run unattended and are read back from stderr.
#include "SkinWindowFixture.h"

#include <QScreen>
#include <array>

using namespace Pelorin;
using namespace Pelorin::Testing;

namespace {

class SkinLoading : public SkinWindowFixture {};

quint32 Crc32(const QByteArray& bytes) {
    quint32 crc = 0xFFFFFFFFu;
    for (const char byte : bytes) {
        crc ^= static_cast<quint8>(byte);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc >> 1) ^ (0xEDB88320u & (0u - (crc & 1u)));
    }
    return ~crc;
}

QByteArray BigEndian(quint32 value) {
    QByteArray bytes(4, '\0');
    for (int i = 0; i < 4; ++i)
        bytes[i] = static_cast<char>((value >> (24 - 8 * i)) & 0xFF);
    return bytes;
}

// A PNG whose header claims the size; nothing behind it is needed to be refused.
QByteArray PngHeaderOnly(quint32 width, quint32 height) {
    QByteArray header = BigEndian(width) + BigEndian(height);
    header += QByteArray("\x08\x06\x00\x00\x00", 5);
    const QByteArray chunk = QByteArray("IHDR") + header;
    return QByteArray("\x89PNG\r\n\x1a\n", 8) + BigEndian(13) + chunk + BigEndian(Crc32(chunk));
}

} // namespace

TEST_F(SkinLoading, GeometryComesFromTheSkinLinesInPixels) {
    const QString folder = WriteSkin(QStringLiteral("Geo"),
                                     {QStringLiteral("left=40"), QStringLiteral("top=60"),
                                      QStringLiteral("width=200"), QStringLiteral("height=80")});
    QPointer<frmMain> window = Open(folder);
    ASSERT_TRUE(WaitExposed(window));
    (void)QTest::qWaitFor([&] { return window->geometry() == QRect(40, 60, 200, 80); });
    EXPECT_EQ(window->geometry(), QRect(40, 60, 200, 80));
    EXPECT_DOUBLE_EQ(window->LeftTwips(), 600);
    EXPECT_DOUBLE_EQ(window->TopTwips(), 900);
}

TEST_F(SkinLoading, LeftAndTopWithRCountFromTheScreensRightAndBottomEdges) {
    const QSize screen = QGuiApplication::primaryScreen()->size();
    const QString folder =
        WriteSkin(QStringLiteral("R"), {QStringLiteral("width=100"), QStringLiteral("height=30"),
                                        QStringLiteral("left=r120"), QStringLiteral("top=r50")});
    frmMain* window = Create();
    window->LoadSkin(folder + QLatin1String("skin.ini"), folder);
    EXPECT_EQ(window->x(), screen.width() - 120);
    EXPECT_EQ(window->y(), screen.height() - 50);
}

TEST_F(SkinLoading, LeftR0PutsTheWindowsLeftEdgeAtTheScreensRightEdge) {
    const QSize screen = QGuiApplication::primaryScreen()->size();
    const QString folder = WriteSkin(QStringLiteral("R0"), {QStringLiteral("left=r0")});
    frmMain* window = Create();
    window->LoadSkin(folder + QLatin1String("skin.ini"), folder);
    EXPECT_EQ(window->x(), screen.width());
}

TEST_F(SkinLoading, ALaterWindowLineOverridesAnEarlierOne) {
    const QString folder =
        WriteSkin(QStringLiteral("Twice"), {QStringLiteral("left=10"), QStringLiteral("left=70")});
    frmMain* window = Create();
    window->LoadSkin(folder + QLatin1String("skin.ini"), folder);
    EXPECT_EQ(window->x(), 70);
}

TEST_F(SkinLoading, TheWindowTitleIsTheSkinFoldersName) {
    const QString folder = WriteSkin(QStringLiteral("Blue Night"), {});
    frmMain* window = Create();
    window->LoadSkin(folder + QLatin1String("skin.ini"), folder);
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Blue Night"));
}

TEST_F(SkinLoading, AFileWithOnlyCommentsGivesAnEmptyDefaultSizedWindowShownPlainly) {
    const QString folder =
        WriteSkin(QStringLiteral("Comments"),
                  {QStringLiteral("// label=1;1;1;1;x"), QStringLiteral("'label=2;2;2;2;y"),
                   QStringLiteral("\\\\ image=0;0;1;1;;none")});
    QPointer<frmMain> window = Open(folder);
    ASSERT_TRUE(WaitExposed(window));
    EXPECT_EQ(window->size(), QSize(frmMain::DefaultWidth, frmMain::DefaultHeight));
    EXPECT_EQ(window->Tag(), QStringLiteral("loadedbyskin"));
    EXPECT_EQ(window->lblInfo(1), nullptr);
    EXPECT_EQ(window->img(1), nullptr);
    EXPECT_FALSE(probe.Opacity(Id(window)).has_value()) << "shown plainly, not layered";
}

TEST_F(SkinLoading, SkinnameSetsTheWindowsTag) {
    const QString folder = WriteSkin(QStringLiteral("Named"), {QStringLiteral("skinname=Moon")});
    frmMain* window = Create();
    window->LoadSkin(folder + QLatin1String("skin.ini"), folder);
    EXPECT_EQ(window->Tag(), QStringLiteral("Moon"));
    EXPECT_EQ(window->SkinFolder(), folder);
}

TEST_F(SkinLoading, LabelsAreCreatedInFileOrderAndElementZeroNeverExists) {
    const QString folder = WriteSkin(
        QStringLiteral("Labels"),
        {QStringLiteral("Label=10;20;100;15;[Artist]"),
         QStringLiteral("label=10;40;120;16;[Title]"), QStringLiteral("labelfont=2;DejaVu Sans;14"),
         QStringLiteral("labelcenter=2"), QStringLiteral("labelcolor=2;&HFF0000")});
    frmMain* window = Create();
    window->LoadSkin(folder + QLatin1String("skin.ini"), folder);
    EXPECT_EQ(window->lblInfo(0), nullptr);
    ASSERT_NE(window->lblInfo(1), nullptr);
    ASSERT_NE(window->lblInfo(2), nullptr);
    EXPECT_EQ(window->lblInfo(3), nullptr);
    EXPECT_EQ(window->findChildren<SkinLabelControl*>(QStringLiteral("lblInfo")).size(), 2);
    EXPECT_EQ(ControlTag(window->lblInfo(1)), QStringLiteral("[Artist]"));
    EXPECT_EQ(window->lblInfo(1)->geometry(), QRect(10, 20, 100, 15));
    SkinLabelControl* second = window->lblInfo(2);
    EXPECT_EQ(second->geometry(), QRect(10, 40, 120, 16));
    EXPECT_EQ(second->font().pointSizeF(), 14);
    EXPECT_EQ(second->font().family(), QStringLiteral("DejaVu Sans"));
    EXPECT_TRUE(second->alignment() & Qt::AlignHCenter);
    EXPECT_EQ(second->palette().color(QPalette::WindowText), QColor(0, 0, 255));
    EXPECT_FALSE(second->isHidden());
    EXPECT_GT(window->scrollWidthTextWidth(2, QStringLiteral("wide text")),
              window->scrollWidthTextWidth(2, QStringLiteral("w")));
}

TEST_F(SkinLoading, ImagesDrawTheirPictureStretchedAndKeepTransparency) {
    const QString folder = WriteSkin(
        QStringLiteral("Images"),
        {QStringLiteral("backgroundcolor=255"), QStringLiteral("width=100"),
         QStringLiteral("height=50"), QStringLiteral("image=10;10;40;20;play;half.png"),
         QStringLiteral("image=0;0;20;20;stop;none"), QStringLiteral("image=60;0;30;30;;ARTWORK")});
    WritePicture(folder + QLatin1String("half.png"), QSize(4, 2), QColor(0, 255, 0));
    QPointer<frmMain> window = Open(folder);
    ASSERT_TRUE(WaitExposed(window));
    ASSERT_NE(window->img(1), nullptr);
    EXPECT_EQ(window->img(0), nullptr);
    EXPECT_EQ(ControlTag(window->img(1)), QStringLiteral("play"));
    EXPECT_EQ(window->img(1)->geometry(), QRect(10, 10, 40, 20));
    EXPECT_TRUE(window->img(2)->Picture().isNull()) << "\"none\" gives no picture";
    EXPECT_TRUE(window->Model().HasArtwork);
    EXPECT_TRUE(window->img(3)->acceptDrops());

    const QImage shot = window->grab().toImage();
    // Left half of the picture, stretched over the left half of the image: green.
    EXPECT_EQ(QColor(shot.pixel(12, 12)), QColor(0, 255, 0));
    EXPECT_EQ(QColor(shot.pixel(22, 27)), QColor(0, 255, 0));
    // The transparent right half shows the window's red background.
    EXPECT_EQ(QColor(shot.pixel(45, 15)), QColor(255, 0, 0));
}

TEST_F(SkinLoading, ElementTimersGetTheirIntervalAndCode) {
    const QString folder =
        WriteSkin(QStringLiteral("Timers"),
                  {QStringLiteral("timerevent=1000;playpause"), QStringLiteral("timerevent=0;next"),
                   QStringLiteral("timerevent=250;stop")});
    frmMain* window = Create();
    window->LoadSkin(folder + QLatin1String("skin.ini"), folder);
    EXPECT_EQ(window->tmr(0), nullptr);
    ASSERT_NE(window->tmr(3), nullptr);
    EXPECT_EQ(window->tmr(1)->Interval(), 1000);
    EXPECT_EQ(ControlTag(window->tmr(2)), QStringLiteral("next"));
    EXPECT_TRUE(window->tmr(1)->IsTicking());
    EXPECT_FALSE(window->tmr(2)->IsTicking()) << "interval 0 never ticks";
}

TEST_F(SkinLoading, FixedControlsExistFromTheStart) {
    frmMain* window = Create();
    EXPECT_EQ(window->lblMove()->text(), QStringLiteral("Move Window"));
    EXPECT_TRUE(window->lblMove()->isHidden());
    EXPECT_TRUE(window->imgProgress()->isHidden());
    for (int k = 0; k < 5; ++k)
        ASSERT_NE(window->imgRatings(k), nullptr) << "imgRatings(0) is the first star";
    EXPECT_EQ(window->imgRatings(5), nullptr);
    EXPECT_EQ(window->tmrProgress()->Interval(), 500);
    EXPECT_TRUE(window->tmrProgress()->IsTicking());
    EXPECT_FALSE(window->tmrScroll()->IsTicking());
    EXPECT_FALSE(window->tmrTrackImage()->Enabled());
    EXPECT_EQ(window->tmrTrackImage()->Interval(), 50);
    EXPECT_FALSE(window->tmrDeskbarLetDie()->Enabled());
    EXPECT_TRUE(window->Cantom()->isHidden());
    for (LineControl* line :
         {window->lnTop(), window->lnBottom(), window->lnLeft(), window->lnRight()})
        EXPECT_TRUE(line->isHidden());
    EXPECT_TRUE(window->windowFlags().testFlag(Qt::FramelessWindowHint));
    EXPECT_EQ(window->windowFlags() & Qt::WindowType_Mask, Qt::Tool) << "not in the task bar";
}

TEST_F(SkinLoading, ScrollTimerProgressBordersAndLyricsLines) {
    const QString folder = WriteSkin(QStringLiteral("Parts"),
                                     {QStringLiteral("width=200"), QStringLiteral("height=100"),
                                      QStringLiteral("scrolltimer=120"),
                                      QStringLiteral("progresscontrol=5;80;150;6;bar.png"),
                                      QStringLiteral("borders=True;&H00FF00"),
                                      QStringLiteral("lyrics=5;5;190;20;DejaVu Sans;9;255;True")});
    WritePicture(folder + QLatin1String("bar.png"), QSize(10, 2), Qt::white);
    frmMain* window = Create();
    window->LoadSkin(folder + QLatin1String("skin.ini"), folder);
    EXPECT_EQ(window->tmrScroll()->Interval(), 120);
    EXPECT_TRUE(window->tmrScroll()->IsTicking());
    EXPECT_FALSE(window->imgProgress()->isHidden());
    EXPECT_EQ(window->imgProgress()->pos(), QPoint(5, 80));
    EXPECT_EQ(window->imgProgress()->height(), 6);
    EXPECT_EQ(ControlTag(window->imgProgress()), QStringLiteral("150"));
    EXPECT_FALSE(window->imgProgress()->Picture().isNull());
    EXPECT_FALSE(window->lnTop()->isHidden());
    EXPECT_FALSE(window->Cantom()->isHidden());
    EXPECT_EQ(window->Cantom()->geometry(), QRect(5, 5, 190, 20));
    EXPECT_TRUE(window->Model().HasLyrics);
}

TEST_F(SkinLoading, BorderLinesFollowTheWindowsSize) {
    const QString folder = WriteSkin(
        QStringLiteral("Borders"),
        {QStringLiteral("width=200"), QStringLiteral("height=100"), QStringLiteral("borders=1;0")});
    QPointer<frmMain> window = Open(folder);
    ASSERT_TRUE(WaitExposed(window));
    EXPECT_EQ(window->lnRight()->geometry(), QRect(198, 0, 1, 101));
    EXPECT_EQ(window->lnBottom()->geometry(), QRect(0, 98, 201, 1));
    window->resize(300, 60);
    (void)QTest::qWaitFor([&] { return window->lnRight()->x() == 298; });
    EXPECT_EQ(window->lnRight()->x(), 298);
    EXPECT_EQ(window->lnLeft()->height(), 61);
    EXPECT_EQ(window->lnBottom()->y(), 58);
    EXPECT_EQ(window->lnTop()->width(), 301);
}

TEST_F(SkinLoading, RuncodeLinesRunInFileOrderAndSeeOnlyTheElementsAboveThem) {
    QStringList seen;
    services.RunCode = [&seen](frmMain& window, const QString& code) {
        seen.append(code + u':' + QString::number(window.lblInfo(2) != nullptr));
    };
    const QString folder =
        WriteSkin(QStringLiteral("Runcode"),
                  {QStringLiteral("label=0;0;10;10;a"), QStringLiteral("runcode=first"),
                   QStringLiteral("label=0;0;10;10;b"), QStringLiteral("runcode=second")});
    frmMain* window = Create();
    window->LoadSkin(folder + QLatin1String("skin.ini"), folder);
    EXPECT_EQ(seen, (QStringList{QStringLiteral("first:0"), QStringLiteral("second:1")}));
}

TEST_F(SkinLoading, TheStepsAfterTheFileRunInOrderAfterThePosition) {
    QStringList steps;
    auto record = [&steps](const char* name) {
        return [&steps, name](frmMain&) { steps.append(QLatin1String(name)); };
    };
    services.CheckStartPersonal = record("CheckStartPersonal");
    services.LoadSong = record("LoadSong");
    services.ProcessKeyShortcuts = record("ProcessKeyShortcuts");
    windowSignals.progressTimerTicked = [&steps] {
        steps.append(QStringLiteral("tmrProgress_Timer"));
    };
    services.NewEvent = [&steps](frmMain&, const QString& line) {
        steps.append(QStringLiteral("NewEvent ") + line);
    };
    const QString folder =
        WriteSkin(QStringLiteral("Steps"), {QStringLiteral("event=newsong;next")});
    frmMain* window = Create();
    window->LoadSkin(folder + QLatin1String("skin.ini"), folder);
    EXPECT_EQ(steps, (QStringList{QStringLiteral("NewEvent newsong;next"),
                                  QStringLiteral("CheckStartPersonal"), QStringLiteral("LoadSong"),
                                  QStringLiteral("ProcessKeyShortcuts"),
                                  QStringLiteral("tmrProgress_Timer")}));
}

TEST_F(SkinLoading, AMissingFieldShowsTheLoadersMessageWordForWordAndLoadingGoesOn) {
    StderrCapture err;
    const QString folder =
        WriteSkin(QStringLiteral("Missing"),
                  {QStringLiteral("label=10;20;100;15"), QStringLiteral("label=1;2;3;4;next")});
    frmMain* window = Create();
    window->LoadSkin(folder + QLatin1String("skin.ini"), folder);
    EXPECT_EQ(err.Messages(),
              QStringList{QStringLiteral("There was an error while loading the skin: / Expected "
                                         "parameter missing! / label=10;20;100;15")});
    ASSERT_NE(window->lblInfo(1), nullptr) << "label 1 exists, with position and size";
    EXPECT_FALSE(window->lblInfo(1)->isHidden());
    EXPECT_EQ(window->lblInfo(1)->geometry(), QRect(10, 20, 100, 15));
    EXPECT_EQ(ControlTag(window->lblInfo(1)), QString());
    ASSERT_NE(window->lblInfo(2), nullptr);
}

TEST_F(SkinLoading, TenBrokenLinesShowTenMessages) {
    StderrCapture err;
    QStringList lines;
    for (int i = 0; i < 10; ++i)
        lines.append(QStringLiteral("image=%1;0;5;5").arg(i));
    const QString folder = WriteSkin(QStringLiteral("Ten"), lines);
    frmMain* window = Create();
    window->LoadSkin(folder + QLatin1String("skin.ini"), folder);
    EXPECT_EQ(err.Messages().size(), 10);
    EXPECT_NE(window->img(10), nullptr);
}

TEST_F(SkinLoading, AfterTenBrokenLinesTheRestAreCountedInOneMoreMessage) {
    StderrCapture err;
    QStringList lines;
    for (int i = 0; i < 250; ++i)
        lines.append(QStringLiteral("image=%1;0;5;5").arg(i));
    const QString folder = WriteSkin(QStringLiteral("Many"), lines);
    frmMain* window = Create();
    window->LoadSkin(folder + QLatin1String("skin.ini"), folder);
    const QStringList messages = err.Messages();
    ASSERT_EQ(messages.size(), frmMain::MaxLineErrorBoxes + 1);
    EXPECT_EQ(messages.last(), frmMain::MoreLineErrorsText(240, folder));
    EXPECT_NE(window->img(250), nullptr) << "every line was still applied";
}

TEST_F(SkinLoading, OtherLineErrorsAreUnknownErrorsWithTheirDescription) {
    StderrCapture err;
    const QString folder =
        WriteSkin(QStringLiteral("Unknown"),
                  {QStringLiteral("labelfont=3;Arial;10"), QStringLiteral("ontop=maybe")});
    frmMain* window = Create();
    window->LoadSkin(folder + QLatin1String("skin.ini"), folder);
    EXPECT_EQ(err.Messages(),
              (QStringList{QStringLiteral("There was an error while loading the skin: / Unknown "
                                          "Error: Control array element '3' doesn't exist / "
                                          "labelfont=3;Arial;10"),
                           QStringLiteral("There was an error while loading the skin: / Unknown "
                                          "Error: Type mismatch / ontop=maybe")}));
}

TEST_F(SkinLoading, AMissingSkinFileShowsTheLoadSkinErrorAndTheWindowStillShows) {
    StderrCapture err;
    const QString folder = dir.path() + QLatin1String("/Skins/Nothing/");
    QPointer<frmMain> window = Open(folder);
    EXPECT_EQ(err.Messages(), QStringList{QStringLiteral(
                                  "There was an error in LoadSkin / Err 53: File not found")});
    ASSERT_FALSE(window.isNull());
    EXPECT_TRUE(WaitExposed(window));
}

TEST_F(SkinLoading, AMissingPictureShowsOneMessageAndTheImageExistsWithoutPicture) {
    StderrCapture err;
    const QString folder =
        WriteSkin(QStringLiteral("NoPic"), {QStringLiteral("image=0;0;20;20;play;gone.png"),
                                            QStringLiteral("backgroundpicture=alsogone.png")});
    QPointer<frmMain> window = Open(folder);
    ASSERT_TRUE(WaitExposed(window));
    const QStringList messages = err.Messages();
    ASSERT_EQ(messages.size(), 2);
    EXPECT_EQ(messages[0],
              QStringLiteral("There was an error while loading the skin: / Unknown "
                             "Error: Cannot load file / image=0;0;20;20;play;gone.png"));
    ASSERT_NE(window->img(1), nullptr);
    EXPECT_TRUE(window->img(1)->Picture().isNull());
    EXPECT_FALSE(window->img(1)->isHidden());
}

TEST_F(SkinLoading, ACorruptPictureIsReportedAndSkipped) {
    StderrCapture err;
    const QString folder =
        WriteSkin(QStringLiteral("Corrupt"), {QStringLiteral("image=0;0;20;20;play;bad.png")});
    QFile bad(folder + QLatin1String("bad.png"));
    ASSERT_TRUE(bad.open(QIODevice::WriteOnly));
    bad.write("\x89PNG\r\n\x1a\nthis is not a picture at all");
    bad.close();
    QPointer<frmMain> window = Open(folder);
    ASSERT_TRUE(WaitExposed(window));
    EXPECT_EQ(err.Messages().size(), 1);
    EXPECT_TRUE(window->img(1)->Picture().isNull());
}

TEST_F(SkinLoading, AHugePictureIsRefusedWithTheLoadersMessage) {
    StderrCapture err;
    const QString folder =
        WriteSkin(QStringLiteral("Huge"), {QStringLiteral("backgroundpicture=huge.png")});
    QFile huge(folder + QLatin1String("huge.png"));
    ASSERT_TRUE(huge.open(QIODevice::WriteOnly));
    huge.write(PngHeaderOnly(20000, 20000));
    huge.close();
    QPointer<frmMain> window = Open(folder);
    ASSERT_TRUE(WaitExposed(window));
    EXPECT_EQ(err.Messages(), QStringList{QStringLiteral(
                                  "There was an error while loading the skin: / Unknown Error: "
                                  "Cannot load file / backgroundpicture=huge.png")});
    EXPECT_FALSE(window->Model().Picture.has_value());
}

TEST_F(SkinLoading, TransparentBackgroundInAnotherCaseIsAFileName) {
    StderrCapture err;
    const QString folder = WriteSkin(QStringLiteral("TB"),
                                     {QStringLiteral("backgroundpicture=[transparentbackground]")});
    frmMain* window = Create();
    window->LoadSkin(folder + QLatin1String("skin.ini"), folder);
    EXPECT_EQ(err.Messages().size(), 1);
    EXPECT_FALSE(window->Model().TransparentBackground);
    EXPECT_FALSE(window->testAttribute(Qt::WA_TranslucentBackground));
}

TEST_F(SkinLoading, TransparentBackgroundLeavesTheWindowUnpainted) {
    const QString folder = WriteSkin(QStringLiteral("TB2"),
                                     {QStringLiteral("backgroundcolor=255"),
                                      QStringLiteral("backgroundpicture=[TransparentBackground]")});
    frmMain* window = Create();
    window->LoadSkin(folder + QLatin1String("skin.ini"), folder);
    EXPECT_TRUE(window->Model().TransparentBackground);
    EXPECT_TRUE(window->testAttribute(Qt::WA_TranslucentBackground));
}

TEST_F(SkinLoading, NegativeSizesAreTakenWithoutACrash) {
    StderrCapture err;
    const QString folder = WriteSkin(QStringLiteral("Negative"),
                                     {QStringLiteral("width=-50"), QStringLiteral("height=-1"),
                                      QStringLiteral("label=-5;-5;-100;-20;x"),
                                      QStringLiteral("image=0;0;-20;-20;;none")});
    QPointer<frmMain> window = Open(folder);
    ASSERT_TRUE(WaitExposed(window));
    EXPECT_TRUE(err.Messages().isEmpty());
    EXPECT_EQ(window->size(), QSize(1, 1)) << "the smallest window there is";
    EXPECT_EQ(window->lblInfo(1)->size(), QSize(0, 0));
    EXPECT_EQ(window->img(1)->size(), QSize(0, 0));
}

TEST_F(SkinLoading, FiveThousandLabelsLoad) {
    QStringList lines;
    for (int i = 0; i < 5000; ++i)
        lines.append(QStringLiteral("label=%1;%2;40;12;[Title]").arg(i % 300).arg(i / 300));
    const QString folder = WriteSkin(QStringLiteral("Many"), lines);
    QPointer<frmMain> window = Open(folder);
    ASSERT_TRUE(WaitExposed(window));
    ASSERT_NE(window->lblInfo(5000), nullptr);
    EXPECT_EQ(window->lblInfo(5001), nullptr);
    EXPECT_EQ(window->Model().LabelCount(), 5000);
}

TEST_F(SkinLoading, RememberPosWithoutPositionFileKeepsTheSkinsLeftAndTop) {
    const QString folder =
        WriteSkin(QStringLiteral("NoPos"), {QStringLiteral("left=33"), QStringLiteral("top=44"),
                                            QStringLiteral("rememberpos=True")});
    frmMain* window = Create();
    window->LoadSkin(folder + QLatin1String("skin.ini"), folder);
    EXPECT_EQ(window->pos(), QPoint(33, 44));
}

TEST_F(SkinLoading, RememberPosMovesTheWindowToThePositionFile) {
    const QString folder =
        WriteSkin(QStringLiteral("Pos"), {QStringLiteral("left=33"), QStringLiteral("top=44"),
                                          QStringLiteral("rememberpos=1")});
    QFile position(folder + QLatin1String("position.ini"));
    ASSERT_TRUE(position.open(QIODevice::WriteOnly));
    position.write(" 1500\r\n 3000\r\n");
    position.close();
    frmMain* window = Create();
    window->LoadSkin(folder + QLatin1String("skin.ini"), folder);
    EXPECT_EQ(window->pos(), QPoint(100, 200));
}

TEST_F(SkinLoading, APositionFileWithOneLineKeepsTheLeftAndReportsTheError) {
    StderrCapture err;
    QStringList steps;
    services.LoadSong = [&steps](frmMain&) { steps.append(QStringLiteral("LoadSong")); };
    const QString folder =
        WriteSkin(QStringLiteral("OneLine"), {QStringLiteral("left=33"), QStringLiteral("top=44"),
                                              QStringLiteral("rememberpos=1")});
    QFile position(folder + QLatin1String("position.ini"));
    ASSERT_TRUE(position.open(QIODevice::WriteOnly));
    position.write(" 1500\r\n");
    position.close();
    frmMain* window = Create();
    window->LoadSkin(folder + QLatin1String("skin.ini"), folder);
    EXPECT_EQ(window->pos(), QPoint(100, 44));
    EXPECT_EQ(err.Messages(), QStringList{QStringLiteral(
                                  "There was an error in LoadSkin / Err 62: Input past end of "
                                  "file")});
    EXPECT_TRUE(steps.isEmpty()) << "the error ends LoadSkin";
}

TEST_F(SkinLoading, AFailingStepAfterTheFileEndsLoadSkinWithItsMessage) {
    StderrCapture err;
    services.LoadSong = [](frmMain&) { throw VbError::ObjectNotSet(); };
    const QString folder = WriteSkin(QStringLiteral("Step"), {QStringLiteral("width=50")});
    QPointer<frmMain> window = Open(folder);
    EXPECT_EQ(err.Messages(),
              QStringList{QStringLiteral("There was an error in LoadSkin / Err 91: Object variable "
                                         "or With block variable not set")});
    ASSERT_TRUE(WaitExposed(window)) << "the window still shows what was loaded";
    EXPECT_EQ(window->width(), 50);
}

TEST_F(SkinLoading, ProcessLineAppliesAndReportsOneLine) {
    StderrCapture err;
    frmMain* window = Create();
    window->LoadSkin(WriteSkin(QStringLiteral("Lines"), {}) + QLatin1String("skin.ini"),
                     dir.path() + QLatin1String("/Skins/Lines/"));
    window->ProcessLine(QStringLiteral("label=1;2;30;10;[Album]"), window->SkinFolder());
    window->ProcessLine(QStringLiteral("labelfont=1;Arial"), window->SkinFolder());
    ASSERT_NE(window->lblInfo(1), nullptr);
    EXPECT_EQ(window->lblInfo(1)->font().family(), QStringLiteral("Arial"))
        << "the font name was set before the size was missed";
    EXPECT_EQ(err.Messages(),
              QStringList{QStringLiteral("There was an error while loading the skin: / Expected "
                                         "parameter missing! / labelfont=1;Arial")});
}
