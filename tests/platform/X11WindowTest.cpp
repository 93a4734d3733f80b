// Real windows on a real X server with a window manager: the properties the window system
// sees, read back on a connection of the test's own.
#include "X11Probe.h"
#include "platform/PlatformHelpers.h"
#include "platform/WindowStyling.h"
#include "platform/WindowSystem.h"

#include <QCursor>
#include <QGuiApplication>
#include <QTest>
#include <QWidget>
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <vector>
#include <xcb/xcb.h>

using namespace Pelorin;

namespace {

using Testing::X11Probe;

class X11Windows : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(QGuiApplication::platformName(), QStringLiteral("xcb"))
            << "this test needs an X server (run it under xvfb-run)";
        ASSERT_TRUE(probe.Ok());
        system = CreateWindowSystem();
        ASSERT_TRUE(system->IsAvailable());
        window = std::make_unique<QWidget>(nullptr, Qt::FramelessWindowHint);
        window->setGeometry(100, 100, 200, 100);
    }

    xcb_window_t Id() const { return static_cast<xcb_window_t>(window->winId()); }

    void ShowAndWait() {
        window->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(window.get()));
    }

    X11Probe probe;
    std::unique_ptr<WindowSystem> system;
    std::unique_ptr<QWidget> window;
};

} // namespace

TEST_F(X11Windows, AlphaHalfWritesTheOpacityProperty) {
    ShowAndWait();
    EXPECT_TRUE(SetWindowAlpha(*system, window.get(), 128));
    EXPECT_TRUE(QTest::qWaitFor([&] { return probe.Opacity(Id()) == 0x80808080u; }))
        << std::hex << probe.Opacity(Id()).value_or(0);
}

TEST_F(X11Windows, OpaqueAlphaKeepsTheOpacityProperty) {
    ShowAndWait();
    SetWindowAlpha(*system, window.get(), 128);
    ASSERT_TRUE(QTest::qWaitFor([&] { return probe.Opacity(Id()) == 0x80808080u; }));
    EXPECT_TRUE(SetWindowAlpha(*system, window.get(), 255));
    EXPECT_TRUE(QTest::qWaitFor([&] { return probe.Opacity(Id()) == 0xFFFFFFFFu; }));
    // Qt's own bookkeeping would drop the property for an opaque window; make sure nothing did
    // after the events ran.
    QTest::qWait(100);
    EXPECT_EQ(probe.Opacity(Id()), 0xFFFFFFFFu);
}

TEST_F(X11Windows, OpaqueAlphaOnAFreshWindowIsWritten) {
    ShowAndWait();
    EXPECT_FALSE(probe.Opacity(Id()).has_value());
    SetWindowAlpha(*system, window.get(), 255);
    EXPECT_TRUE(QTest::qWaitFor([&] { return probe.Opacity(Id()) == 0xFFFFFFFFu; }));
}

TEST_F(X11Windows, AlphaBeforeShowingSurvivesTheShow) {
    SetWindowAlpha(*system, window.get(), 200);
    ShowAndWait();
    EXPECT_TRUE(QTest::qWaitFor([&] { return probe.Opacity(Id()) == 200u * 0x01010101u; }));
}

TEST_F(X11Windows, AlphaAboveAByteUsesTheLowByte) {
    ShowAndWait();
    SetWindowAlpha(*system, window.get(), 256 + 128);
    EXPECT_TRUE(QTest::qWaitFor([&] { return probe.Opacity(Id()) == 0x80808080u; }));
    SetWindowAlpha(*system, window.get(), 256);
    EXPECT_TRUE(QTest::qWaitFor([&] { return probe.Opacity(Id()) == 0u; }));
}

TEST_F(X11Windows, PutOnDesktopWithoutDesktopWindowKeepsBelowOnAllDesktops) {
    ShowAndWait();
    const DesktopPlacement placement = PutOnDesktop(*system, window.get());
    EXPECT_EQ(placement.outcome, DesktopPlacement::Outcome::KeptBelow)
        << placement.Describe().toStdString();
    EXPECT_TRUE(QTest::qWaitFor([&] {
        return probe.HasState(Id(), "_NET_WM_STATE_BELOW") &&
               probe.HasState(Id(), "_NET_WM_STATE_SKIP_TASKBAR") &&
               probe.HasState(Id(), "_NET_WM_STATE_SKIP_PAGER");
    }));
    EXPECT_TRUE(QTest::qWaitFor([&] {
        return probe.Property(Id(), "_NET_WM_DESKTOP", XCB_ATOM_CARDINAL) ==
               std::vector<uint32_t>{0xFFFFFFFFu};
    }));
}

TEST_F(X11Windows, PutOnDesktopBeforeShowingAndAfterHidingHolds) {
    const DesktopPlacement placement = PutOnDesktop(*system, window.get());
    EXPECT_EQ(placement.outcome, DesktopPlacement::Outcome::KeptBelow);
    ShowAndWait();
    const auto keptBelow = [&] {
        return probe.HasState(Id(), "_NET_WM_STATE_BELOW") &&
               probe.HasState(Id(), "_NET_WM_STATE_SKIP_TASKBAR") &&
               probe.HasState(Id(), "_NET_WM_STATE_SKIP_PAGER") &&
               probe.Property(Id(), "_NET_WM_DESKTOP", XCB_ATOM_CARDINAL) ==
                   std::vector<uint32_t>{0xFFFFFFFFu};
    };
    EXPECT_TRUE(QTest::qWaitFor(keptBelow));
    // The window manager forgets the state of a hidden window.
    window->hide();
    QTest::qWait(200);
    ShowAndWait();
    EXPECT_TRUE(QTest::qWaitFor(keptBelow));
}

TEST_F(X11Windows, PutOnDesktopParentsToTheDesktopWindow) {
    const xcb_window_t desktop = probe.CreateDesktopWindow();
    // The window manager lists it among its clients once it manages it.
    ASSERT_TRUE(QTest::qWaitFor([&] {
        const auto clients = probe.Property(probe.Root(), "_NET_CLIENT_LIST", XCB_ATOM_WINDOW);
        return std::find(clients.begin(), clients.end(), desktop) != clients.end();
    }));
    ShowAndWait();
    const DesktopPlacement placement = PutOnDesktop(*system, window.get());
    EXPECT_EQ(placement.outcome, DesktopPlacement::Outcome::ParentedToDesktop)
        << placement.Describe().toStdString();
    EXPECT_EQ(placement.desktopWindow, desktop);
    EXPECT_TRUE(QTest::qWaitFor([&] { return probe.Parent(Id()) == desktop; }));
    // Asked again, it does it again and stays there.
    EXPECT_EQ(PutOnDesktop(*system, window.get()).outcome,
              DesktopPlacement::Outcome::ParentedToDesktop);
    // The window manager does not take it back once its events have run.
    QTest::qWait(300);
    EXPECT_EQ(probe.Parent(Id()), desktop);
    EXPECT_TRUE(window->isVisible());
    window.reset();
    probe.Destroy(desktop);
}

TEST_F(X11Windows, CursorPositionFollowsThePointer) {
    ShowAndWait();
    QCursor::setPos(321, 234);
    EXPECT_TRUE(QTest::qWaitFor([] { return CursorPosition() == QPoint(321, 234); }));
}
