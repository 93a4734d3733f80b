#include "platform/WindowStyling.h"

#include "platform/NullWindowSystem.h"
#include "platform/PlatformHelpers.h"

#include <QFile>
#include <QGuiApplication>
#include <QTemporaryDir>
#include <QWidget>
#include <gtest/gtest.h>

using namespace Pelorin;

TEST(WindowStylingWithoutX11, FactoryGivesTheNullSystemOffscreen) {
    ASSERT_EQ(QGuiApplication::platformName(), QStringLiteral("offscreen"));
    const auto system = CreateWindowSystem();
    EXPECT_FALSE(system->IsAvailable());
    EXPECT_EQ(system->Name(), QStringLiteral("not available"));
}

TEST(WindowStylingWithoutX11, AlphaMakesTheWindowLayeredAndSaysThePropertyIsUnavailable) {
    NullWindowSystem system;
    QWidget window;
    EXPECT_FALSE(IsLayered(&window));
    EXPECT_EQ(WindowAlpha(&window), 255);
    EXPECT_FALSE(SetWindowAlpha(system, &window, 128));
    EXPECT_TRUE(IsLayered(&window));
    EXPECT_EQ(WindowAlpha(&window), 128);
    EXPECT_NEAR(window.windowOpacity(), 128 / 255.0, 0.005);
}

TEST(WindowStylingWithoutX11, OpaqueAlphaStillLayered) {
    NullWindowSystem system;
    QWidget window;
    SetWindowAlpha(system, &window, 255);
    EXPECT_TRUE(IsLayered(&window));
    EXPECT_EQ(WindowAlpha(&window), 255);
}

TEST(WindowStylingWithoutX11, AlphaOutsideAByteIsTakenAsItsLowByte) {
    NullWindowSystem system;
    QWidget window;
    SetWindowAlpha(system, &window, 256);
    EXPECT_EQ(WindowAlpha(&window), 0);
    SetWindowAlpha(system, &window, 300);
    EXPECT_EQ(WindowAlpha(&window), 44);
    SetWindowAlpha(system, &window, -1);
    EXPECT_EQ(WindowAlpha(&window), 255);
}

TEST(WindowStylingWithoutX11, PutOnDesktopReportsNotAvailable) {
    NullWindowSystem system;
    QWidget window;
    const DesktopPlacement placement = PutOnDesktop(system, &window);
    EXPECT_EQ(placement.outcome, DesktopPlacement::Outcome::NotAvailable);
    EXPECT_EQ(placement.desktopWindow, 0u);
    EXPECT_TRUE(placement.Describe().contains(QStringLiteral("not available")));
}

TEST(PlatformHelpers, TemporaryFolderIsThePrivateOne) {
    QTemporaryDir runtime;
    const QByteArray old = qgetenv("XDG_RUNTIME_DIR");
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(runtime.path()));
    const QString folder = TemporaryFolder();
    qputenv("XDG_RUNTIME_DIR", old);
    ASSERT_FALSE(folder.isEmpty());
    EXPECT_TRUE(folder.endsWith(QLatin1Char('/')));
    EXPECT_EQ(folder, runtime.path() + QStringLiteral("/pelorin/"));
}
