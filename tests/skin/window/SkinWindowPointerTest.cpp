// Skin windows under the real pointer, driven with xdotool: clicks through a glass window and
// a move by the window manager. These tests own the pointer (a ctest resource lock) and keep to a
// corner of the screen that the other window tests leave free, above the windows that the window
// manager places there.
#include "SkinWindowFixture.h"

#include <QProcess>

using namespace Pelorin;
using namespace Pelorin::Testing;

namespace {

class SkinWindowPointer : public SkinWindowFixture {
protected:
    QPointer<frmMain> OpenSkin(const QString& name, const QStringList& lines) {
        return Open(WriteSkin(name, lines));
    }
};

bool RunXdotool(const QStringList& arguments) {
    QProcess process;
    process.start(QStringLiteral("xdotool"), arguments);
    return process.waitForFinished(5000) && process.exitCode() == 0;
}

} // namespace

TEST_F(SkinWindowPointer, GlassWithEveryElementHiddenIsEmptyAndCannotBeClicked) {
    QStringList clicks;
    services.RunCode = [&clicks](frmMain&, const QString& code) { clicks.append(code); };
    QPointer<frmMain> window =
        OpenSkin(QStringLiteral("EmptyGlass"),
                 {QStringLiteral("left=800"), QStringLiteral("top=550"),
                  QStringLiteral("width=200"), QStringLiteral("height=100"),
                  QStringLiteral("formclick=clicked"), QStringLiteral("glassify=True")});
    ASSERT_TRUE(WaitExposed(window));
    ASSERT_TRUE(QTest::qWaitFor([&] { return probe.IsShaped(Id(window)); }));
    EXPECT_TRUE(probe.BoundingShape(Id(window)).intersected(QRect(0, 0, 200, 100)).isEmpty());
    ASSERT_TRUE(QTest::qWaitFor([&] { return window->pos() == QPoint(800, 550); }));
    ASSERT_TRUE(RunXdotool({QStringLiteral("mousemove"), QStringLiteral("850"),
                            QStringLiteral("600"), QStringLiteral("click"), QStringLiteral("1")}));
    QTest::qWait(300);
    EXPECT_TRUE(clicks.isEmpty()) << "the click went through the window";

    // The same place on a window without glass takes the click.
    QPointer<frmMain> solid =
        OpenSkin(QStringLiteral("Solid"),
                 {QStringLiteral("ontop=True"), QStringLiteral("left=800"),
                  QStringLiteral("top=550"), QStringLiteral("width=200"),
                  QStringLiteral("height=100"), QStringLiteral("formclick=clicked")});
    ASSERT_TRUE(WaitExposed(solid));
    ASSERT_TRUE(QTest::qWaitFor([&] { return solid->pos() == QPoint(800, 550); }));
    ASSERT_TRUE(RunXdotool({QStringLiteral("mousemove"), QStringLiteral("860"),
                            QStringLiteral("610"), QStringLiteral("click"), QStringLiteral("1")}));
    EXPECT_TRUE(QTest::qWaitFor([&] { return clicks.contains(QStringLiteral("clicked")); }));
}

TEST_F(SkinWindowPointer, DraggingMoveWindowWithTheWindowManagerMovesTheWindow) {
    QPointer<frmMain> window = OpenSkin(QStringLiteral("SysDrag"),
                                        {QStringLiteral("ontop=True"), QStringLiteral("left=700"),
                                         QStringLiteral("top=500"), QStringLiteral("width=120"),
                                         QStringLiteral("height=40")});
    ASSERT_TRUE(WaitExposed(window));
    ASSERT_TRUE(QTest::qWaitFor([&] { return window->pos() == QPoint(700, 500); }));
    window->StartMoveWindow();
    ASSERT_TRUE(
        RunXdotool({QStringLiteral("mousemove"), QStringLiteral("720"), QStringLiteral("510"),
                    QStringLiteral("mousedown"), QStringLiteral("1")}));
    ASSERT_TRUE(QTest::qWaitFor([&] { return !window->lblMove()->isVisible(); }));
    for (int step = 1; step <= 5; ++step) {
        ASSERT_TRUE(RunXdotool({QStringLiteral("mousemove"), QString::number(720 + step * 20),
                                QString::number(510 + step * 10)}));
        QTest::qWait(30);
    }
    ASSERT_TRUE(RunXdotool({QStringLiteral("mouseup"), QStringLiteral("1")}));
    EXPECT_TRUE(QTest::qWaitFor([&] { return window->pos() == QPoint(800, 550); }))
        << window->pos().x() << "," << window->pos().y();
}
