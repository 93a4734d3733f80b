// The skin window's pictures: one file under many names is decoded once, and a window's pictures
// together stay within their budget. Offscreen.
#include "StderrCapture.h"
#include "app/FormsRegistry.h"
#include "skin/window/frmMain.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QPointer>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace Pelorin {
namespace {

class SkinWindowPictures : public ::testing::Test {
protected:
    void TearDown() override {
        delete window.data();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    QString Folder() {
        const QString folder = dir.path() + QStringLiteral("/Skins/Pictures/");
        EXPECT_TRUE(QDir().mkpath(folder));
        return folder;
    }

    void Picture(const QString& name, QSize size) {
        QImage image(size, QImage::Format_ARGB32);
        image.fill(Qt::blue);
        ASSERT_TRUE(image.save(Folder() + name));
    }

    void Open(const QList<QByteArray>& lines, qint64 budget = 512LL * 1024 * 1024) {
        const QString folder = Folder();
        QFile file(folder + QStringLiteral("skin.ini"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        for (const QByteArray& line : lines)
            file.write(line + "\r\n");
        file.close();
        frmMain::Links links;
        links.forms.Forms = [this] { return forms.Forms(); };
        links.forms.Add = [this](Form* form) { forms.Add(form); };
        links.forms.Remove = [this](Form* form) { forms.Remove(form); };
        links.pictureBudgetBytes = budget;
        window = new frmMain(links);
        window->LoadSkin(folder + QStringLiteral("skin.ini"), folder);
    }

    QTemporaryDir dir;
    FormsRegistry forms;
    QPointer<frmMain> window;
};

TEST_F(SkinWindowPictures, OnePictureUnderManyNamesIsDecodedOnce) {
    Picture(QStringLiteral("big.png"), QSize(200, 100));
    Testing::StderrCapture errors;
    Open({"image=0;0;10;10;a;big.png", "image=0;0;10;10;b;./big.png",
          "image=0;0;10;10;c;././big.png", "image=0;0;10;10;d;sub/../big.png"});
    const QString folder = Folder();
    const QImage first = window->SkinPicture(folder + QStringLiteral("big.png"));
    ASSERT_FALSE(first.isNull());
    for (const char* alias : {"./big.png", "././big.png"})
        EXPECT_EQ(window->SkinPicture(folder + QString::fromLatin1(alias)).cacheKey(),
                  first.cacheKey())
            << alias;
    // A name that climbs out and back in is still a name with "..": refused.
    EXPECT_EQ(errors.Messages(QStringLiteral("Error!")).size(), 1);
}

TEST_F(SkinWindowPictures, PicturesBeyondTheWindowsBudgetAreRefusedAsUnloadable) {
    // Each 100 x 100 picture takes 40,000 bytes decoded; the budget holds two.
    for (const char* name : {"one.png", "two.png", "three.png"})
        Picture(QString::fromLatin1(name), QSize(100, 100));
    Testing::StderrCapture errors;
    Open({"image=0;0;10;10;a;one.png", "image=0;0;10;10;b;two.png", "image=0;0;10;10;c;three.png"},
         100000);
    const QString folder = Folder();
    EXPECT_FALSE(window->SkinPicture(folder + QStringLiteral("one.png")).isNull());
    EXPECT_FALSE(window->SkinPicture(folder + QStringLiteral("two.png")).isNull());
    EXPECT_TRUE(window->SkinPicture(folder + QStringLiteral("three.png")).isNull());
    const QStringList messages = errors.Messages(QStringLiteral("Error!"));
    ASSERT_EQ(messages.size(), 1);
    EXPECT_TRUE(messages.first().contains(QStringLiteral("three.png")));
}

} // namespace
} // namespace Pelorin
