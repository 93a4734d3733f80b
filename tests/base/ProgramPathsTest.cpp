#include "base/ProgramPaths.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

using Pelorin::ProgramFolderSources;
using Pelorin::ProgramPaths;

namespace {

void WriteFile(const QString& path, const QByteArray& bytes) {
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

QByteArray ReadFile(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

unsigned ModeOf(const QString& path) {
    struct stat info {};
    if (::lstat(QFile::encodeName(path).constData(), &info) != 0)
        return 0;
    return info.st_mode & 07777;
}

// Restores an environment variable when the test ends.
class ScopedEnv {
public:
    ScopedEnv(const char* name, const QByteArray& value)
        : m_name(name), m_had(qEnvironmentVariableIsSet(name)), m_old(qgetenv(name)) {
        if (value.isNull())
            qunsetenv(name);
        else
            qputenv(name, value);
    }
    ~ScopedEnv() {
        if (m_had)
            qputenv(m_name, m_old);
        else
            qunsetenv(m_name);
    }

private:
    const char* m_name;
    bool m_had;
    QByteArray m_old;
};

class ProgramFolder : public ::testing::Test {
protected:
    QTemporaryDir dir;
    QString Path(const char* relative) const { return dir.filePath(QString::fromUtf8(relative)); }

    ProgramFolderSources Sources() const {
        ProgramFolderSources s;
        s.ExecutableFolder = Path("bin");
        s.DataHome = Path("data");
        s.InstalledData = Path("prefix/share/pelorin");
        QDir().mkpath(s.ExecutableFolder);
        return s;
    }
    void MakeInstalledData() {
        WriteFile(Path("prefix/share/pelorin/Skins/Default/skin.ini"), "installed skin\r\n");
        WriteFile(Path("prefix/share/pelorin/Skins/Default/play.png"), "png");
        WriteFile(Path("prefix/share/pelorin/Deskband/Default/skin.ini"), "deskband\r\n");
    }
};

} // namespace

TEST_F(ProgramFolder, PelorinHomeWins) {
    ProgramFolderSources s = Sources();
    QDir().mkpath(s.ExecutableFolder + QStringLiteral("/Skins"));
    s.PelorinHome = Path("home");
    const ProgramPaths paths = ProgramPaths::Resolve(s);
    EXPECT_EQ(paths.ProgramFolder(), Path("home") + QLatin1Char('/'));
}

TEST_F(ProgramFolder, ExecutableFolderWithSkinsIsTheProgramFolder) {
    const ProgramFolderSources s = Sources();
    QDir().mkpath(s.ExecutableFolder + QStringLiteral("/Skins"));
    MakeInstalledData();
    const ProgramPaths paths = ProgramPaths::Resolve(s);
    EXPECT_EQ(paths.ProgramFolder(), Path("bin/"));
    // Nothing was seeded elsewhere.
    EXPECT_FALSE(QFileInfo::exists(Path("data/pelorin")));
}

TEST_F(ProgramFolder, ExecutableFolderWithoutSkinsFallsBackToDataHome) {
    const ProgramFolderSources s = Sources();
    MakeInstalledData();
    QString error;
    const ProgramPaths paths = ProgramPaths::Resolve(s, &error);
    EXPECT_EQ(paths.ProgramFolder(), Path("data/pelorin/"));
    EXPECT_TRUE(error.isEmpty()) << error.toStdString();
    EXPECT_EQ(ReadFile(Path("data/pelorin/Skins/Default/skin.ini")), "installed skin\r\n");
    EXPECT_EQ(ReadFile(Path("data/pelorin/Deskband/Default/skin.ini")), "deskband\r\n");
}

TEST_F(ProgramFolder, SeedingNeverOverwritesOrRestoresWhatTheUserChanged) {
    const ProgramFolderSources s = Sources();
    MakeInstalledData();
    ProgramPaths::Resolve(s);
    WriteFile(Path("data/pelorin/Skins/Default/skin.ini"), "my own skin\r\n");
    ASSERT_TRUE(QFile::remove(Path("data/pelorin/Skins/Default/play.png")));
    // A later version installs a new skin.
    WriteFile(Path("prefix/share/pelorin/Skins/New/skin.ini"), "new skin\r\n");

    ProgramPaths::Resolve(s);
    EXPECT_EQ(ReadFile(Path("data/pelorin/Skins/Default/skin.ini")), "my own skin\r\n");
    EXPECT_FALSE(QFileInfo::exists(Path("data/pelorin/Skins/Default/play.png")));
    EXPECT_EQ(ReadFile(Path("data/pelorin/Skins/New/skin.ini")), "new skin\r\n");
}

TEST_F(ProgramFolder, SeedingKeepsAFileTheUserMadeBeforeTheFirstStart) {
    const ProgramFolderSources s = Sources();
    MakeInstalledData();
    WriteFile(Path("data/pelorin/Skins/Default/skin.ini"), "already here\r\n");
    ProgramPaths::Resolve(s);
    EXPECT_EQ(ReadFile(Path("data/pelorin/Skins/Default/skin.ini")), "already here\r\n");
    EXPECT_EQ(ReadFile(Path("data/pelorin/Skins/Default/play.png")), "png");
}

TEST_F(ProgramFolder, SeededCopiesOfReadOnlyFilesAreWritable) {
    const ProgramFolderSources s = Sources();
    MakeInstalledData();
    QFile::setPermissions(Path("prefix/share/pelorin/Skins/Default/skin.ini"),
                          QFileDevice::ReadOwner | QFileDevice::ReadGroup);
    ProgramPaths::Resolve(s);
    EXPECT_TRUE(
        QFileInfo(Path("data/pelorin/Skins/Default/skin.ini")).permission(QFileDevice::WriteOwner));
}

TEST_F(ProgramFolder, DataHomeFolderIsCreatedWithoutInstalledData) {
    ProgramFolderSources s = Sources();
    s.InstalledData = Path("nowhere");
    const ProgramPaths paths = ProgramPaths::Resolve(s);
    EXPECT_TRUE(QFileInfo(paths.ProgramFolder()).isDir());
}

TEST_F(ProgramFolder, EnvironmentSourcesFollowTheVariables) {
    ScopedEnv home("PELORIN_HOME", Path("home").toUtf8());
    ScopedEnv data("XDG_DATA_HOME", Path("data").toUtf8());
    const ProgramFolderSources s = ProgramFolderSources::FromEnvironment();
    EXPECT_EQ(s.PelorinHome, Path("home"));
    EXPECT_EQ(s.DataHome, Path("data"));
    EXPECT_FALSE(s.ExecutableFolder.isEmpty());
    ScopedEnv relative("XDG_DATA_HOME", QByteArray("relative/path"));
    EXPECT_EQ(ProgramFolderSources::FromEnvironment().DataHome,
              QDir::homePath() + QStringLiteral("/.local/share"));
}

TEST(ProgramPaths, SkinFoldersEndWithASlash) {
    const ProgramPaths paths(QStringLiteral("/opt/p"));
    EXPECT_EQ(paths.ProgramFolder(), QStringLiteral("/opt/p/"));
    EXPECT_EQ(paths.SkinsFolder(), QStringLiteral("/opt/p/Skins/"));
    EXPECT_EQ(paths.SkinFolder(QStringLiteral("Default")), QStringLiteral("/opt/p/Skins/Default/"));
    EXPECT_EQ(paths.SkinFolder(QStringLiteral("Mine/")), QStringLiteral("/opt/p/Skins/Mine/"));
    EXPECT_EQ(paths.DeskbandFolder(), QStringLiteral("/opt/p/Deskband/Default/"));
    EXPECT_EQ(paths.LyricsFolder(), QStringLiteral("/opt/p/Lyrics/"));
}

TEST_F(ProgramFolder, TemporaryFolderIsPrivateInTheRuntimeDir) {
    const QString runtime = Path("run");
    QDir().mkpath(runtime);
    QFile::setPermissions(runtime,
                          QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    ScopedEnv env("XDG_RUNTIME_DIR", runtime.toUtf8());
    QString error;
    const QString folder = ProgramPaths::TemporaryFolder(&error);
    EXPECT_EQ(folder, runtime + QStringLiteral("/pelorin/")) << error.toStdString();
    EXPECT_EQ(ModeOf(folder), 0700u);
    EXPECT_EQ(ProgramPaths::InstanceLockFile(), folder + QStringLiteral("instance.lock"));
}

TEST_F(ProgramFolder, TemporaryFolderWithoutRuntimeDirIsPerUserAndPrivate) {
    ScopedEnv env("XDG_RUNTIME_DIR", QByteArray());
    ScopedEnv tmp("TMPDIR", Path("tmp").toUtf8());
    QDir().mkpath(Path("tmp"));
    // A shared, world-writable temporary folder.
    QFile::setPermissions(Path("tmp"), QFileDevice::Permissions(0x7777));
    const QString folder = ProgramPaths::TemporaryFolder();
    EXPECT_EQ(folder, Path("tmp") + QStringLiteral("/pelorin-") + QString::number(::geteuid()) +
                          QLatin1Char('/'));
    EXPECT_EQ(ModeOf(folder), 0700u);
}

TEST_F(ProgramFolder, TemporaryFolderTightensAnExistingLooseFolder) {
    ScopedEnv env("XDG_RUNTIME_DIR", QByteArray());
    ScopedEnv tmp("TMPDIR", Path("tmp").toUtf8());
    const QString loose = Path("tmp") + QStringLiteral("/pelorin-") + QString::number(::geteuid());
    QDir().mkpath(loose);
    ::chmod(QFile::encodeName(loose).constData(), 0777);
    EXPECT_EQ(ProgramPaths::TemporaryFolder(), loose + QLatin1Char('/'));
    EXPECT_EQ(ModeOf(loose), 0700u);
}

TEST_F(ProgramFolder, TemporaryFolderRefusesASymbolicLink) {
    ScopedEnv env("XDG_RUNTIME_DIR", QByteArray());
    ScopedEnv tmp("TMPDIR", Path("tmp").toUtf8());
    QDir().mkpath(Path("elsewhere"));
    QDir().mkpath(Path("tmp"));
    const QString planted =
        Path("tmp") + QStringLiteral("/pelorin-") + QString::number(::geteuid());
    ASSERT_TRUE(QFile::link(Path("elsewhere"), planted));
    QString error;
    EXPECT_EQ(ProgramPaths::TemporaryFolder(&error), QString());
    EXPECT_FALSE(error.isEmpty());
}
