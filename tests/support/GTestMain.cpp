// One main for every GoogleTest program: it creates the Qt application object that the test
// tier needs before any test runs. PELORIN_TEST_GUI selects QApplication (offscreen or X11
// tiers), otherwise QCoreApplication (logic tier).
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <memory>
#ifdef PELORIN_TEST_GUI
#include <QApplication>
#endif

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    bool listing = ::testing::GTEST_FLAG(list_tests);
    std::unique_ptr<QCoreApplication> app;
    if (!listing) {
#ifdef PELORIN_TEST_GUI
        app = std::make_unique<QApplication>(argc, argv);
#else
        app = std::make_unique<QCoreApplication>(argc, argv);
#endif
    }
    return RUN_ALL_TESTS();
}
