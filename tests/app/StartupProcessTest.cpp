// The real program on the X server: started as a user or script starts it, observed through the
// X server and its files.
#include "X11Probe.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QThread>
#include <QWidget>
#include <csignal>
#include <gtest/gtest.h>
#include <sys/types.h>

namespace {

const QString Program = QStringLiteral(PELORIN_BINARY_DIR "/pelorin");

void WriteFile(const QString& path, const QByteArray& bytes) {
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(bytes);
}

QString RunCommand(const QString& program, const QStringList& args, int* exitCode = nullptr) {
    QProcess p;
    p.start(program, args);
    p.waitForFinished(10000);
    if (exitCode != nullptr)
        *exitCode = p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1;
    return QString::fromUtf8(p.readAllStandardOutput());
}

class StartupProcessTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(dir.isValid());
        home = dir.path() + QLatin1String("/program/");
        WriteFile(home + QLatin1String("Skins/Default/skin.ini"),
                  "skinname=Default\r\nwidth=120\r\nheight=40\r\nleft=30\r\ntop=40\r\n");
        WriteFile(home + QLatin1String("Deskband/Default/skin.ini"),
                  "skinname=Band\r\nwidth=60\r\nheight=20\r\n");
        QDir().mkpath(dir.path() + QLatin1String("/runtime"));
        QFile::setPermissions(dir.path() + QLatin1String("/runtime"),
                              QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("PELORIN_HOME"), home);
        env.insert(QStringLiteral("PELORIN_UNATTENDED"), QStringLiteral("1"));
        env.insert(QStringLiteral("HOME"), dir.path());
        env.insert(QStringLiteral("XDG_CONFIG_HOME"), dir.path() + QLatin1String("/config"));
        env.insert(QStringLiteral("XDG_RUNTIME_DIR"), dir.path() + QLatin1String("/runtime"));
        env.insert(QStringLiteral("XDG_STATE_HOME"), dir.path() + QLatin1String("/state"));
        env.insert(QStringLiteral("XDG_DATA_HOME"), dir.path() + QLatin1String("/data"));
        // A player of the user's own that is not there: start-up starts nothing, so no player
        // daemon outlives these tests. The test of the private player removes it.
        env.insert(QStringLiteral("MPD_HOST"), dir.path() + QLatin1String("/no-player.socket"));
        env.remove(QStringLiteral("QT_QPA_PLATFORM"));
    }

    void TearDown() override {
        if (const qint64 pid = PrivatePlayerPid(); pid > 0)
            ::kill(static_cast<pid_t>(pid), SIGKILL);
        for (QProcess* p : started) {
            if (p->state() != QProcess::NotRunning) {
                p->kill();
                p->waitForFinished(5000);
            }
            delete p;
        }
    }

    QProcess* Start(const QStringList& args) {
        auto* p = new QProcess;
        p->setProcessEnvironment(env);
        p->start(Program, args);
        started.append(p);
        return p;
    }

    int RunToEnd(const QStringList& args, QString* err = nullptr) {
        QProcess p;
        p.setProcessEnvironment(env);
        p.start(Program, args);
        if (!p.waitForFinished(15000)) {
            p.kill();
            p.waitForFinished();
            return -2;
        }
        if (err != nullptr)
            *err = QString::fromUtf8(p.readAllStandardError());
        return p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1;
    }

    // The X window id of the first window with this exact title, 0 when none appears in time.
    static QString WaitForWindow(const QString& title, int timeoutMs = 10000) {
        for (int waited = 0; waited < timeoutMs; waited += 100) {
            const QString out =
                RunCommand(QStringLiteral("xdotool"),
                           {QStringLiteral("search"), QStringLiteral("--onlyvisible"),
                            QStringLiteral("--name"), QLatin1Char('^') + title + QLatin1Char('$')});
            const QString first = out.section(QLatin1Char('\n'), 0, 0).trimmed();
            if (!first.isEmpty())
                return first;
            QThread::msleep(100);
        }
        return {};
    }

    QString RunCount() const {
        QFile f(dir.path() + QLatin1String("/config/Pelorin/Pelorin.conf"));
        if (!f.open(QIODevice::ReadOnly))
            return {};
        const QRegularExpression re(QStringLiteral("RunCount=(\\S+)"));
        return re.match(QString::fromUtf8(f.readAll())).captured(1);
    }

    // The window manager's close request, as a user's click on a window's close control sends it.
    static void RequestClose(const QString& windowId) {
        Pelorin::Testing::X11Probe probe;
        probe.RequestClose(static_cast<xcb_window_t>(windowId.toULong()));
    }

    // The process id in the private player's pid file, 0 when there is none.
    qint64 PrivatePlayerPid() const {
        QFile f(dir.path() + QLatin1String("/state/pelorin/mpd/pid"));
        if (!f.open(QIODevice::ReadOnly))
            return 0;
        return f.readAll().trimmed().toLongLong();
    }

    static bool IsAlive(qint64 pid) {
        return pid > 0 && ::kill(static_cast<pid_t>(pid), 0) == 0 && !IsZombie(pid);
    }

    static bool IsZombie(qint64 pid) {
        QFile f(QStringLiteral("/proc/%1/stat").arg(pid));
        if (!f.open(QIODevice::ReadOnly))
            return true;
        const QByteArray stat = f.readAll();
        const qsizetype close = stat.lastIndexOf(')');
        return close < 0 || stat.mid(close + 2, 1) == "Z";
    }

    QTemporaryDir dir;
    QString home;
    QProcessEnvironment env;
    QList<QProcess*> started;
};

} // namespace

TEST_F(StartupProcessTest, HelpAndVersionPrintAndExit) {
    int code = -1;
    EXPECT_TRUE(
        RunCommand(Program, {QStringLiteral("--help")}, &code).contains(QLatin1String("Usage")));
    EXPECT_EQ(code, 0);
    EXPECT_TRUE(RunCommand(Program, {QStringLiteral("--version")}, &code)
                    .startsWith(QLatin1String("Pelorin ")));
    EXPECT_EQ(code, 0);
}

TEST_F(StartupProcessTest, CheckSkinExitsZeroForAGoodSkinAndOneForAFaultySkin) {
    EXPECT_EQ(RunToEnd({QStringLiteral("--check-skin"), home + QLatin1String("Skins/Default")}), 0);
    WriteFile(home + QLatin1String("Skins/Bad/skin.ini"),
              "label=1;2;3\r\nimage=0;0;9;9;x;gone.png\r\n");
    int code = -1;
    const QString out =
        RunCommand(QStringLiteral("env"),
                   {QStringLiteral("QT_QPA_PLATFORM=offscreen"), Program,
                    QStringLiteral("--check-skin"), home + QLatin1String("Skins/Bad")},
                   &code);
    EXPECT_EQ(code, 1);
    EXPECT_TRUE(out.contains(QLatin1String("skin.ini:1:"))) << out.toStdString();
    EXPECT_TRUE(out.contains(QLatin1String("skin.ini:2:"))) << out.toStdString();
}

TEST_F(StartupProcessTest, ImportLrcWritesTheLyricsFilePrintsItsPathAndExitsZero) {
    WriteFile(dir.path() + QLatin1String("/song.lrc"), "[ar:Band]\n[ti:Song]\n[00:01.00]one\n");
    QProcess p;
    p.setProcessEnvironment(env);
    p.start(Program, {QStringLiteral("--import-lrc"), dir.path() + QLatin1String("/song.lrc")});
    ASSERT_TRUE(p.waitForFinished(15000));
    EXPECT_EQ(p.exitCode(), 0);
    const QString path = QString::fromUtf8(p.readAllStandardOutput()).trimmed();
    EXPECT_EQ(path, QDir::cleanPath(home + QLatin1String("Lyrics/Band/Song.lyr")));
    EXPECT_TRUE(QFileInfo(path).isFile());
}

TEST_F(StartupProcessTest, ImportLrcOfAFileWithoutTagsSaysSoAndExitsOne) {
    WriteFile(dir.path() + QLatin1String("/bad.lrc"), "[00:01.00]one\n");
    QString err;
    EXPECT_EQ(
        RunToEnd({QStringLiteral("--import-lrc"), dir.path() + QLatin1String("/bad.lrc")}, &err),
        1);
    EXPECT_TRUE(err.contains(QLatin1String("no [ar:] tag"))) << err.toStdString();
    EXPECT_FALSE(QDir(home + QLatin1String("Lyrics")).exists());
}

TEST_F(StartupProcessTest, StartOpensTheDefaultSkinWindowWhereItsLinesPutIt) {
    Start({});
    const QString id = WaitForWindow(QStringLiteral("Default"));
    ASSERT_FALSE(id.isEmpty());
    const QString geometry =
        RunCommand(QStringLiteral("xdotool"), {QStringLiteral("getwindowgeometry"), id});
    EXPECT_TRUE(geometry.contains(QLatin1String("Geometry: 120x40"))) << geometry.toStdString();
    EXPECT_TRUE(geometry.contains(QLatin1String("Position: 30,40"))) << geometry.toStdString();
    EXPECT_EQ(RunCount(), QStringLiteral("1"));
}

TEST_F(StartupProcessTest, SecondStartEndsSilentlyWhileTheFirstRuns) {
    QProcess* first = Start({});
    ASSERT_FALSE(WaitForWindow(QStringLiteral("Default")).isEmpty());
    QString err;
    EXPECT_EQ(RunToEnd({}, &err), 0);
    EXPECT_FALSE(err.contains(QLatin1String("Pelorin"))) << err.toStdString();
    EXPECT_EQ(RunCount(), QStringLiteral("1"));
    EXPECT_FALSE(first->waitForFinished(200)) << "the first instance ended";
}

TEST_F(StartupProcessTest, StaleLockOfADeadProcessDoesNotBlockAStart) {
    // A lock file left by a process that no longer exists.
    QProcess gone;
    gone.start(QStringLiteral("true"));
    gone.waitForFinished();
    const QByteArray pid = QByteArray::number(gone.processId() > 0 ? gone.processId() : 999999);
    const QString lockDir = dir.path() + QLatin1String("/runtime/pelorin");
    QDir().mkpath(lockDir);
    QFile::setPermissions(lockDir, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    for (const QString& name : QDir(lockDir).entryList(QDir::Files))
        QFile::remove(lockDir + QLatin1Char('/') + name);
    Start({});
    ASSERT_FALSE(WaitForWindow(QStringLiteral("Default")).isEmpty());
    // Now the live instance's lock: replace its pid with the dead one and start again.
    const QStringList locks = QDir(lockDir).entryList({QStringLiteral("*.lock")}, QDir::Files);
    ASSERT_FALSE(locks.isEmpty());
    for (QProcess* p : started) {
        p->kill();
        p->waitForFinished();
    }
    WriteFile(lockDir + QLatin1Char('/') + locks.first(), pid + "\npelorin\n\n");
    Start({});
    EXPECT_FALSE(WaitForWindow(QStringLiteral("Default")).isEmpty());
}

TEST_F(StartupProcessTest, ProgramEndsWhenItsLastSkinWindowCloses) {
    QProcess* p = Start({});
    const QString id = WaitForWindow(QStringLiteral("Default"));
    ASSERT_FALSE(id.isEmpty());
    RequestClose(id);
    ASSERT_TRUE(p->waitForFinished(10000)) << "still running";
    EXPECT_EQ(p->exitCode(), 0);
}

TEST_F(StartupProcessTest, DeskbandWindowIsPutInsideItsHostWindow) {
    QWidget host;
    host.setWindowTitle(QStringLiteral("Band host"));
    host.resize(300, 60);
    host.show();
    const QString hostId = QString::number(host.winId());
    Start({QStringLiteral("Deskband"), hostId});
    QString children;
    for (int waited = 0; waited < 10000; waited += 100) {
        QCoreApplication::processEvents();
        children = RunCommand(QStringLiteral("xwininfo"),
                              {QStringLiteral("-children"), QStringLiteral("-id"), hostId});
        if (children.contains(QLatin1String("\"Default\"")))
            break;
        QThread::msleep(100);
    }
    EXPECT_TRUE(children.contains(QLatin1String("\"Default\""))) << children.toStdString();
    EXPECT_EQ(RunCount(), QString());
}

TEST_F(StartupProcessTest,
       WithoutAPlayerOfItsOwnStartUpStartsThePrivatePlayerWhichQuitsWithTheLastWindowWhenAsked) {
    env.remove(QStringLiteral("MPD_HOST"));
    QDir().mkpath(dir.path() + QLatin1String("/Music"));
    WriteFile(dir.path() + QLatin1String("/config/Pelorin/Pelorin.conf"),
              "[Options]\nCloseiTunesOnExit=1\n");
    QProcess* p = Start({});
    const QString id = WaitForWindow(QStringLiteral("Default"));
    ASSERT_FALSE(id.isEmpty());
    const qint64 player = PrivatePlayerPid();
    ASSERT_GT(player, 0) << "no private player was started";
    EXPECT_TRUE(IsAlive(player));
    EXPECT_TRUE(QFile::exists(dir.path() + QLatin1String("/config/pelorin/mpd.conf")));

    RequestClose(id);
    ASSERT_TRUE(p->waitForFinished(10000)) << "still running";
    bool gone = false;
    for (int waited = 0; waited < 5000 && !gone; waited += 100) {
        gone = !IsAlive(player);
        QThread::msleep(100);
    }
    EXPECT_TRUE(gone) << "the private player outlived the last window";
}

TEST_F(StartupProcessTest, ThePrivatePlayerOutlivesPelorinUnlessAskedToQuit) {
    env.remove(QStringLiteral("MPD_HOST"));
    QDir().mkpath(dir.path() + QLatin1String("/Music"));
    QProcess* p = Start({});
    const QString id = WaitForWindow(QStringLiteral("Default"));
    ASSERT_FALSE(id.isEmpty());
    const qint64 player = PrivatePlayerPid();
    ASSERT_GT(player, 0);
    RequestClose(id);
    ASSERT_TRUE(p->waitForFinished(10000));
    QThread::msleep(300);
    EXPECT_TRUE(IsAlive(player));
}

TEST_F(StartupProcessTest, ThePlayerDyingClosesTheSkinAndEndsTheProgram) {
    env.remove(QStringLiteral("MPD_HOST"));
    QDir().mkpath(dir.path() + QLatin1String("/Music"));
    QProcess* p = Start({});
    ASSERT_FALSE(WaitForWindow(QStringLiteral("Default")).isEmpty());
    const qint64 player = PrivatePlayerPid();
    ASSERT_GT(player, 0);
    // Give the window its first guarded look at the player, then take the player away for good.
    QThread::msleep(500);
    ::kill(static_cast<pid_t>(player), SIGKILL);
    EXPECT_TRUE(p->waitForFinished(10000)) << "the program outlived its player";
}
