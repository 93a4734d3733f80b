#include "base/FileNames.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace Pelorin;

namespace {

void Touch(const QString& path) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << path.toStdString();
}

} // namespace

TEST(FileNames, BackslashesAreReadAsSlashes) {
    EXPECT_EQ(FileNames::WithSlashes(u"pics\\buttons\\play.png"_qs), u"pics/buttons/play.png"_qs);
}

TEST(FileNames, ANameWithBackslashesFindsTheFileInItsSubfolder) {
    QTemporaryDir dir;
    const QString folder = dir.path() + u'/';
    ASSERT_TRUE(QDir(dir.path()).mkdir(QStringLiteral("pics")));
    Touch(folder + u"pics/play.png"_qs);
    EXPECT_EQ(FileNames::InFolder(folder, u"pics\\play.png"_qs), folder + u"pics/play.png"_qs);
}

TEST(FileNames, TheExactCaseWinsWhenItExists) {
    QTemporaryDir dir;
    const QString folder = dir.path() + u'/';
    Touch(folder + u"Play.png"_qs);
    Touch(folder + u"play.png"_qs);
    EXPECT_EQ(FileNames::InFolder(folder, u"play.png"_qs), folder + u"play.png"_qs);
    EXPECT_EQ(FileNames::InFolder(folder, u"Play.png"_qs), folder + u"Play.png"_qs);
}

TEST(FileNames, ANameInAnotherCaseFindsTheFileInEachFolder) {
    QTemporaryDir dir;
    const QString folder = dir.path() + u'/';
    ASSERT_TRUE(QDir(dir.path()).mkpath(QStringLiteral("Pics/Buttons")));
    Touch(folder + u"Pics/Buttons/Play.PNG"_qs);
    EXPECT_EQ(FileNames::InFolder(folder, u"PICS\\buttons\\play.png"_qs),
              folder + u"Pics/Buttons/Play.PNG"_qs);
}

TEST(FileNames, ANameThatMatchesNothingComesBackWithSlashesOnly) {
    QTemporaryDir dir;
    const QString folder = dir.path() + u'/';
    EXPECT_EQ(FileNames::InFolder(folder, u"Pics\\Gone.png"_qs), folder + u"Pics/Gone.png"_qs);
}

TEST(FileNames, ResolveFixesTheCaseOfAWholePath) {
    QTemporaryDir dir;
    ASSERT_TRUE(QDir(dir.path()).mkpath(QStringLiteral("Lyrics/Some Artist")));
    Touch(dir.path() + u"/Lyrics/Some Artist/Song.lyr"_qs);
    EXPECT_EQ(FileNames::Resolve(dir.path() + u"/lyrics/some artist/song.LYR"_qs),
              dir.path() + u"/Lyrics/Some Artist/Song.lyr"_qs);
    EXPECT_EQ(FileNames::Resolve(dir.path() + u"/lyrics/nobody/song.lyr"_qs),
              dir.path() + u"/lyrics/nobody/song.lyr"_qs);
}

TEST(FileNames, AnEmptyNameIsTheFolderItself) {
    EXPECT_EQ(FileNames::InFolder(u"/tmp/skin/"_qs, QString()), u"/tmp/skin/"_qs);
}

TEST(FileNames, ANameWithDotDotClimbsOutAndIsNotBelowItsFolder) {
    EXPECT_FALSE(FileNames::StaysBelow(QStringLiteral("../secret.png")));
    EXPECT_FALSE(FileNames::StaysBelow(QStringLiteral("pics/../../secret.png")));
    EXPECT_FALSE(FileNames::StaysBelow(QStringLiteral("..\\..\\secret.png")));
    EXPECT_TRUE(FileNames::StaysBelow(QStringLiteral("pics/back.png")));
    EXPECT_TRUE(FileNames::StaysBelow(QStringLiteral("..png")));
    EXPECT_TRUE(FileNames::StaysBelow(QStringLiteral("/etc/passwd"))) << "put behind the folder";
}

TEST(FileNames, ALinkOutOfTheSkinFolderIsNotConfinedAndOneInsideIs) {
    QTemporaryDir dir;
    ASSERT_TRUE(QDir(dir.path()).mkpath(QStringLiteral("Skins/Hostile")));
    const QString skin = dir.filePath(QStringLiteral("Skins/Hostile/"));
    Touch(dir.filePath(QStringLiteral("private.png")));
    Touch(skin + QStringLiteral("own.png"));
    ASSERT_TRUE(
        QFile::link(dir.filePath(QStringLiteral("private.png")), skin + QStringLiteral("out.png")));
    ASSERT_TRUE(QFile::link(QStringLiteral("own.png"), skin + QStringLiteral("in.png")));
    const auto Confined = [&skin](const char* name) {
        const QString relative = QString::fromLatin1(name);
        return FileNames::Confined(skin, relative, FileNames::InFolder(skin, relative));
    };
    EXPECT_FALSE(Confined("out.png"));
    EXPECT_TRUE(Confined("in.png"));
    EXPECT_TRUE(Confined("missing.png"));
    EXPECT_FALSE(Confined("../../private.png"));
}

TEST(FileNames, ASkinNameIsOneFolderName) {
    EXPECT_TRUE(FileNames::IsPlainName(QStringLiteral("Blue Glass")));
    for (const char* name : {"", ".", "..", "../Other", "a/b", "a\\b", "/etc"})
        EXPECT_FALSE(FileNames::IsPlainName(QString::fromLatin1(name))) << name;
}
