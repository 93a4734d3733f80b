#include "platform/Trash.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using Pelorin::MoveToTrash;

namespace {

// Points HOME and XDG_DATA_HOME into a temporary folder for one test.
class TrashFixture : public ::testing::Test {
protected:
    QTemporaryDir dir;
    QByteArray oldHome = qgetenv("HOME");
    QByteArray oldData = qgetenv("XDG_DATA_HOME");
    bool hadData = qEnvironmentVariableIsSet("XDG_DATA_HOME");

    void SetUp() override {
        qputenv("HOME", QFile::encodeName(dir.path()));
        // Not created yet: the trash must still land here, not in the current folder.
        qputenv("XDG_DATA_HOME", QFile::encodeName(DataHome()));
    }
    void TearDown() override {
        qputenv("HOME", oldHome);
        if (hadData)
            qputenv("XDG_DATA_HOME", oldData);
        else
            qunsetenv("XDG_DATA_HOME");
    }
    QString DataHome() const { return dir.filePath(QStringLiteral("xdg-data")); }
    QString MakeFile(const QString& name, const QByteArray& bytes) {
        const QString path = dir.filePath(name);
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return path;
    }
};

} // namespace

TEST_F(TrashFixture, FileGoesToTheUserTrashEvenWithoutADataFolder) {
    ASSERT_FALSE(QFileInfo::exists(DataHome()));
    const QString path = MakeFile(QStringLiteral("song.ogg"), "music");
    const QString cwdBefore = QDir::currentPath();
    QString error;
    ASSERT_TRUE(MoveToTrash(path, &error)) << error.toStdString();
    EXPECT_FALSE(QFileInfo::exists(path));
    const QString trashed = DataHome() + QStringLiteral("/Trash/files/song.ogg");
    ASSERT_TRUE(QFileInfo::exists(trashed));
    QFile file(trashed);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), "music");
    EXPECT_TRUE(QFileInfo::exists(DataHome() + QStringLiteral("/Trash/info/song.ogg.trashinfo")));
    // Nothing strayed into the current folder.
    EXPECT_FALSE(QFileInfo::exists(cwdBefore + QStringLiteral("/files/song.ogg")));
}

TEST_F(TrashFixture, TwoFilesOfOneNameBothSurvive) {
    const QString first = MakeFile(QStringLiteral("a.txt"), "one");
    ASSERT_TRUE(MoveToTrash(first));
    const QString second = MakeFile(QStringLiteral("a.txt"), "two");
    ASSERT_TRUE(MoveToTrash(second));
    const QStringList files =
        QDir(DataHome() + QStringLiteral("/Trash/files")).entryList(QDir::Files);
    EXPECT_EQ(files.size(), 2);
}

TEST_F(TrashFixture, MissingFileIsAFailureWithAMessage) {
    QString error;
    EXPECT_FALSE(MoveToTrash(dir.filePath(QStringLiteral("gone.mp3")), &error));
    EXPECT_FALSE(error.isEmpty());
}
