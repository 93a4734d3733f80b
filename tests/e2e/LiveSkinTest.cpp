// The real program with its bundled Default skin, playing the test library on a real player
// daemon: what the window shows is read from screenshots of it, what the player does from mpc and
// the music files, and the pointer is the X server's own (xdotool).
#include "PlayerDaemonFixture.h"
#include "player/daemon/TagFile.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QProcess>
#include <QProcessEnvironment>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>
#include <functional>
#include <gtest/gtest.h>
#include <memory>

using namespace Pelorin;

namespace {

const QString Program = QStringLiteral(PELORIN_BINARY_DIR "/pelorin");
const QString DragSourceProgram = QStringLiteral(PELORIN_DRAG_SOURCE);

// Places on the Default skin (window pixels), as its skin.ini lays them out.
const QRect ArtworkRect(12, 12, 76, 76);
const QRect TitleRect(100, 9, 190, 18);
const QRect StarsRect(248, 47, 59, 11);
const QRect BarRect(100, 63, 208, 4);
const QPoint PlayPauseCentre(191, 80);

QString RunProgram(const QString& program, const QStringList& arguments, int* exitCode = nullptr,
                   QByteArray* bytes = nullptr) {
    QProcess process;
    process.start(program, arguments);
    const bool finished = process.waitForFinished(15000);
    if (exitCode != nullptr)
        *exitCode =
            finished && process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    const QByteArray out = process.readAllStandardOutput();
    if (bytes != nullptr)
        *bytes = out;
    return QString::fromUtf8(out);
}

bool Xdotool(const QStringList& arguments) {
    int code = -1;
    RunProgram(QStringLiteral("xdotool"), arguments, &code);
    return code == 0;
}

bool WaitFor(const std::function<bool()>& condition, int timeoutMs = 10000) {
    return QTest::qWaitFor(condition, timeoutMs);
}

// The mean colour of a region.
QColor Mean(const QImage& image, const QRect& region) {
    double r = 0, g = 0, b = 0;
    int n = 0;
    for (int y = region.top(); y <= region.bottom(); ++y) {
        for (int x = region.left(); x <= region.right(); ++x) {
            const QColor c = image.pixelColor(x, y);
            r += c.red();
            g += c.green();
            b += c.blue();
            ++n;
        }
    }
    if (n == 0)
        return QColor();
    return QColor(static_cast<int>(r / n), static_cast<int>(g / n), static_cast<int>(b / n));
}

int Distance(const QColor& a, const QColor& b) {
    return std::abs(a.red() - b.red()) + std::abs(a.green() - b.green()) +
           std::abs(a.blue() - b.blue());
}

// How many pixels of a region differ clearly between two pictures.
int Differing(const QImage& a, const QImage& b, const QRect& region) {
    int n = 0;
    for (int y = region.top(); y <= region.bottom(); ++y) {
        for (int x = region.left(); x <= region.right(); ++x) {
            if (Distance(a.pixelColor(x, y), b.pixelColor(x, y)) > 30)
                ++n;
        }
    }
    return n;
}

// The filled part of the progress bar: the rightmost column of its middle row that differs from
// the empty bar.
int BarExtent(const QImage& shot, const QImage& empty) {
    const int y = BarRect.top() + 1;
    int extent = 0;
    for (int x = BarRect.left(); x <= BarRect.right(); ++x) {
        if (Distance(shot.pixelColor(x, y), empty.pixelColor(x, y)) > 30)
            extent = x - BarRect.left() + 1;
    }
    return extent;
}

class LiveSkin : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(dir.isValid());
        ASSERT_TRUE(QFileInfo(Program).isExecutable()) << "build the pelorin target first";
        ASSERT_EQ(daemon.Start(), QString());
        const LibraryCatalog catalog = PlayerDaemonFixture::Catalog();
        for (const TrackSpec& track : catalog.tracks) {
            if (track.title == QStringLiteral("Morning Light"))
                first = track;
            if (track.title == QStringLiteral("Headlights"))
                second = track;
        }
        ASSERT_FALSE(first.uri.isEmpty());
        ASSERT_FALSE(second.uri.isEmpty());

        home = dir.path() + QStringLiteral("/program");
        ASSERT_TRUE(PlayerDaemonFixture::CopyFolder(
            QStringLiteral(PELORIN_SOURCE_DIR "/data/Skins"), home + QStringLiteral("/Skins")));
        ASSERT_TRUE(
            PlayerDaemonFixture::CopyFolder(QStringLiteral(PELORIN_SOURCE_DIR "/data/Deskband"),
                                            home + QStringLiteral("/Deskband")));
        const QString runtime = dir.path() + QStringLiteral("/runtime");
        QDir().mkpath(runtime);
        QFile::setPermissions(runtime, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        for (const char* sub : {"/home", "/config", "/data", "/state"})
            QDir().mkpath(dir.path() + QLatin1String(sub));
        env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("PELORIN_HOME"), home);
        env.insert(QStringLiteral("PELORIN_UNATTENDED"), QStringLiteral("1"));
        env.insert(QStringLiteral("MPD_HOST"), daemon.SocketPath());
        env.remove(QStringLiteral("MPD_PORT"));
        env.insert(QStringLiteral("HOME"), dir.path() + QStringLiteral("/home"));
        env.insert(QStringLiteral("XDG_CONFIG_HOME"), dir.path() + QStringLiteral("/config"));
        env.insert(QStringLiteral("XDG_DATA_HOME"), dir.path() + QStringLiteral("/data"));
        env.insert(QStringLiteral("XDG_STATE_HOME"), dir.path() + QStringLiteral("/state"));
        env.insert(QStringLiteral("XDG_RUNTIME_DIR"), runtime);
        env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
        env.remove(QStringLiteral("PELORIN_TEST_PLATFORM"));

        // Both tracks in the queue, each repeating on its own, the first one rated five stars.
        Mpc({QStringLiteral("clear")});
        Mpc({QStringLiteral("add"), first.uri});
        Mpc({QStringLiteral("add"), second.uri});
        Mpc({QStringLiteral("repeat"), QStringLiteral("on")});
        Mpc({QStringLiteral("single"), QStringLiteral("on")});
        Mpc({QStringLiteral("sticker"), first.uri, QStringLiteral("set"), QStringLiteral("rating"),
             QStringLiteral("10")});
    }

    void TearDown() override {
        for (QProcess* process : {pelorin.get(), dragSource.get(), trayer.get()}) {
            if (process != nullptr && process->state() != QProcess::NotRunning) {
                process->terminate();
                if (!process->waitForFinished(5000)) {
                    process->kill();
                    process->waitForFinished(5000);
                }
            }
        }
        if (pelorin != nullptr && HasFailure())
            std::fprintf(stderr, "pelorin said:\n%s\n",
                         pelorin->readAllStandardError().constData());
    }

    QString Mpc(const QStringList& arguments) { return daemon.Mpc(arguments); }

    // "playing" or "paused" and the elapsed seconds, from mpc status.
    QString State() {
        const QRegularExpression re(QStringLiteral("\\[(playing|paused)\\]"));
        return re.match(Mpc({QStringLiteral("status")})).captured(1);
    }
    int Elapsed() {
        const QRegularExpression re(QStringLiteral("\\] +#\\d+/\\d+ +(\\d+):(\\d+)/"));
        const QRegularExpressionMatch m = re.match(Mpc({QStringLiteral("status")}));
        return m.hasMatch() ? m.captured(1).toInt() * 60 + m.captured(2).toInt() : -1;
    }

    // Starts the program and waits for the Default skin's window.
    void StartPelorin() {
        pelorin = std::make_unique<QProcess>();
        pelorin->setProcessEnvironment(env);
        pelorin->start(Program, {});
        ASSERT_TRUE(WaitFor([&] {
            windowId = RunProgram(QStringLiteral("xdotool"),
                                  {QStringLiteral("search"), QStringLiteral("--onlyvisible"),
                                   QStringLiteral("--name"), QStringLiteral("^Default$")})
                           .section(u'\n', 0, 0)
                           .trimmed();
            return !windowId.isEmpty() || pelorin->state() == QProcess::NotRunning;
        })) << "no Default window";
        ASSERT_FALSE(windowId.isEmpty()) << pelorin->readAllStandardError().constData();
        // The first paints and the first refresh.
        QTest::qWait(1000);
    }

    QImage Screenshot() {
        QByteArray png;
        int code = -1;
        RunProgram(QStringLiteral("import"),
                   {QStringLiteral("-window"), windowId, QStringLiteral("png:-")}, &code, &png);
        QImage image;
        image.loadFromData(png, "PNG");
        return image.convertToFormat(QImage::Format_RGB32);
    }

    // Where a place of the window is on the screen.
    QPoint OnScreen(QPoint place) {
        const QString geometry =
            RunProgram(QStringLiteral("xdotool"), {QStringLiteral("getwindowgeometry"), windowId});
        const QRegularExpression re(QStringLiteral("Position: (-?\\d+),(-?\\d+)"));
        const QRegularExpressionMatch m = re.match(geometry);
        return QPoint(m.captured(1).toInt(), m.captured(2).toInt()) + place;
    }

    // Moves the real pointer to a place of the screen and lets the windows see it.
    static bool MoveTo(QPoint screen) {
        const bool moved = Xdotool({QStringLiteral("mousemove"), QString::number(screen.x()),
                                    QString::number(screen.y())});
        QTest::qWait(100);
        return moved;
    }

    // Clicks at a place of the window with the real pointer.
    bool ClickAt(QPoint place) {
        return MoveTo(OnScreen(place)) && Xdotool({QStringLiteral("click"), QStringLiteral("1")});
    }

    // Plays track 1 or 2 and waits until the window has had time to follow.
    void PlayTrack(int position) {
        Mpc({QStringLiteral("play"), QString::number(position)});
        QTest::qWait(1200);
    }

    QImage Cover(const TrackSpec& track) {
        const QList<QByteArray> pictures =
            TagFile::Pictures(daemon.MusicDirectory() + u'/' + track.uri);
        QImage image;
        if (!pictures.isEmpty())
            image.loadFromData(pictures.first());
        return image.convertToFormat(QImage::Format_RGB32);
    }

    QTemporaryDir dir;
    PlayerDaemonFixture daemon;
    TrackSpec first;
    TrackSpec second;
    QString home;
    QProcessEnvironment env;
    std::unique_ptr<QProcess> pelorin;
    std::unique_ptr<QProcess> dragSource;
    std::unique_ptr<QProcess> trayer;
    QString windowId;
};

TEST_F(LiveSkin, ATrackChangeUpdatesTheLabelsTheStarsAndTheArtwork) {
    Mpc({QStringLiteral("play"), QStringLiteral("1")});
    StartPelorin();
    const QImage one = Screenshot();
    ASSERT_FALSE(one.isNull());
    PlayTrack(2);
    const QImage two = Screenshot();
    ASSERT_EQ(one.size(), QSize(320, 100));
    ASSERT_EQ(two.size(), QSize(320, 100));

    EXPECT_GT(Differing(one, two, TitleRect), 20) << "the title label did not change";
    EXPECT_GT(Differing(one, two, StarsRect), 20) << "the stars did not change";
    EXPECT_GT(Differing(one, two, ArtworkRect), 500) << "the artwork did not change";

    // Each artwork is its own track's cover.
    const QColor firstCover = Mean(Cover(first), Cover(first).rect());
    const QColor secondCover = Mean(Cover(second), Cover(second).rect());
    ASSERT_GT(Distance(firstCover, secondCover), 60) << "the two covers look alike";
    EXPECT_LT(Distance(Mean(one, ArtworkRect), firstCover), 45);
    EXPECT_LT(Distance(Mean(two, ArtworkRect), secondCover), 45);
    one.save(dir.path() + QStringLiteral("/one.png"));
}

TEST_F(LiveSkin, TheProgressBarGrowsWhilePlayingAndAPressOnItSeeks) {
    Mpc({QStringLiteral("play"), QStringLiteral("1")});
    Mpc({QStringLiteral("pause")});
    Mpc({QStringLiteral("seek"), QStringLiteral("0")});
    StartPelorin();
    const QImage empty = Screenshot();
    Mpc({QStringLiteral("play")});
    // The first progress ticks after the play event draw the bar; on a busy machine that can
    // take a few of them.
    int early = 0;
    for (int waited = 0; waited < 6000 && early == 0; waited += 250) {
        QTest::qWait(250);
        early = BarExtent(Screenshot(), empty);
    }
    QTest::qWait(2000);
    const int later = BarExtent(Screenshot(), empty);
    EXPECT_GT(early, 0);
    EXPECT_GT(later, early) << "the bar did not grow";

    // The bar is only as wide as the part played, so the press lands inside it.
    Mpc({QStringLiteral("pause")});
    Mpc({QStringLiteral("seek"), QStringLiteral("5")});
    QTest::qWait(800);
    ASSERT_TRUE(ClickAt(BarRect.topLeft() + QPoint(35, 1)));
    // 35 of 208 pixels of a 6 s track: 1 s.
    EXPECT_TRUE(WaitFor([&] { return Elapsed() == 1; }, 5000)) << Elapsed();
}

TEST_F(LiveSkin, ARealClickOnThePlayPauseButtonTogglesThePlayer) {
    Mpc({QStringLiteral("play"), QStringLiteral("1")});
    StartPelorin();
    ASSERT_EQ(State(), QStringLiteral("playing"));
    ASSERT_TRUE(ClickAt(PlayPauseCentre));
    EXPECT_TRUE(WaitFor([&] { return State() == QStringLiteral("paused"); }, 5000));
    ASSERT_TRUE(ClickAt(PlayPauseCentre));
    EXPECT_TRUE(WaitFor([&] { return State() == QStringLiteral("playing"); }, 5000));
}

TEST_F(LiveSkin, TheDefaultSkinsKeyboardShortcutsPlayPauseAndSkip) {
    Mpc({QStringLiteral("play"), QStringLiteral("1")});
    Mpc({QStringLiteral("pause")});
    StartPelorin();
    ASSERT_EQ(State(), QStringLiteral("paused"));
    ASSERT_TRUE(Xdotool({QStringLiteral("key"), QStringLiteral("ctrl+alt+p")}));
    EXPECT_TRUE(WaitFor([&] { return State() == QStringLiteral("playing"); }, 5000));
    ASSERT_TRUE(Xdotool({QStringLiteral("key"), QStringLiteral("ctrl+alt+p")}));
    EXPECT_TRUE(WaitFor([&] { return State() == QStringLiteral("paused"); }, 5000));
    ASSERT_TRUE(Xdotool({QStringLiteral("key"), QStringLiteral("ctrl+alt+Next")}));
    EXPECT_TRUE(
        WaitFor([&] { return Mpc({QStringLiteral("current")}).contains(second.title); }, 5000));
}

// The visible windows named exactly `name`.
QStringList VisibleWindows(const QString& name) {
    return RunProgram(QStringLiteral("xdotool"),
                      {QStringLiteral("search"), QStringLiteral("--onlyvisible"),
                       QStringLiteral("--name"), u'^' + name + u'$'})
        .split(u'\n', Qt::SkipEmptyParts);
}

// The middle of Pelorin's icon in the tray, on the screen; null when there is none. The icon is
// a small window of Pelorin's inside the tray's own (xdotool does not find such windows by
// name, so the window tree is read).
QPoint TrayIconCentre() {
    const QString tree =
        RunProgram(QStringLiteral("xwininfo"), {QStringLiteral("-root"), QStringLiteral("-tree")});
    const QRegularExpression re(QStringLiteral(
        "\"Pelorin\": \\(\"pelorin\" "
        "\"Pelorin\"\\)\\s+(\\d+)x(\\d+)\\+-?\\d+\\+-?\\d+\\s+\\+(-?\\d+)\\+(-?\\d+)"));
    for (auto it = re.globalMatch(tree); it.hasNext();) {
        const QRegularExpressionMatch m = it.next();
        const int width = m.captured(1).toInt();
        const int height = m.captured(2).toInt();
        if (width <= 64 && height <= 64)
            return QPoint(m.captured(3).toInt() + width / 2, m.captured(4).toInt() + height / 2);
    }
    return QPoint();
}

bool RightClickAt(QPoint screen) {
    return Xdotool({QStringLiteral("mousemove"), QString::number(screen.x()),
                    QString::number(screen.y())}) &&
           Xdotool({QStringLiteral("click"), QStringLiteral("3")});
}

TEST_F(LiveSkin, TheTrayIconOpensTheMenuLoadsASkinAndQuitRemovesIt) {
    trayer = std::make_unique<QProcess>();
    trayer->start(QStringLiteral("trayer"),
                  {QStringLiteral("--edge"), QStringLiteral("top"), QStringLiteral("--align"),
                   QStringLiteral("right"), QStringLiteral("--widthtype"),
                   QStringLiteral("request"), QStringLiteral("--height"), QStringLiteral("24")});
    ASSERT_TRUE(trayer->waitForStarted(5000));
    ASSERT_TRUE(WaitFor([] {
        return !RunProgram(QStringLiteral("xdotool"),
                           {QStringLiteral("search"), QStringLiteral("--onlyvisible"),
                            QStringLiteral("--class"), QStringLiteral("trayer")})
                    .trimmed()
                    .isEmpty();
    })) << "no tray";
    Mpc({QStringLiteral("play"), QStringLiteral("1")});
    StartPelorin();

    QPoint icon;
    ASSERT_TRUE(WaitFor([&] {
        icon = TrayIconCentre();
        return !icon.isNull();
    })) << "the tray icon did not appear";

    // Right click: the menu; Help Documents, Reload, Load Skin -> the third skin, "Mini".
    ASSERT_TRUE(RightClickAt(icon));
    QTest::qWait(500);
    ASSERT_TRUE(Xdotool({QStringLiteral("key"), QStringLiteral("--delay"), QStringLiteral("150"),
                         QStringLiteral("Down"), QStringLiteral("Down"), QStringLiteral("Down"),
                         QStringLiteral("Right"), QStringLiteral("Down"), QStringLiteral("Down"),
                         QStringLiteral("Return")}));
    EXPECT_TRUE(WaitFor([] { return !VisibleWindows(QStringLiteral("Mini")).isEmpty(); }))
        << "Load Skin did not open Mini";
    EXPECT_TRUE(WaitFor([] { return VisibleWindows(QStringLiteral("Default")).isEmpty(); }))
        << "the switch closes the other skin";
    EXPECT_EQ(pelorin->state(), QProcess::Running);

    // The switch reloaded the menus, and with them the icon.
    ASSERT_TRUE(WaitFor([&] {
        icon = TrayIconCentre();
        return !icon.isNull();
    }));
    QTest::qWait(300);
    ASSERT_TRUE(RightClickAt(TrayIconCentre()));
    QTest::qWait(500);
    // Up from the top wraps to the last entry, "Quit".
    ASSERT_TRUE(Xdotool({QStringLiteral("key"), QStringLiteral("--delay"), QStringLiteral("150"),
                         QStringLiteral("Up"), QStringLiteral("Return")}));
    EXPECT_TRUE(pelorin->waitForFinished(10000)) << "Quit ends the program";
    EXPECT_TRUE(WaitFor([] { return TrayIconCentre().isNull(); })) << "and the icon goes with it";
}

TEST_F(LiveSkin, TheSkinWindowsMenuOpensBothEditorsAndTheirSaveReopensTheSkin) {
    Mpc({QStringLiteral("play"), QStringLiteral("1")});
    StartPelorin();
    const QString skinFile = home + QStringLiteral("/Skins/Default/skin.ini");
    const auto reopened = [&](const QString& before) {
        return WaitFor([&] {
            const QStringList windows = VisibleWindows(QStringLiteral("Default"));
            return windows.size() == 1 && windows.first() != before;
        });
    };

    // Help Documents, Reload, Load Skin, Move Skin, Manage Keyboard Shortcuts.
    ASSERT_TRUE(RightClickAt(OnScreen(QPoint(300, 92))));
    QTest::qWait(500);
    ASSERT_TRUE(
        Xdotool({QStringLiteral("key"), QStringLiteral("--delay"), QStringLiteral("150"),
                 QStringLiteral("Down"), QStringLiteral("Down"), QStringLiteral("Down"),
                 QStringLiteral("Down"), QStringLiteral("Down"), QStringLiteral("Return")}));
    ASSERT_TRUE(WaitFor([] {
        return !VisibleWindows(QStringLiteral("Manage Keyboard Shortcuts")).isEmpty();
    })) << "the keyboard manager did not open";
    QString before = windowId;
    const QString manager = VisibleWindows(QStringLiteral("Manage Keyboard Shortcuts")).first();
    ASSERT_TRUE(Xdotool({QStringLiteral("windowactivate"), QStringLiteral("--sync"), manager}));
    ASSERT_TRUE(Xdotool({QStringLiteral("key"), QStringLiteral("Return")}));
    EXPECT_TRUE(reopened(before)) << "Save and Reload reopens the skin";
    QFile file(skinFile);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_TRUE(file.readAll().contains("'Keyboard Shortcuts below added by Keyboard Manager"));
    file.close();

    // ... Manage Keyboard Shortcuts, Skin Configuration.
    windowId = VisibleWindows(QStringLiteral("Default")).first();
    before = windowId;
    QTest::qWait(500);
    ASSERT_TRUE(RightClickAt(OnScreen(QPoint(300, 92))));
    QTest::qWait(500);
    ASSERT_TRUE(Xdotool({QStringLiteral("key"), QStringLiteral("--delay"), QStringLiteral("150"),
                         QStringLiteral("Down"), QStringLiteral("Down"), QStringLiteral("Down"),
                         QStringLiteral("Down"), QStringLiteral("Down"), QStringLiteral("Down"),
                         QStringLiteral("Return")}));
    ASSERT_TRUE(WaitFor([] {
        return !VisibleWindows(QStringLiteral("Skin Configuration Editor")).isEmpty();
    })) << "the skin editor did not open";
    const QString editor = VisibleWindows(QStringLiteral("Skin Configuration Editor")).first();
    ASSERT_TRUE(Xdotool({QStringLiteral("windowactivate"), QStringLiteral("--sync"), editor}));
    ASSERT_TRUE(Xdotool({QStringLiteral("key"), QStringLiteral("Return")}));
    EXPECT_TRUE(reopened(before)) << "Save and Reload Skin reopens the skin";
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_FALSE(file.readAll().contains("// Default:")) << "the editor keeps no comment lines";
    EXPECT_EQ(pelorin->state(), QProcess::Running);
}

TEST_F(LiveSkin, TheLyricsSkinFollowsTheTrackRestartsAfterABackwardSeekAndSaysWhenStopped) {
    // The first track's sync file: a line a second, after the default text.
    const QString folder = home + QStringLiteral("/Lyrics/") + first.artist;
    ASSERT_TRUE(QDir().mkpath(folder));
    QFile sync(folder + u'/' + first.title + QStringLiteral(".lyr"));
    ASSERT_TRUE(sync.open(QIODevice::WriteOnly));
    sync.write("[CantomSyncFile]1\r\n[Timing] Normal\r\n[Creator]test\r\n[DefaultLyrics]~ start "
               "~\r\n[TimeOffset]0\r\n[Lyrics]\r\n[1]line one\r\n[2]line two\r\n"
               "[3]line three\r\n[4]line four\r\n[EndLyrics]\r\n");
    sync.close();
    Mpc({QStringLiteral("play"), QStringLiteral("1")});
    env.insert(QStringLiteral("QT_LOGGING_RULES"), QStringLiteral("pelorin.lyrics.debug=true"));
    pelorin = std::make_unique<QProcess>();
    pelorin->setProcessEnvironment(env);
    pelorin->start(Program, {home + QStringLiteral("/Skins/Lyrics/|300|300")});
    ASSERT_TRUE(WaitFor([&] {
        const QStringList windows = VisibleWindows(QStringLiteral("Lyrics"));
        windowId = windows.isEmpty() ? QString() : windows.first();
        return !windowId.isEmpty();
    })) << "no Lyrics window";
    QTest::qWait(500);
    // The lyrics start with the window's first activation: the user's first click.
    ASSERT_TRUE(MoveTo(OnScreen(QPoint(160, 114))));
    ASSERT_TRUE(Xdotool({QStringLiteral("click"), QStringLiteral("1")}));

    QString said;
    const auto shows = [&](const char* text) {
        return WaitFor(
            [&] {
                said += QString::fromUtf8(pelorin->readAllStandardError());
                return said.contains(
                    QStringLiteral("lyrics: shows \"%1\"").arg(QLatin1String(text)));
            },
            8000);
    };
    EXPECT_TRUE(shows("line two")) << said.toStdString();
    EXPECT_TRUE(shows("line three")) << said.toStdString();

    // Back to the start: the default text, then the first line again.
    said.clear();
    Mpc({QStringLiteral("seek"), QStringLiteral("0")});
    EXPECT_TRUE(shows("~ start ~")) << said.toStdString();
    EXPECT_TRUE(shows("line one")) << said.toStdString();

    said.clear();
    Mpc({QStringLiteral("stop")});
    EXPECT_TRUE(shows("No Song Playing!")) << said.toStdString();
    EXPECT_EQ(pelorin->state(), QProcess::Running);
}

TEST_F(LiveSkin, AFileDroppedOnTheArtworkBecomesTheCurrentTracksCover) {
    Mpc({QStringLiteral("play"), QStringLiteral("1")});
    StartPelorin();

    QImage picture(48, 48, QImage::Format_RGB32);
    picture.fill(QColor(250, 0, 250));
    const QString file = dir.path() + QStringLiteral("/dropped cover.png");
    ASSERT_TRUE(picture.save(file));

    dragSource = std::make_unique<QProcess>();
    dragSource->setProcessEnvironment(env);
    dragSource->start(DragSourceProgram, {file, QStringLiteral("300"), QStringLiteral("300")});
    ASSERT_TRUE(WaitFor([&] { return dragSource->canReadLine(); }));
    ASSERT_EQ(dragSource->readLine().trimmed(), QByteArray("ready"));
    QString sourceId;
    ASSERT_TRUE(WaitFor([&] {
        sourceId = RunProgram(QStringLiteral("xdotool"),
                              {QStringLiteral("search"), QStringLiteral("--onlyvisible"),
                               QStringLiteral("--name"), QStringLiteral("^Pelorin drag source$")})
                       .section(u'\n', 0, 0)
                       .trimmed();
        return !sourceId.isEmpty();
    }));
    QTest::qWait(500);

    const QPoint start(360, 340);
    const QPoint target = OnScreen(ArtworkRect.center());
    ASSERT_TRUE(MoveTo(start));
    ASSERT_TRUE(Xdotool({QStringLiteral("mousedown"), QStringLiteral("1")}));
    QTest::qWait(300);
    // Over the artwork in steps, as a hand would move, so both sides see the drag travel.
    for (int step = 1; step <= 12; ++step)
        ASSERT_TRUE(MoveTo(start + (target - start) * step / 12));
    ASSERT_TRUE(MoveTo(target + QPoint(1, 1)));
    QTest::qWait(300);
    ASSERT_TRUE(Xdotool({QStringLiteral("mouseup"), QStringLiteral("1")}));

    EXPECT_TRUE(WaitFor([&] { return dragSource->canReadLine(); }, 5000));
    const QString answer = QString::fromUtf8(dragSource->readAll());
    EXPECT_TRUE(answer.contains(QStringLiteral("drop taken"))) << answer.toStdString();

    QByteArray dropped;
    {
        QFile in(file);
        ASSERT_TRUE(in.open(QIODevice::ReadOnly));
        dropped = in.readAll();
    }
    EXPECT_TRUE(WaitFor(
        [&] {
            const QList<QByteArray> pictures =
                TagFile::Pictures(daemon.MusicDirectory() + u'/' + first.uri);
            return !pictures.isEmpty() && pictures.first() == dropped;
        },
        5000))
        << "the track's front cover is not the dropped picture";
    // The player reads the new cover back from the file.
    QByteArray served;
    int code = -1;
    RunProgram(
        QStringLiteral("mpc"),
        {QStringLiteral("-h"), daemon.SocketPath(), QStringLiteral("readpicture"), first.uri},
        &code, &served);
    EXPECT_EQ(served, dropped);
}

} // namespace
