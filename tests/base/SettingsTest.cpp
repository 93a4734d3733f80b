#include "base/Settings.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using Pelorin::Settings;

namespace {

QByteArray ReadBytes(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return file.readAll();
}

void WriteBytes(const QString& path, const QByteArray& bytes) {
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

class SettingsStore : public ::testing::Test {
protected:
    QTemporaryDir dir;
    QString FileName() const { return dir.filePath(QStringLiteral("Pelorin/Pelorin.conf")); }
};

} // namespace

TEST_F(SettingsStore, FirstRunCountsOne) {
    Settings settings(FileName());
    EXPECT_EQ(Pelorin::CountRun(settings), 1);
    EXPECT_EQ(settings.GetSetting(Settings::RunCount), QStringLiteral("1"));
    Settings reopened(FileName());
    EXPECT_EQ(reopened.GetSetting(Settings::RunCount), QStringLiteral("1"));
}

TEST_F(SettingsStore, RunCountWithTrailingLettersCountsFromItsLeadingNumber) {
    Settings settings(FileName());
    settings.SaveSetting(Settings::RunCount, QStringLiteral("12abc"));
    Pelorin::CountRun(settings);
    EXPECT_EQ(settings.GetSetting(Settings::RunCount), QStringLiteral("13"));
}

TEST_F(SettingsStore, RunCountWithoutANumberStartsAgainAtOne) {
    Settings settings(FileName());
    settings.SaveSetting(Settings::RunCount, QStringLiteral("many"));
    Pelorin::CountRun(settings);
    EXPECT_EQ(settings.GetSetting(Settings::RunCount), QStringLiteral("1"));
}

TEST_F(SettingsStore, CloseiTunesOnExitOnePointZeroCountsAsOne) {
    Settings settings(FileName());
    settings.SaveSetting(Settings::CloseiTunesOnExit, QStringLiteral("1.0"));
    EXPECT_TRUE(Pelorin::ShouldCloseiTunesOnExit(settings));
}

TEST_F(SettingsStore, CloseiTunesOnExitYesCountsAsZero) {
    Settings settings(FileName());
    settings.SaveSetting(Settings::CloseiTunesOnExit, QStringLiteral("yes"));
    EXPECT_FALSE(Pelorin::ShouldCloseiTunesOnExit(settings));
    EXPECT_EQ(settings.GetNumber(Settings::CloseiTunesOnExit), 0);
}

TEST_F(SettingsStore, CloseiTunesOnExitMissingIsNotOne) {
    Settings settings(FileName());
    EXPECT_EQ(settings.GetSetting(Settings::CloseiTunesOnExit), QString());
    EXPECT_FALSE(Pelorin::ShouldCloseiTunesOnExit(settings));
}

TEST_F(SettingsStore, MissingKeysGiveTheirDefaults) {
    Settings settings(FileName());
    EXPECT_EQ(settings.GetSetting(Settings::RunCount), QStringLiteral("0"));
    EXPECT_EQ(settings.GetSetting(Settings::CurrentSkin), QStringLiteral("Default"));
    EXPECT_EQ(settings.GetSetting(Settings::CantomPath), QStringLiteral("APPPATH\\Lyrics\\"));
    EXPECT_EQ(settings.GetSetting(Settings::OpenPelorinWithiTunes), QStringLiteral("1"));
    EXPECT_EQ(settings.GetSetting(Settings::PelorinTray), QStringLiteral("0"));
    EXPECT_EQ(settings.GetSetting(Settings::PelorinTrayIcon), QStringLiteral("0"));
    EXPECT_EQ(settings.GetSetting(Settings::PlayerApp), QString());
    EXPECT_EQ(settings.GetSetting(Settings::Player), QString());
    EXPECT_EQ(settings.GetSetting(QStringLiteral("Unknown"), QStringLiteral("given")),
              QStringLiteral("given"));
}

TEST_F(SettingsStore, LyricsPathIsTheStoredTextUnexpanded) {
    Settings settings(FileName());
    EXPECT_EQ(Pelorin::GetLyricsPath(settings), QStringLiteral("APPPATH\\Lyrics\\"));
    settings.SaveSetting(Settings::CantomPath, QStringLiteral("APPPATH\\Mine\\"));
    EXPECT_EQ(Pelorin::GetLyricsPath(settings), QStringLiteral("APPPATH\\Mine\\"));
}

TEST_F(SettingsStore, ValuesAreTextInTheOptionsSection) {
    {
        Settings settings(FileName());
        settings.SaveSetting(Settings::CurrentSkin, QStringLiteral("Mini Player"));
        settings.SaveSetting(Settings::RunCount, QStringLiteral("7"));
    }
    const QByteArray bytes = ReadBytes(FileName());
    EXPECT_TRUE(bytes.contains("[Options]")) << bytes.constData();
    EXPECT_TRUE(bytes.contains("CurrentSkin=Mini Player")) << bytes.constData();
    EXPECT_TRUE(bytes.contains("RunCount=7")) << bytes.constData();
}

TEST_F(SettingsStore, SaveWritesTheFileAtOnce) {
    Settings settings(FileName());
    settings.SaveSetting(Settings::CurrentSkin, QStringLiteral("Other"));
    // Another reader sees it while the first store is still open.
    Settings other(FileName());
    EXPECT_EQ(other.GetSetting(Settings::CurrentSkin), QStringLiteral("Other"));
    EXPECT_TRUE(settings.Flush());
}

TEST_F(SettingsStore, StoreLivesInTheUserConfigFolder) {
    const QByteArray old = qgetenv("XDG_CONFIG_HOME");
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(dir.path()));
    EXPECT_EQ(Settings::DefaultFileName(), dir.path() + QStringLiteral("/Pelorin/Pelorin.conf"));
    {
        Settings settings;
        settings.SaveSetting(Settings::CurrentSkin, QStringLiteral("Blue"));
    }
    EXPECT_TRUE(ReadBytes(FileName()).contains("CurrentSkin=Blue"));
    qputenv("XDG_CONFIG_HOME", old);
}

TEST_F(SettingsStore, CorruptFileIsKeptAsideAndDefaultsApply) {
    const QByteArray corrupt = "[Options\nRunCount=41\nCurrentSkin=Mine\n";
    WriteBytes(FileName(), corrupt);
    testing::internal::CaptureStderr();
    Settings settings(FileName());
    const std::string err = testing::internal::GetCapturedStderr();

    ASSERT_FALSE(settings.PreservedCorruptCopy().isEmpty());
    EXPECT_TRUE(
        settings.PreservedCorruptCopy().startsWith(FileName() + QStringLiteral(".corrupt-")));
    EXPECT_EQ(ReadBytes(settings.PreservedCorruptCopy()), corrupt);
    EXPECT_NE(err.find("could not be read"), std::string::npos) << err;
    EXPECT_NE(err.find(settings.PreservedCorruptCopy().toStdString()), std::string::npos) << err;

    EXPECT_EQ(settings.GetSetting(Settings::RunCount), QStringLiteral("0"));
    EXPECT_EQ(settings.GetSetting(Settings::CurrentSkin), QStringLiteral("Default"));
    Pelorin::CountRun(settings);
    EXPECT_EQ(settings.GetSetting(Settings::RunCount), QStringLiteral("1"));
    // The saved store is fresh; the copy is untouched.
    EXPECT_EQ(ReadBytes(settings.PreservedCorruptCopy()), corrupt);
    EXPECT_TRUE(ReadBytes(FileName()).contains("RunCount=1"));
}

TEST_F(SettingsStore, CorruptFileThatCannotBeMovedIsNeverWritten) {
    const QByteArray corrupt = "[Options\nRunCount=41\n";
    WriteBytes(FileName(), corrupt);
    const QString folder = QFileInfo(FileName()).absolutePath();
    QFile::setPermissions(folder, QFileDevice::ReadOwner | QFileDevice::ExeOwner);
    if (QFileInfo(folder).isWritable()) {
        QFile::setPermissions(folder, QFileDevice::ReadOwner | QFileDevice::WriteOwner |
                                          QFileDevice::ExeOwner);
        GTEST_SKIP() << "running with privileges that ignore folder permissions";
    }
    testing::internal::CaptureStderr();
    {
        Settings settings(FileName());
        settings.SaveSetting(Settings::CurrentSkin, QStringLiteral("Kept in memory"));
        EXPECT_EQ(settings.GetSetting(Settings::CurrentSkin), QStringLiteral("Kept in memory"));
        EXPECT_FALSE(settings.Flush());
    }
    const std::string err = testing::internal::GetCapturedStderr();
    QFile::setPermissions(folder,
                          QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    EXPECT_NE(err.find("could not be moved aside"), std::string::npos) << err;
    EXPECT_EQ(ReadBytes(FileName()), corrupt);
}
