// One main for every GoogleTest program: it sets the test tier's platform and creates the Qt
// application object the tier needs before any test runs. PELORIN_TEST_PLATFORM is empty for the
// logic tier (QCoreApplication), "offscreen" or "xcb" for the widget tiers (QApplication).
#include "base/Log.h"

#include <QCoreApplication>
#include <csignal>
#include <gtest/gtest.h>
#include <memory>
#ifdef PELORIN_TEST_GUI
#include <QApplication>
#endif

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    // As the program's own main does: a write to a daemon that has gone fails instead of ending
    // the process.
    std::signal(SIGPIPE, SIG_IGN);
    // Diagnostics print as the program prints them.
    Pelorin::UseBareMessageFormat();
    // Message boxes go to stderr and take their default answer: tests never block on a dialog.
    qputenv("PELORIN_UNATTENDED", "1");
#ifdef PELORIN_TEST_PLATFORM
    qputenv("QT_QPA_PLATFORM", PELORIN_TEST_PLATFORM);
#endif
    std::unique_ptr<QCoreApplication> app;
    if (!::testing::GTEST_FLAG(list_tests)) {
#ifdef PELORIN_TEST_GUI
        app = std::make_unique<QApplication>(argc, argv);
#else
        app = std::make_unique<QCoreApplication>(argc, argv);
#endif
    }
    return RUN_ALL_TESTS();
}
