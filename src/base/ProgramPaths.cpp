#include "ProgramPaths.h"

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QSet>
#include <cerrno>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

#ifndef PELORIN_INSTALLED_DATA_DIR
#define PELORIN_INSTALLED_DATA_DIR "/usr/local/share/pelorin"
#endif

namespace Pelorin {

namespace {

// Lists, one relative path a line, every file already copied from the installed data, so a file
// the user deleted is not brought back by the next start.
const QString SeedRecordName = QStringLiteral(".pelorin-seeded");

QString WithTrailingSlash(QString folder) {
    folder = QDir::fromNativeSeparators(folder);
    if (!folder.endsWith(QLatin1Char('/')))
        folder += QLatin1Char('/');
    return folder;
}

void SetError(QString* error, const QString& text) {
    if (error)
        *error = text;
}

// Makes `path` a private folder of the current user: created with mode 0700 when missing; when it
// exists it must be a real folder (not a link) owned by the user, and loses any group or other
// access.
bool EnsurePrivateFolder(const QString& path, QString* error) {
    const QByteArray native = QFile::encodeName(path);
    if (::mkdir(native.constData(), 0700) != 0 && errno != EEXIST) {
        SetError(error, QStringLiteral("Cannot create the folder %1: %2")
                            .arg(path, QString::fromLocal8Bit(std::strerror(errno))));
        return false;
    }
    struct stat info {};
    if (::lstat(native.constData(), &info) != 0) {
        SetError(error, QStringLiteral("Cannot examine the folder %1: %2")
                            .arg(path, QString::fromLocal8Bit(std::strerror(errno))));
        return false;
    }
    if (!S_ISDIR(info.st_mode)) {
        SetError(error, QStringLiteral("%1 is not a folder").arg(path));
        return false;
    }
    if (info.st_uid != ::geteuid()) {
        SetError(error, QStringLiteral("The folder %1 belongs to another user").arg(path));
        return false;
    }
    if ((info.st_mode & 0777) != 0700 && ::chmod(native.constData(), 0700) != 0) {
        SetError(error, QStringLiteral("Cannot make the folder %1 private: %2")
                            .arg(path, QString::fromLocal8Bit(std::strerror(errno))));
        return false;
    }
    return true;
}

// $XDG_RUNTIME_DIR when it is set to an absolute path of an existing folder of this user.
QString UsableRuntimeDir() {
    const QString dir = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (dir.isEmpty() || QDir::isRelativePath(dir))
        return {};
    struct stat info {};
    if (::stat(QFile::encodeName(dir).constData(), &info) != 0 || !S_ISDIR(info.st_mode) ||
        info.st_uid != ::geteuid())
        return {};
    return QDir::cleanPath(dir);
}

QSet<QString> ReadSeedRecord(const QString& folder) {
    QSet<QString> seeded;
    QFile record(folder + SeedRecordName);
    if (record.open(QIODevice::ReadOnly)) {
        const QList<QByteArray> lines = record.readAll().split('\n');
        for (const QByteArray& line : lines) {
            if (!line.isEmpty())
                seeded.insert(QString::fromUtf8(line));
        }
    }
    return seeded;
}

bool WriteSeedRecord(const QString& folder, const QStringList& paths, QString* error) {
    QSaveFile record(folder + SeedRecordName);
    if (!record.open(QIODevice::WriteOnly)) {
        SetError(error, record.errorString());
        return false;
    }
    for (const QString& path : paths)
        record.write(path.toUtf8() + '\n');
    if (!record.commit()) {
        SetError(error, record.errorString());
        return false;
    }
    return true;
}

} // namespace

ProgramFolderSources ProgramFolderSources::FromEnvironment() {
    ProgramFolderSources sources;
    sources.PelorinHome = qEnvironmentVariable("PELORIN_HOME");
    if (QCoreApplication::instance())
        sources.ExecutableFolder = QCoreApplication::applicationDirPath();
    sources.DataHome = qEnvironmentVariable("XDG_DATA_HOME");
    if (sources.DataHome.isEmpty() || QDir::isRelativePath(sources.DataHome))
        sources.DataHome = QDir::homePath() + QStringLiteral("/.local/share");
    // A relocated installation finds its data beside its bin/ folder.
    const QString relocated = sources.ExecutableFolder + QStringLiteral("/../share/pelorin");
    if (!sources.ExecutableFolder.isEmpty() &&
        QFileInfo(relocated + QStringLiteral("/Skins")).isDir())
        sources.InstalledData = QDir::cleanPath(relocated);
    else
        sources.InstalledData = QStringLiteral(PELORIN_INSTALLED_DATA_DIR);
    return sources;
}

ProgramPaths::ProgramPaths(const QString& programFolder)
    : m_programFolder(WithTrailingSlash(programFolder)) {}

ProgramPaths ProgramPaths::Resolve(const ProgramFolderSources& sources, QString* error) {
    if (!sources.PelorinHome.isEmpty())
        return ProgramPaths(QDir(sources.PelorinHome).absolutePath());
    if (!sources.ExecutableFolder.isEmpty() &&
        QFileInfo(sources.ExecutableFolder + QStringLiteral("/Skins")).isDir())
        return ProgramPaths(QDir(sources.ExecutableFolder).absolutePath());

    const QString folder =
        WithTrailingSlash(QDir::cleanPath(sources.DataHome)) + QStringLiteral("pelorin/");
    if (!QDir().mkpath(folder)) {
        SetError(error, QStringLiteral("Cannot create the program folder %1").arg(folder));
        return ProgramPaths(folder);
    }
    if (QFileInfo(sources.InstalledData).isDir())
        Seed(sources.InstalledData, folder, error);
    return ProgramPaths(folder);
}

bool ProgramPaths::Seed(const QString& from, const QString& to, QString* error) {
    const QDir source(from);
    const QString target = WithTrailingSlash(to);
    QSet<QString> seeded = ReadSeedRecord(target);
    QStringList record(seeded.cbegin(), seeded.cend());
    bool changed = false;
    bool ok = true;

    QDirIterator it(from, QDir::Files | QDir::Hidden | QDir::NoDotAndDotDot,
                    QDirIterator::Subdirectories | QDirIterator::FollowSymlinks);
    while (it.hasNext()) {
        const QString sourceFile = it.next();
        const QString relative = source.relativeFilePath(sourceFile);
        if (seeded.contains(relative))
            continue;
        const QString targetFile = target + relative;
        if (!QFileInfo::exists(targetFile)) {
            if (!QDir().mkpath(QFileInfo(targetFile).absolutePath()) ||
                !QFile::copy(sourceFile, targetFile)) {
                SetError(error, QStringLiteral("Cannot copy %1 to %2").arg(sourceFile, targetFile));
                ok = false;
                continue;
            }
            // Installed files are often read-only; the user's copy must be editable.
            QFile::setPermissions(targetFile, QFile::permissions(targetFile) |
                                                  QFileDevice::WriteOwner | QFileDevice::ReadOwner);
        }
        seeded.insert(relative);
        record.append(relative);
        changed = true;
    }
    if (changed) {
        record.sort();
        if (!WriteSeedRecord(target, record, error))
            ok = false;
    }
    return ok;
}

QString ProgramPaths::SkinsFolder() const {
    return m_programFolder + QStringLiteral("Skins/");
}

QString ProgramPaths::SkinFolder(const QString& skinName) const {
    return WithTrailingSlash(SkinsFolder() + skinName);
}

QString ProgramPaths::DeskbandFolder() const {
    return m_programFolder + QStringLiteral("Deskband/Default/");
}

QString ProgramPaths::LyricsFolder() const {
    return m_programFolder + QStringLiteral("Lyrics/");
}

QString ProgramPaths::TemporaryFolder(QString* error) {
    const QString runtimeDir = UsableRuntimeDir();
    if (!runtimeDir.isEmpty()) {
        const QString folder = runtimeDir + QStringLiteral("/pelorin");
        if (EnsurePrivateFolder(folder, error))
            return folder + QLatin1Char('/');
    }
    const QString folder = QDir::cleanPath(QDir::tempPath()) + QStringLiteral("/pelorin-") +
                           QString::number(::geteuid());
    if (EnsurePrivateFolder(folder, error))
        return folder + QLatin1Char('/');
    return {};
}

QString ProgramPaths::RuntimeFolder(QString* error) {
    return TemporaryFolder(error);
}

QString ProgramPaths::InstanceLockFile(QString* error) {
    const QString folder = RuntimeFolder(error);
    return folder.isEmpty() ? QString() : folder + QStringLiteral("instance.lock");
}

} // namespace Pelorin
