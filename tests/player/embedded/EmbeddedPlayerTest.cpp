// Pelorin's own player daemon: its configuration is written once and left to the user, and it
// really starts, answers on its socket and stops, leaving no process behind.
#include "player/embedded/EmbeddedPlayer.h"

#include "PlayerDaemonFixture.h"
#include "player/embedded/LocalProbe.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QThread>
#include <csignal>
#include <gtest/gtest.h>
#include <sys/stat.h>

inline void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toStdString() << '"';
}

namespace Pelorin {
namespace {

const QString kNullOutput = QStringLiteral(
    "audio_output {\n    type \"null\"\n    name \"null\"\n    mixer_type \"software\"\n}\n");

QString ReadText(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

// Runs mpc against a socket; the exit code, or -1 when it did not finish.
int RunMpc(const QString& socket, const QStringList& arguments, QString* output = nullptr) {
    QProcess mpc;
    mpc.start(QStringLiteral("mpc"), QStringList{QStringLiteral("-h"), socket} + arguments);
    if (!mpc.waitForFinished(30000)) {
        mpc.kill();
        mpc.waitForFinished();
        return -1;
    }
    if (output != nullptr) {
        *output = QString::fromUtf8(mpc.readAllStandardOutput()).trimmed();
    }
    return mpc.exitCode();
}

// Every test gets its own XDG folders, so the player's files land in a temporary tree.
class EmbeddedPlayerTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(m_root.isValid());
        for (const char* name :
             {"HOME", "XDG_CONFIG_HOME", "XDG_STATE_HOME", "XDG_RUNTIME_DIR", "XDG_DATA_HOME"}) {
            m_saved.append({name, qgetenv(name), qEnvironmentVariableIsSet(name)});
        }
        const QString root = m_root.path();
        for (const QString& folder :
             {QStringLiteral("/home"), QStringLiteral("/config"), QStringLiteral("/state"),
              QStringLiteral("/run"), QStringLiteral("/data"), QStringLiteral("/music")}) {
            ASSERT_TRUE(QDir().mkpath(root + folder));
        }
        ::chmod(QFile::encodeName(root + QStringLiteral("/run")).constData(), 0700);
        qputenv("HOME", QFile::encodeName(root + QStringLiteral("/home")));
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(root + QStringLiteral("/config")));
        qputenv("XDG_STATE_HOME", QFile::encodeName(root + QStringLiteral("/state")));
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(root + QStringLiteral("/run")));
        qputenv("XDG_DATA_HOME", QFile::encodeName(root + QStringLiteral("/data")));
    }

    void TearDown() override {
        // Whatever the test did, no daemon outlives it.
        const qint64 pid = ReadText(EmbeddedPlayer().PidFilePath()).trimmed().toLongLong();
        if (ProcessIsAlive(pid) && ProcessShortName(pid) == u"mpd") {
            ::kill(static_cast<pid_t>(pid), SIGKILL);
            for (int i = 0; i < 100 && ProcessIsAlive(pid); ++i) {
                QThread::msleep(20);
            }
        }
        for (const Saved& saved : m_saved) {
            if (saved.wasSet) {
                qputenv(saved.name, saved.value);
            } else {
                qunsetenv(saved.name);
            }
        }
    }

    QString Root() const { return m_root.path(); }
    QString Music() const { return Root() + QStringLiteral("/music"); }

    EmbeddedPlayer::Options TestOptions() const {
        EmbeddedPlayer::Options options;
        options.musicDirectory = Music();
        options.extraConfig = kNullOutput;
        // Sanitizer builds on a busy machine start slowly; the default is for users.
        options.startTimeoutMs = 10000;
        return options;
    }

private:
    struct Saved {
        const char* name;
        QByteArray value;
        bool wasSet;
    };
    QTemporaryDir m_root{QDir::tempPath() + QStringLiteral("/pelorin-embedded-XXXXXX")};
    QList<Saved> m_saved;
};

TEST_F(EmbeddedPlayerTest, FilesLiveInThePelorinFoldersOfTheXdgHomes) {
    const EmbeddedPlayer player;
    EXPECT_EQ(player.ConfigPath(), Root() + QStringLiteral("/config/pelorin/mpd.conf"));
    EXPECT_EQ(player.StateDirectory(), Root() + QStringLiteral("/state/pelorin/mpd"));
    EXPECT_EQ(player.SocketPath(), Root() + QStringLiteral("/run/pelorin/mpd.socket"));
    EXPECT_EQ(player.PidFilePath(), Root() + QStringLiteral("/state/pelorin/mpd/pid"));
    EXPECT_EQ(player.LogFilePath(), Root() + QStringLiteral("/state/pelorin/mpd/log"));
}

TEST_F(EmbeddedPlayerTest, ConfigIsWrittenOnFirstUseWithThePrivatePaths) {
    const EmbeddedPlayer player(TestOptions());
    EXPECT_FALSE(QFile::exists(player.ConfigPath()));
    ASSERT_EQ(player.EnsureConfig(), QString());
    const QString config = ReadText(player.ConfigPath());
    const QString state = Root() + QStringLiteral("/state/pelorin/mpd");
    for (const QString& line :
         {QStringLiteral("music_directory \"%1\"").arg(Music()),
          QStringLiteral("playlist_directory \"%1/playlists\"").arg(state),
          QStringLiteral("db_file \"%1/database\"").arg(state),
          QStringLiteral("state_file \"%1/state\"").arg(state),
          QStringLiteral("sticker_file \"%1/sticker.sql\"").arg(state),
          QStringLiteral("pid_file \"%1/pid\"").arg(state),
          QStringLiteral("log_file \"%1/log\"").arg(state),
          QStringLiteral("bind_to_address \"%1/run/pelorin/mpd.socket\"").arg(Root()),
          QStringLiteral("metadata_to_use \"+comment\""), QStringLiteral("type \"null\"")}) {
        EXPECT_TRUE(config.contains(line + u'\n')) << line.toStdString();
    }
}

TEST_F(EmbeddedPlayerTest, NewConfigLeavesTheAudioOutputToThePlayer) {
    const EmbeddedPlayer player;
    ASSERT_EQ(player.EnsureConfig(), QString());
    const QString config = ReadText(player.ConfigPath());
    const QRegularExpression outputBlock(QStringLiteral("^\\s*audio_output"),
                                         QRegularExpression::MultilineOption);
    EXPECT_FALSE(config.contains(outputBlock)) << config.toStdString();
    EXPECT_TRUE(
        config.contains(QStringLiteral("music_directory \"%1\"\n")
                            .arg(QStandardPaths::writableLocation(QStandardPaths::MusicLocation))));
}

TEST_F(EmbeddedPlayerTest, EditedConfigIsNeverOverwritten) {
    const EmbeddedPlayer player(TestOptions());
    ASSERT_EQ(player.EnsureConfig(), QString());
    QFile file(player.ConfigPath());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Append));
    file.write("# my own note\nmusic_directory \"/somewhere/else\"\n");
    file.close();
    const QString edited = ReadText(player.ConfigPath());

    EmbeddedPlayer::Options other;
    other.musicDirectory = Root() + QStringLiteral("/other");
    ASSERT_EQ(EmbeddedPlayer(other).EnsureConfig(), QString());
    EXPECT_EQ(ReadText(player.ConfigPath()), edited);
}

TEST_F(EmbeddedPlayerTest, TheNewConfigIsLinkedIntoPlaceWholeAndTurnsZeroconfOff) {
    const EmbeddedPlayer player(TestOptions());
    ASSERT_EQ(player.EnsureConfig(), QString());
    const QString config = ReadText(player.ConfigPath());
    EXPECT_TRUE(config.contains(QStringLiteral("zeroconf_enabled \"no\"")));
    EXPECT_TRUE(config.endsWith(u'\n'));
    const QStringList left =
        QFileInfo(player.ConfigPath())
            .dir()
            .entryList({QStringLiteral(".mpd.conf.*")}, QDir::Files | QDir::Hidden);
    EXPECT_TRUE(left.isEmpty()) << left.join(u' ').toStdString();
    EXPECT_EQ(player.NetworkExposure(), QString());
}

TEST_F(EmbeddedPlayerTest, AConfigThatListensOnTheNetworkIsNotStarted) {
    const EmbeddedPlayer player(TestOptions());
    ASSERT_TRUE(QDir().mkpath(QFileInfo(player.ConfigPath()).absolutePath()));
    QFile file(player.ConfigPath());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("music_directory \"" + QFile::encodeName(Music()) + "\"\nbind_to_address \"any\"\n");
    file.write(kNullOutput.toUtf8());
    file.close();
    const QString error = player.Start();
    EXPECT_TRUE(error.contains(QStringLiteral("listen on the network"))) << error.toStdString();
    EXPECT_FALSE(player.IsRunning());
}

TEST_F(EmbeddedPlayerTest, AnEmptyConfigIsNotStartedForItWouldListenEverywhere) {
    const EmbeddedPlayer player(TestOptions());
    ASSERT_TRUE(QDir().mkpath(QFileInfo(player.ConfigPath()).absolutePath()));
    QFile file(player.ConfigPath());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();
    const QString error = player.Start();
    EXPECT_TRUE(error.contains(QStringLiteral("names no bind_to_address"))) << error.toStdString();
    EXPECT_FALSE(player.IsRunning());
}

TEST_F(EmbeddedPlayerTest, AnEmptyMusicFolderGetsANoticeThatSaysWhereAndHowToChangeIt) {
    const EmbeddedPlayer player(TestOptions());
    ASSERT_EQ(player.EnsureConfig(), QString());
    const QString notice = player.EmptyMusicFolderNotice();
    EXPECT_TRUE(notice.contains(Music())) << notice.toStdString();
    EXPECT_TRUE(notice.contains(player.ConfigPath()));
    EXPECT_TRUE(notice.contains(QStringLiteral("MPD_HOST")));
    ASSERT_TRUE(QDir().mkpath(Music() + QStringLiteral("/Some Artist")));
    QFile song(Music() + QStringLiteral("/Some Artist/song.ogg"));
    ASSERT_TRUE(song.open(QIODevice::WriteOnly));
    song.close();
    EXPECT_EQ(player.EmptyMusicFolderNotice(), QString());
}

TEST_F(EmbeddedPlayerTest, AMissingMusicFolderGetsTheNoticeToo) {
    EmbeddedPlayer::Options options = TestOptions();
    options.musicDirectory = Root() + QStringLiteral("/no-such-folder");
    const EmbeddedPlayer player(options);
    ASSERT_EQ(player.EnsureConfig(), QString());
    EXPECT_TRUE(player.EmptyMusicFolderNotice().contains(QStringLiteral("/no-such-folder")));
}

TEST_F(EmbeddedPlayerTest, PathsFollowAnEditedConfig) {
    const EmbeddedPlayer player(TestOptions());
    QDir().mkpath(QFileInfo(player.ConfigPath()).absolutePath());
    QFile file(player.ConfigPath());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("audio_output {\n  name \"pid_file\"\n}\n"
               "pid_file \"/elsewhere/daemon.pid\"\nbind_to_address \"~/player.socket\"\n");
    file.close();
    EXPECT_EQ(player.PidFilePath(), QStringLiteral("/elsewhere/daemon.pid"));
    EXPECT_EQ(player.SocketPath(), Root() + QStringLiteral("/home/player.socket"));
}

TEST_F(EmbeddedPlayerTest, StartRunsADaemonThatAnswersAndStopEndsIt) {
    ASSERT_TRUE(PlayerDaemonFixture::CopyFolder(PlayerDaemonFixture::TestLibraryPath() +
                                                    QStringLiteral("/Velvet Comet"),
                                                Music() + QStringLiteral("/Velvet Comet")));
    const EmbeddedPlayer player(TestOptions());
    EXPECT_FALSE(player.IsRunning());
    ASSERT_EQ(player.Start(), QString());
    EXPECT_TRUE(player.IsRunning());
    const qint64 pid = player.ProcessId();
    EXPECT_GT(pid, 0);
    EXPECT_EQ(RunMpc(player.SocketPath(), {QStringLiteral("status")}), 0);
    ASSERT_EQ(RunMpc(player.SocketPath(), {QStringLiteral("update"), QStringLiteral("--wait")}), 0);
    QString listed;
    EXPECT_EQ(RunMpc(player.SocketPath(), {QStringLiteral("listall")}, &listed), 0);
    EXPECT_EQ(listed.split(u'\n').size(), 2) << listed.toStdString();

    struct stat state {};
    ASSERT_EQ(::stat(QFile::encodeName(player.StateDirectory()).constData(), &state), 0);
    EXPECT_EQ(state.st_mode & 0777, 0700u) << "the player's state is the user's alone";

    EXPECT_EQ(player.Stop(), QString());
    EXPECT_FALSE(player.IsRunning());
    EXPECT_FALSE(ProcessIsAlive(pid));
    EXPECT_FALSE(UnixSocketAnswers(player.SocketPath()));
}

TEST_F(EmbeddedPlayerTest, DaemonOutlivesThePlayerObjectThatStartedIt) {
    qint64 pid = 0;
    {
        const EmbeddedPlayer player(TestOptions());
        ASSERT_EQ(player.Start(), QString());
        pid = player.ProcessId();
    }
    EXPECT_TRUE(ProcessIsAlive(pid));
    const EmbeddedPlayer later;
    EXPECT_TRUE(later.IsRunning());
    EXPECT_EQ(later.ProcessId(), pid);
    EXPECT_EQ(later.Stop(), QString());
    EXPECT_FALSE(ProcessIsAlive(pid));
}

TEST_F(EmbeddedPlayerTest, StartingARunningPlayerKeepsTheSameProcess) {
    const EmbeddedPlayer player(TestOptions());
    ASSERT_EQ(player.Start(), QString());
    const qint64 pid = player.ProcessId();
    EXPECT_EQ(player.Start(), QString());
    EXPECT_EQ(player.ProcessId(), pid);
    EXPECT_EQ(player.Stop(), QString());
}

TEST_F(EmbeddedPlayerTest, StopWhenNothingRunsIsQuiet) {
    const EmbeddedPlayer player(TestOptions());
    EXPECT_EQ(player.Stop(), QString());
    EXPECT_FALSE(player.IsRunning());
}

TEST_F(EmbeddedPlayerTest, StalePidFileOfAnotherProcessIsNotThePlayer) {
    const EmbeddedPlayer player(TestOptions());
    ASSERT_EQ(player.EnsureConfig(), QString());
    QDir().mkpath(player.StateDirectory());
    QFile pidFile(player.PidFilePath());
    ASSERT_TRUE(pidFile.open(QIODevice::WriteOnly));
    pidFile.write(QByteArray::number(QCoreApplication::applicationPid()) + '\n');
    pidFile.close();
    EXPECT_EQ(player.ProcessId(), 0);
    EXPECT_FALSE(player.IsRunning());
    // Stopping must not signal the unrelated process (this test program).
    EXPECT_EQ(player.Stop(), QString());
}

TEST_F(EmbeddedPlayerTest, MissingProgramIsAClearError) {
    EmbeddedPlayer::Options options = TestOptions();
    options.program = QStringLiteral("pelorin-no-such-player");
    const QString error = EmbeddedPlayer(options).Start();
    EXPECT_TRUE(error.contains(QStringLiteral("is not installed"))) << error.toStdString();
    EXPECT_TRUE(error.contains(QStringLiteral("pelorin-no-such-player"))) << error.toStdString();
}

TEST_F(EmbeddedPlayerTest, FailingStartReportsWhatThePlayerSaid) {
    EmbeddedPlayer::Options options = TestOptions();
    options.extraConfig += QStringLiteral("no_such_setting \"1\"\n");
    const EmbeddedPlayer player(options);
    const QString error = player.Start();
    EXPECT_TRUE(error.startsWith(QStringLiteral("The player could not be started")))
        << error.toStdString();
    EXPECT_TRUE(error.contains(QStringLiteral("no_such_setting"))) << error.toStdString();
    EXPECT_FALSE(player.IsRunning());
}

} // namespace
} // namespace Pelorin
