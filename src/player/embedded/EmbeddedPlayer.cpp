#include "player/embedded/EmbeddedPlayer.h"

#include "ConfigValue.h"
#include "base/ProgramPaths.h"
#include "player/embedded/LocalProbe.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryFile>
#include <QThread>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Pelorin {

namespace {

constexpr int kPollMs = 20;
constexpr int kStopTimeoutMs = 5000;

QString Unquoted(const QString& value) {
    QString plain;
    for (qsizetype i = 0; i < value.size(); ++i) {
        if (value[i] == u'\\' && i + 1 < value.size()) {
            ++i;
        }
        plain += value[i];
    }
    return plain;
}

QString ExpandHome(const QString& path) {
    if (path == u"~" || path.startsWith(QStringLiteral("~/"))) {
        return QDir::homePath() + path.mid(1);
    }
    return path;
}

// $XDG_STATE_HOME, or ~/.local/state (Qt 6.4 has no standard location for it).
QString StateHome() {
    const QString home = qEnvironmentVariable("XDG_STATE_HOME");
    if (!home.isEmpty() && QDir::isAbsolutePath(home)) {
        return QDir::cleanPath(home);
    }
    return QDir::homePath() + QStringLiteral("/.local/state");
}

QString ReadAll(const QString& path, qint64 from = 0) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || (from > 0 && !file.seek(from))) {
        return QString();
    }
    return QString::fromUtf8(file.readAll()).trimmed();
}

} // namespace

EmbeddedPlayer::EmbeddedPlayer() : EmbeddedPlayer(Options{}) {}

EmbeddedPlayer::EmbeddedPlayer(Options options) : m_options(std::move(options)) {}

QString EmbeddedPlayer::ConfigPath() const {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/pelorin/mpd.conf");
}

QString EmbeddedPlayer::StateDirectory() const {
    return StateHome() + QStringLiteral("/pelorin/mpd");
}

QString EmbeddedPlayer::DefaultMusicDirectory() const {
    if (!m_options.musicDirectory.isEmpty()) {
        return m_options.musicDirectory;
    }
    return QStandardPaths::writableLocation(QStandardPaths::MusicLocation);
}

QStringList EmbeddedPlayer::ConfiguredValues(const QString& name) const {
    QFile file(ConfigPath());
    QStringList values;
    if (!file.open(QIODevice::ReadOnly)) {
        return values;
    }
    static const QRegularExpression setting(
        QStringLiteral("^\\s*([A-Za-z_]+)\\s+\"((?:[^\"\\\\]|\\\\.)*)\""));
    int depth = 0;
    const QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n');
    for (const QString& line : lines) {
        const QString trimmed = line.trimmed();
        if (trimmed.startsWith(u'#')) {
            continue;
        }
        if (depth == 0) {
            const QRegularExpressionMatch match = setting.match(line);
            if (match.hasMatch() && match.captured(1) == name) {
                values.append(ExpandHome(Unquoted(match.captured(2))));
            }
        }
        depth += static_cast<int>(trimmed.count(u'{')) - static_cast<int>(trimmed.count(u'}'));
    }
    return values;
}

QString EmbeddedPlayer::ConfiguredValue(const QString& name) const {
    const QStringList values = ConfiguredValues(name);
    return values.isEmpty() ? QString() : values.first();
}

QString EmbeddedPlayer::NetworkExposure() const {
    const QStringList binds = ConfiguredValues(QStringLiteral("bind_to_address"));
    if (binds.isEmpty()) {
        return QStringLiteral("%1 names no bind_to_address, so the player would listen on every "
                              "network interface without a password. Set bind_to_address to a "
                              "socket path, or set MPD_HOST to a player of your own.")
            .arg(ConfigPath());
    }
    for (const QString& bind : binds) {
        if (!QDir::isAbsolutePath(bind)) {
            return QStringLiteral("%1 lets the player listen on the network (bind_to_address "
                                  "\"%2\"). Pelorin starts its private player only on a socket "
                                  "path; for a player on the network, set MPD_HOST to it.")
                .arg(ConfigPath(), bind);
        }
    }
    return QString();
}

QString EmbeddedPlayer::MusicDirectory() const {
    const QString configured = ConfiguredValue(QStringLiteral("music_directory"));
    return configured.isEmpty() ? DefaultMusicDirectory() : configured;
}

QString EmbeddedPlayer::EmptyMusicFolderNotice() const {
    const QString folder = MusicDirectory();
    QDirIterator files(folder, QDir::Files | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
    if (files.hasNext())
        return QString();
    return QStringLiteral("Pelorin's player found no music in %1. Put your music there, or point "
                          "the player at your music folder: set music_directory in %2 and "
                          "restart Pelorin. To use a player of your own, set MPD_HOST.")
        .arg(folder.isEmpty() ? QStringLiteral("(no music folder)") : folder, ConfigPath());
}

QString EmbeddedPlayer::SocketPath() const {
    const QString configured = ConfiguredValue(QStringLiteral("bind_to_address"));
    if (QDir::isAbsolutePath(configured)) {
        return configured;
    }
    const QString folder = ProgramPaths::RuntimeFolder();
    return folder.isEmpty() ? QString() : folder + QStringLiteral("mpd.socket");
}

QString EmbeddedPlayer::PidFilePath() const {
    const QString configured = ConfiguredValue(QStringLiteral("pid_file"));
    return configured.isEmpty() ? StateDirectory() + QStringLiteral("/pid") : configured;
}

QString EmbeddedPlayer::LogFilePath() const {
    const QString configured = ConfiguredValue(QStringLiteral("log_file"));
    return configured.isEmpty() ? StateDirectory() + QStringLiteral("/log") : configured;
}

QString EmbeddedPlayer::ConfigText() const {
    const QString state = StateDirectory();
    // EnsureConfig has checked that the runtime folder is usable.
    const QString socket = ProgramPaths::RuntimeFolder() + QStringLiteral("mpd.socket");
    QString text = QStringLiteral(
        "# Pelorin's own player (the Music Player Daemon). Pelorin wrote this file once and\n"
        "# never overwrites it: edit it freely. To play your own music, point music_directory\n"
        "# at it, restart the player and update its database (for example \"mpc update\").\n"
        "# Keep bind_to_address and pid_file: Pelorin finds and stops its player through them.\n"
        "\n");
    text += QStringLiteral("music_directory %1\n").arg(QuotedConfigValue(DefaultMusicDirectory()));
    text += QStringLiteral("playlist_directory %1\n")
                .arg(QuotedConfigValue(state + QStringLiteral("/playlists")));
    text +=
        QStringLiteral("db_file %1\n").arg(QuotedConfigValue(state + QStringLiteral("/database")));
    text +=
        QStringLiteral("state_file %1\n").arg(QuotedConfigValue(state + QStringLiteral("/state")));
    text += QStringLiteral("sticker_file %1\n")
                .arg(QuotedConfigValue(state + QStringLiteral("/sticker.sql")));
    text += QStringLiteral("pid_file %1\n").arg(QuotedConfigValue(state + QStringLiteral("/pid")));
    text += QStringLiteral("log_file %1\n").arg(QuotedConfigValue(state + QStringLiteral("/log")));
    text += QStringLiteral("bind_to_address %1\n").arg(QuotedConfigValue(socket));
    text += QStringLiteral("metadata_to_use \"+comment\"\n");
    text += QStringLiteral("auto_update \"yes\"\n");
    text += QStringLiteral("restore_paused \"yes\"\n");
    text += QStringLiteral("zeroconf_enabled \"no\"\n");
    text +=
        QStringLiteral("\n# No audio_output: the player picks the system's sound output itself.\n");
    if (!m_options.extraConfig.isEmpty()) {
        text += m_options.extraConfig;
        if (!text.endsWith(u'\n')) {
            text += u'\n';
        }
    }
    return text;
}

QString EmbeddedPlayer::EnsureConfig() const {
    const QString path = ConfigPath();
    if (QFileInfo::exists(path)) {
        return QString();
    }
    if (ProgramPaths::RuntimeFolder().isEmpty()) {
        QString error;
        ProgramPaths::RuntimeFolder(&error);
        return QStringLiteral("There is no private folder for the player's socket: %1").arg(error);
    }
    if (!QDir().mkpath(QFileInfo(path).absolutePath())) {
        return QStringLiteral("Cannot create the folder %1").arg(QFileInfo(path).absolutePath());
    }
    // Written whole to a temporary file, flushed to the disk, then linked into place: a crash
    // leaves either no file or the whole file, and should another process write it at the same
    // moment, theirs stays.
    const QString folder = QFileInfo(path).absolutePath();
    QTemporaryFile file(folder + QStringLiteral("/.mpd.conf.XXXXXX"));
    if (!file.open()) {
        return QStringLiteral("Cannot write %1: %2").arg(path, file.errorString());
    }
    const QByteArray bytes = ConfigText().toUtf8();
    if (file.write(bytes) != bytes.size() || !file.flush() || ::fsync(file.handle()) != 0) {
        return QStringLiteral("Cannot write %1: %2").arg(path, file.errorString());
    }
    if (::link(QFile::encodeName(file.fileName()).constData(),
               QFile::encodeName(path).constData()) != 0) {
        return errno == EEXIST ? QString()
                               : QStringLiteral("Cannot write %1: %2")
                                     .arg(path, QString::fromLocal8Bit(std::strerror(errno)));
    }
    const int dir = ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_CLOEXEC);
    if (dir >= 0) {
        ::fsync(dir);
        ::close(dir);
    }
    return QString();
}

qint64 EmbeddedPlayer::ProcessId() const {
    const qint64 pid = ReadAll(PidFilePath()).toLongLong();
    if (!ProcessIsAlive(pid)) {
        return 0;
    }
    // A pid file left from before a reboot may name an unrelated process by now.
    const QString name = ProcessShortName(pid);
    const QString expected = QFileInfo(m_options.program).fileName().left(15);
    return name.isEmpty() || name == expected ? pid : 0;
}

bool EmbeddedPlayer::IsRunning() const {
    return ProcessId() != 0 || UnixSocketAnswers(SocketPath());
}

QString EmbeddedPlayer::StartFailure(const QString& reason, qint64 logOffset) const {
    QString message = QStringLiteral("The player could not be started: %1").arg(reason);
    const QString output = ReadAll(StateDirectory() + QStringLiteral("/start.log"));
    if (!output.isEmpty()) {
        message += u'\n' + output;
    }
    const QString log = ReadAll(LogFilePath(), logOffset);
    if (!log.isEmpty()) {
        message += u'\n' + log;
    }
    return message;
}

QString EmbeddedPlayer::Start() const {
    if (IsRunning()) {
        return QString();
    }
    QString error = EnsureConfig();
    if (error.isEmpty())
        error = NetworkExposure();
    if (!error.isEmpty()) {
        return QStringLiteral("The player could not be started: %1").arg(error);
    }
    const QString program = QDir::isAbsolutePath(m_options.program)
                                ? m_options.program
                                : QStandardPaths::findExecutable(m_options.program);
    if (program.isEmpty() || !QFileInfo(program).isExecutable()) {
        return QStringLiteral("The player program \"%1\" is not installed. Install the Debian "
                              "package \"mpd\", or set MPD_HOST to a player of your own.")
            .arg(m_options.program);
    }
    QString playlists = ConfiguredValue(QStringLiteral("playlist_directory"));
    for (const QString& folder :
         {StateDirectory(), playlists, QFileInfo(PidFilePath()).absolutePath(),
          QFileInfo(LogFilePath()).absolutePath()}) {
        if (!folder.isEmpty() && !QDir().mkpath(folder)) {
            return QStringLiteral("The player could not be started: cannot create the folder %1")
                .arg(folder);
        }
    }
    // The database, the playlists and the log are nobody else's business.
    ::chmod(QFile::encodeName(StateDirectory()).constData(), 0700);
    const qint64 logOffset = QFileInfo(LogFilePath()).size();

    // Without --no-daemon the player forks into the background, where it outlives Pelorin. The
    // first process (our child, so we collect it and no zombie is left) ends once the daemon is
    // ready, or at once with an exit code and a message on standard error when it cannot start.
    QProcess launcher;
    launcher.setProgram(program);
    launcher.setArguments({ConfigPath()});
    launcher.setStandardInputFile(QProcess::nullDevice());
    launcher.setStandardOutputFile(QProcess::nullDevice());
    launcher.setStandardErrorFile(StateDirectory() + QStringLiteral("/start.log"));
    launcher.start();
    if (!launcher.waitForStarted(m_options.startTimeoutMs)) {
        return StartFailure(launcher.errorString(), logOffset);
    }
    // The socket listens before the daemon forks and writes its pid file; Stop needs the pid
    // file, so a start is complete with both (or, for a configuration without a pid file, once
    // the launcher has ended well).
    bool launcherDone = false;
    for (int waited = 0; waited <= m_options.startTimeoutMs; waited += kPollMs) {
        if (!launcherDone && launcher.waitForFinished(kPollMs)) {
            launcherDone = true;
            if (launcher.exitStatus() != QProcess::NormalExit || launcher.exitCode() != 0) {
                return StartFailure(
                    QStringLiteral("it ended with exit code %1").arg(launcher.exitCode()),
                    logOffset);
            }
        } else if (launcherDone) {
            QThread::msleep(kPollMs);
        }
        if (UnixSocketAnswers(SocketPath()) && (launcherDone || ProcessId() != 0)) {
            // Collect the launcher, which leaves as soon as the daemon says it is ready.
            launcher.waitForFinished(m_options.startTimeoutMs);
            return QString();
        }
    }
    return StartFailure(QStringLiteral("its socket %1 did not answer within %2 ms")
                            .arg(SocketPath())
                            .arg(m_options.startTimeoutMs),
                        logOffset);
}

QString EmbeddedPlayer::Stop() const {
    const qint64 pid = ProcessId();
    if (pid == 0) {
        if (UnixSocketAnswers(SocketPath())) {
            return QStringLiteral("The player at %1 was not started by Pelorin (no pid file %2); "
                                  "stop it with its own tools.")
                .arg(SocketPath(), PidFilePath());
        }
        return QString();
    }
    ::kill(static_cast<pid_t>(pid), SIGTERM);
    for (int waited = 0; waited < kStopTimeoutMs; waited += kPollMs) {
        if (!ProcessIsAlive(pid)) {
            return QString();
        }
        QThread::msleep(kPollMs);
    }
    return QStringLiteral("The player (process %1) did not end within %2 s.")
        .arg(pid)
        .arg(kStopTimeoutMs / 1000);
}

} // namespace Pelorin
