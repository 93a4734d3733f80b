// The skin window speaks Qt: what happens to it (presses, moves, releases, drops, timer ticks,
// the menu request) comes out as signals in Qt's own types, and a press that nothing listens to
// still counts as an interaction. Offscreen, with simulated input.
#include "app/FormsRegistry.h"
#include "skin/window/SkinControls.h"
#include "skin/window/effects/EffectPacing.h"
#include "skin/window/frmMain.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QPointer>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

namespace Pelorin {
namespace {

class NoPacing final : public EffectPacing {
public:
    void LetMessagesRun() override { QCoreApplication::processEvents(); }
    void Sleep(int) override {}
};

class SkinWindowSignals : public ::testing::Test {
protected:
    void TearDown() override {
        delete window.data();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    // A skin with one image button, a progress bar and the stars; `listen` connects the test's
    // handlers before the skin loads.
    void Open(const std::function<void(frmMain&)>& listen = {}) {
        ASSERT_TRUE(dir.isValid());
        const QString folder = dir.path() + QStringLiteral("/Skins/Signals/");
        ASSERT_TRUE(QDir().mkpath(folder));
        QImage picture(20, 20, QImage::Format_ARGB32);
        picture.fill(Qt::red);
        ASSERT_TRUE(picture.save(folder + QStringLiteral("button.png")));
        ASSERT_TRUE(picture.save(folder + QStringLiteral("bar.png")));
        QFile file(folder + QStringLiteral("skin.ini"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        for (const char* line :
             {"width=200", "height=100", "anyinteraction=touched",
              "image=10;10;20;20;play;button.png", "progresscontrol=10;50;100;6;bar.png",
              "ratingscontrol=10;70;10;10;1;button.png;button.png"})
            file.write(QByteArray(line) + "\r\n");
        file.close();

        frmMain::Links links;
        links.forms.Forms = [this] { return forms.Forms(); };
        links.forms.Add = [this](Form* form) { forms.Add(form); };
        links.forms.Remove = [this](Form* form) { forms.Remove(form); };
        links.pacing = &pacing;
        links.services.RunCode = [this](frmMain&, const QString& code) { ran.append(code); };
        window = new frmMain(links);
        if (listen)
            listen(*window);
        window->LoadSkin(folder + QStringLiteral("skin.ini"), folder);
        window->RunAfter();
    }

    QTemporaryDir dir;
    FormsRegistry forms;
    NoPacing pacing;
    QPointer<frmMain> window;
    QStringList ran;
};

struct Press {
    int index = -1;
    Qt::MouseButton button = Qt::NoButton;
    Qt::KeyboardModifiers modifiers;
    QPoint position;
};

TEST_F(SkinWindowSignals, AnImagePressIsSignalledInQtTermsAndLeftToItsListener) {
    QList<Press> presses;
    Open([&presses](frmMain& w) {
        QObject::connect(&w, &frmMain::imagePressed, &w,
                         [&presses](int index, Qt::MouseButton button,
                                    Qt::KeyboardModifiers modifiers, QPoint position) {
                             presses.append({index, button, modifiers, position});
                         });
    });
    ASSERT_NE(window->img(1), nullptr);
    QTest::mousePress(window->img(1), Qt::RightButton, Qt::ShiftModifier, QPoint(3, 4));
    ASSERT_EQ(presses.size(), 1);
    EXPECT_EQ(presses[0].index, 1);
    EXPECT_EQ(presses[0].button, Qt::RightButton);
    EXPECT_EQ(presses[0].modifiers, Qt::KeyboardModifiers(Qt::ShiftModifier));
    EXPECT_EQ(presses[0].position, QPoint(3, 4));
    // The listener decides what a press means; the window ran no interaction code itself.
    EXPECT_TRUE(ran.isEmpty());
}

TEST_F(SkinWindowSignals, APressNothingListensToStillCountsAsAnInteraction) {
    Open();
    QTest::mousePress(window->img(1), Qt::LeftButton, {}, QPoint(3, 4));
    EXPECT_TRUE(window->Interaction().IsRaised());
    EXPECT_EQ(ran, QStringList{QStringLiteral("touched")});
    ran.clear();
    QTest::mousePress(window->imgProgress(), Qt::LeftButton, {}, QPoint(3, 2));
    EXPECT_EQ(ran, QStringList{QStringLiteral("touched")});
    ran.clear();
    QTest::mousePress(window->imgRatings(2), Qt::LeftButton, {}, QPoint(3, 2));
    EXPECT_EQ(ran, QStringList{QStringLiteral("touched")});
}

TEST_F(SkinWindowSignals, AStarClickIsALeftReleaseOverTheStarThatWasPressed) {
    QList<int> clicks;
    Open([&clicks](frmMain& w) {
        QObject::connect(&w, &frmMain::starClicked, &w,
                         [&clicks](int index) { clicks.append(index); });
    });
    QTest::mouseClick(window->imgRatings(3), Qt::LeftButton, {}, QPoint(2, 2));
    QTest::mouseClick(window->imgRatings(3), Qt::RightButton, {}, QPoint(2, 2));
    EXPECT_EQ(clicks, QList<int>{3});
}

TEST_F(SkinWindowSignals, ThePressOnTheProgressBarGivesItsOffsetFromTheLeftEdge) {
    QList<double> offsets;
    Open([&offsets](frmMain& w) {
        QObject::connect(&w, &frmMain::progressPressed, &w,
                         [&offsets](Qt::MouseButtons buttons, double x) {
                             if (buttons == Qt::LeftButton)
                                 offsets.append(x);
                         });
    });
    QTest::mousePress(window->imgProgress(), Qt::LeftButton, {}, QPoint(40, 2));
    EXPECT_EQ(offsets, QList<double>{40.0});
}

TEST_F(SkinWindowSignals, LoadingEndsWithOneProgressTickAndARightReleaseRequestsTheMenu) {
    int ticks = 0;
    int menus = 0;
    Open([&ticks, &menus](frmMain& w) {
        QObject::connect(&w, &frmMain::progressTimerTicked, &w, [&ticks] { ++ticks; });
        QObject::connect(&w, &frmMain::menuRequested, &w, [&menus] { ++menus; });
    });
    EXPECT_EQ(ticks, 1);
    QTest::mouseRelease(window, Qt::RightButton, {}, QPoint(150, 90));
    EXPECT_EQ(menus, 1);
}

} // namespace
} // namespace Pelorin
