// What a loaded skin window does on a real X server with a window manager: RunAfter's order,
// alpha, stacking, shape and glass as the X server sees them, the desktop, moving, the
// remembered position, single instance, activation, closing and the effects.
#include "SkinWindowFixture.h"
#include "platform/WindowStyling.h"
#include "skin/window/SkinWindowEffects.h"
#include "skin/window/effects/EffectPacing.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <functional>

using namespace Pelorin;
using namespace Pelorin::Testing;

namespace {

class SkinWindowBehaviour : public SkinWindowFixture {
protected:
    QPointer<frmMain> OpenSkin(const QString& name, const QStringList& lines) {
        return Open(WriteSkin(name, lines));
    }
};

// Runs pending events like the real pacing, without sleeping, and lets a test act at a step.
class SteppingPacing final : public EffectPacing {
public:
    void LetMessagesRun() override {
        ++pumps;
        if (atPump)
            atPump(pumps);
        QCoreApplication::processEvents();
    }
    void Sleep(int milliseconds) override { sleeps += milliseconds; }

    int pumps = 0;
    int sleeps = 0;
    std::function<void(int)> atPump;
};

// Counts the Show events of the widget it watches.
class ShowCounter final : public QObject {
public:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Show)
            ++shows;
        return false;
    }
    int shows = 0;
};

// A mouse event at a place on the screen, as the pointer would give it.
void SendMouse(QWidget* target, QEvent::Type type, QPoint global, Qt::MouseButton button,
               Qt::MouseButtons buttons) {
    QMouseEvent event(type, QPointF(target->mapFromGlobal(global)), QPointF(global), button,
                      buttons, Qt::NoModifier);
    QCoreApplication::sendEvent(target, &event);
}

} // namespace

TEST_F(SkinWindowBehaviour, TransparencyMakesTheWindowLayeredWithThatAlpha) {
    QPointer<frmMain> window =
        OpenSkin(QStringLiteral("Alpha"), {QStringLiteral("transparency=128")});
    ASSERT_TRUE(WaitExposed(window));
    EXPECT_TRUE(QTest::qWaitFor([&] { return probe.Opacity(Id(window)) == 0x80808080u; }));
    EXPECT_EQ(WindowAlpha(window), 128);
}

TEST_F(SkinWindowBehaviour, Transparency255IsLayeredButFullyOpaque) {
    QPointer<frmMain> window =
        OpenSkin(QStringLiteral("Opaque"), {QStringLiteral("transparency=255")});
    ASSERT_TRUE(WaitExposed(window));
    EXPECT_TRUE(QTest::qWaitFor([&] { return probe.Opacity(Id(window)) == 0xFFFFFFFFu; }));
    EXPECT_TRUE(IsLayered(window));
}

TEST_F(SkinWindowBehaviour, TransparencyZeroIsNotLayeredAtAll) {
    QPointer<frmMain> window = OpenSkin(QStringLiteral("Zero"), {QStringLiteral("transparency=0")});
    ASSERT_TRUE(WaitExposed(window));
    QTest::qWait(100);
    EXPECT_FALSE(probe.Opacity(Id(window)).has_value());
    EXPECT_FALSE(IsLayered(window));
}

TEST_F(SkinWindowBehaviour, OnTopPutsTheWindowAboveOthers) {
    QPointer<frmMain> window = OpenSkin(QStringLiteral("Top"), {QStringLiteral("ontop=True")});
    ASSERT_TRUE(WaitExposed(window));
    EXPECT_TRUE(QTest::qWaitFor([&] { return probe.HasState(Id(window), "_NET_WM_STATE_ABOVE"); }));
    window->AlwaysOnTop(false);
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return !probe.HasState(Id(window), "_NET_WM_STATE_ABOVE"); }));
    EXPECT_TRUE(window->isVisible()) << "AlwaysOnTop also shows the window";
}

TEST_F(SkinWindowBehaviour, WithoutOnTopTheWindowIsNotAbove) {
    QPointer<frmMain> window = OpenSkin(QStringLiteral("NotTop"), {QStringLiteral("ontop=False")});
    ASSERT_TRUE(WaitExposed(window));
    QTest::qWait(100);
    EXPECT_FALSE(probe.HasState(Id(window), "_NET_WM_STATE_ABOVE"));
}

TEST_F(SkinWindowBehaviour, RoundWindow20On200By100HasCornersOfRadius10) {
    QPointer<frmMain> window = OpenSkin(QStringLiteral("Round"),
                                        {QStringLiteral("width=200"), QStringLiteral("height=100"),
                                         QStringLiteral("roundwindow=20")});
    ASSERT_TRUE(WaitExposed(window));
    ASSERT_TRUE(QTest::qWaitFor([&] { return probe.IsShaped(Id(window)); }));
    const QRegion shape = probe.BoundingShape(Id(window));
    EXPECT_FALSE(shape.contains(QPoint(0, 0)));
    EXPECT_FALSE(shape.contains(QPoint(2, 2))) << "outside the corner circle of radius 10";
    EXPECT_TRUE(shape.contains(QPoint(5, 5)));
    EXPECT_TRUE(shape.contains(QPoint(10, 0)));
    EXPECT_TRUE(shape.contains(QPoint(0, 50)));
    EXPECT_TRUE(shape.contains(QPoint(100, 50)));
    EXPECT_FALSE(shape.contains(QPoint(199, 99)));
    EXPECT_FALSE(shape.contains(QPoint(197, 2)));
    EXPECT_TRUE(shape.contains(QPoint(190, 95)));
}

TEST_F(SkinWindowBehaviour, RoundWindowZeroKeepsSquareCorners) {
    QPointer<frmMain> window =
        OpenSkin(QStringLiteral("Square"), {QStringLiteral("roundwindow=0")});
    ASSERT_TRUE(WaitExposed(window));
    QTest::qWait(100);
    EXPECT_FALSE(probe.IsShaped(Id(window)));
}

TEST_F(SkinWindowBehaviour, GlassClipsTheWindowToItsElements) {
    QPointer<frmMain> window = OpenSkin(
        QStringLiteral("Glass"),
        {QStringLiteral("width=200"), QStringLiteral("height=100"),
         QStringLiteral("image=10;10;20;20;play;none"), QStringLiteral("label=50;5;30;10;x"),
         QStringLiteral("borders=True;0"), QStringLiteral("glassify=True")});
    ASSERT_TRUE(WaitExposed(window));
    ASSERT_TRUE(QTest::qWaitFor([&] { return probe.IsShaped(Id(window)); }));
    const QRegion shape = probe.BoundingShape(Id(window));
    EXPECT_TRUE(shape.contains(QPoint(15, 15)));
    EXPECT_TRUE(shape.contains(QPoint(60, 8)));
    EXPECT_FALSE(shape.contains(QPoint(5, 50))) << "between the elements is cut away";
    EXPECT_FALSE(shape.contains(QPoint(0, 99))) << "border lines are not part of the glass";
    EXPECT_FALSE(shape.contains(QPoint(150, 80)));
}

TEST_F(SkinWindowBehaviour, GlassLeavesOutAnElementTaggedNoResize) {
    QPointer<frmMain> window =
        OpenSkin(QStringLiteral("NoResize"),
                 {QStringLiteral("width=200"), QStringLiteral("height=100"),
                  QStringLiteral("image=10;10;20;20;NoResize;none"),
                  QStringLiteral("image=100;10;20;20;play;none"), QStringLiteral("glassify=1")});
    ASSERT_TRUE(WaitExposed(window));
    ASSERT_TRUE(QTest::qWaitFor([&] { return probe.IsShaped(Id(window)); }));
    const QRegion shape = probe.BoundingShape(Id(window));
    EXPECT_FALSE(shape.contains(QPoint(15, 15)));
    EXPECT_TRUE(shape.contains(QPoint(105, 15)));
}

TEST_F(SkinWindowBehaviour, OnDesktopKeepsTheWindowBelowOthersWithoutADesktopWindow) {
    QPointer<frmMain> window = OpenSkin(QStringLiteral("Desk"), {QStringLiteral("ondesktop=True")});
    ASSERT_TRUE(WaitExposed(window));
    EXPECT_EQ(window->LastDesktopPlacement().outcome, DesktopPlacement::Outcome::KeptBelow);
    EXPECT_TRUE(QTest::qWaitFor([&] { return probe.HasState(Id(window), "_NET_WM_STATE_BELOW"); }));
    EXPECT_TRUE(probe.HasState(Id(window), "_NET_WM_STATE_SKIP_TASKBAR"));
}

TEST_F(SkinWindowBehaviour, OnDesktopIsNotAppliedWhenTheWindowSlidesUp) {
    SteppingPacing stepping;
    pacing = &stepping;
    QPointer<frmMain> window = OpenSkin(
        QStringLiteral("DeskSlide"), {QStringLiteral("height=20"), QStringLiteral("ondesktop=True"),
                                      QStringLiteral("showaction=slideup")});
    ASSERT_TRUE(WaitExposed(window));
    EXPECT_EQ(window->LastDesktopPlacement().outcome, DesktopPlacement::Outcome::NotAvailable)
        << "never asked";
    QTest::qWait(100);
    EXPECT_FALSE(probe.HasState(Id(window), "_NET_WM_STATE_BELOW"));
}

TEST_F(SkinWindowBehaviour, ShiftWithAnyKeyShowsMoveWindowOverTheSkinAndReleaseHidesIt) {
    QPointer<frmMain> window = OpenSkin(QStringLiteral("Keys"),
                                        {QStringLiteral("left=50"), QStringLiteral("top=60"),
                                         QStringLiteral("width=180"), QStringLiteral("height=40")});
    ASSERT_TRUE(WaitExposed(window));
    ASSERT_TRUE(QTest::qWaitFor([&] { return window->pos() == QPoint(50, 60); }));
    QTest::keyPress(window, Qt::Key_A, Qt::ShiftModifier);
    EXPECT_TRUE(window->lblMove()->isVisible());
    EXPECT_EQ(window->lblMove()->geometry(), QRect(0, 0, 180, 40));
    EXPECT_EQ(window->lblMove()->text(), QStringLiteral("Move Window"));
    QTest::keyRelease(window, Qt::Key_A, Qt::ShiftModifier);
    EXPECT_FALSE(window->lblMove()->isVisible());
    EXPECT_EQ(window->pos(), QPoint(50, 60)) << "nothing moved";
}

TEST_F(SkinWindowBehaviour, CtrlAndAltShowMoveWindowAPlainKeyDoesNot) {
    QPointer<frmMain> window = OpenSkin(QStringLiteral("Keys2"), {});
    ASSERT_TRUE(WaitExposed(window));
    QTest::keyPress(window, Qt::Key_B);
    EXPECT_FALSE(window->lblMove()->isVisible());
    QTest::keyPress(window, Qt::Key_Control, Qt::NoModifier);
    EXPECT_TRUE(window->lblMove()->isVisible());
    QTest::keyRelease(window, Qt::Key_Control, Qt::NoModifier);
    EXPECT_FALSE(window->lblMove()->isVisible());
    QTest::keyPress(window, Qt::Key_X, Qt::AltModifier);
    EXPECT_TRUE(window->lblMove()->isVisible());
}

TEST_F(SkinWindowBehaviour, AWindowMovedByDraggingMoveWindowRemembersTheNewPlace) {
    moveMethod = WindowMover::Method::ByHandOnly;
    const QString folder =
        WriteSkin(QStringLiteral("Drag"), {QStringLiteral("left=100"), QStringLiteral("top=100"),
                                           QStringLiteral("width=120"), QStringLiteral("height=40"),
                                           QStringLiteral("rememberpos=True")});
    QPointer<frmMain> window = Open(folder);
    ASSERT_TRUE(WaitExposed(window));
    ASSERT_TRUE(QTest::qWaitFor([&] { return window->pos() == QPoint(100, 100); }));
    window->StartMoveWindow();
    QWidget* handle = window->lblMove();
    SendMouse(handle, QEvent::MouseButtonPress, QPoint(110, 110), Qt::LeftButton, Qt::LeftButton);
    EXPECT_FALSE(handle->isVisible()) << "the handle goes away while the window moves";
    SendMouse(window, QEvent::MouseMove, QPoint(140, 130), Qt::NoButton, Qt::LeftButton);
    SendMouse(window, QEvent::MouseMove, QPoint(170, 160), Qt::NoButton, Qt::LeftButton);
    SendMouse(window, QEvent::MouseButtonRelease, QPoint(170, 160), Qt::LeftButton, Qt::NoButton);
    ASSERT_TRUE(QTest::qWaitFor([&] { return window->pos() == QPoint(160, 150); }))
        << window->pos().x() << "," << window->pos().y();
    window->Unload();
    QFile position(folder + QLatin1String("position.ini"));
    ASSERT_TRUE(position.open(QIODevice::ReadOnly));
    EXPECT_EQ(position.readAll(), QByteArray(" 2400\r\n 2250\r\n"));
}

TEST_F(SkinWindowBehaviour, ClosingWritesPositionIniInTwipsWhenRememberPosIsOn) {
    const QString folder =
        WriteSkin(QStringLiteral("Remember"), {QStringLiteral("left=30"), QStringLiteral("top=40"),
                                               QStringLiteral("rememberpos=1")});
    QPointer<frmMain> window = Open(folder);
    ASSERT_TRUE(WaitExposed(window));
    ASSERT_TRUE(QTest::qWaitFor([&] { return window->pos() == QPoint(30, 40); }));
    window->Unload();
    QFile position(folder + QLatin1String("position.ini"));
    ASSERT_TRUE(position.open(QIODevice::ReadOnly));
    EXPECT_EQ(position.readAll(), QByteArray(" 450\r\n 600\r\n"));
}

TEST_F(SkinWindowBehaviour, ClosingWithoutRememberPosWritesNoPositionFile) {
    const QString folder = WriteSkin(QStringLiteral("Forget"), {QStringLiteral("left=30")});
    QPointer<frmMain> window = Open(folder);
    window->Unload();
    EXPECT_FALSE(QFile::exists(folder + QLatin1String("position.ini")));
}

TEST_F(SkinWindowBehaviour, ClosingStopsHotkeysDisablesEveryTimerAndTellsTheShellWhileCounted) {
    QStringList order;
    services.CloseAllHotkeys = [&order](frmMain& window) {
        order.append(QStringLiteral("CloseAllHotkeys closing=") +
                     QString::number(window.Closing()));
    };
    QPointer<frmMain> window =
        OpenSkin(QStringLiteral("Close"),
                 {QStringLiteral("skinname=Closer"), QStringLiteral("timerevent=100;a"),
                  QStringLiteral("timerevent=200;b"), QStringLiteral("scrolltimer=50")});
    ASSERT_TRUE(WaitExposed(window));
    window->tmrTrackImage()->SetEnabled(true);
    window->Unload();
    ASSERT_FALSE(window.isNull()) << "deleted later, not inside Unload";
    EXPECT_EQ(order, QStringList{QStringLiteral("CloseAllHotkeys closing=1")});
    for (VbTimer* timer : window->findChildren<VbTimer*>()) {
        EXPECT_FALSE(timer->Enabled()) << qPrintable(timer->objectName());
        EXPECT_FALSE(timer->IsTicking());
    }
    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(unloadingCalls, QStringList{QStringLiteral("Closer")});
    EXPECT_EQ(countAtUnloading, QList<int>{1}) << "the closing window is still counted";
    EXPECT_EQ(OpenSkinWindows(), 0);
    window->Unload(); // a second close does nothing
    EXPECT_EQ(unloadingCalls.size(), 1);
    FlushDeletes();
    EXPECT_TRUE(window.isNull());
}

TEST_F(SkinWindowBehaviour, TheWindowSystemsCloseRequestRunsTheWindowsClosing) {
    QPointer<frmMain> window = OpenSkin(QStringLiteral("WmClose"), {});
    ASSERT_TRUE(WaitExposed(window));
    window->close();
    EXPECT_EQ(unloadingCalls.size(), 1);
    EXPECT_EQ(OpenSkinWindows(), 0);
}

TEST_F(SkinWindowBehaviour, AWindowWithoutASkinUnloadsItselfOnItsFirstActivation) {
    int firstActivations = 0;
    windowSignals.firstActivated = [&firstActivations] { ++firstActivations; };
    QPointer<frmMain> stray = Create();
    stray->show();
    ASSERT_TRUE(WaitExposed(stray));
    stray->activateWindow();
    EXPECT_TRUE(QTest::qWaitFor([&] { return OpenSkinWindows() == 0; }));
    EXPECT_EQ(firstActivations, 1) << "the first activation is signalled before the window goes";
}

TEST_F(SkinWindowBehaviour, EachWindowSignalsOnlyItsOwnFirstActivation) {
    int firstActivations = 0;
    windowSignals.firstActivated = [&firstActivations] { ++firstActivations; };
    QPointer<frmMain> window = OpenSkin(QStringLiteral("Activate"), {});
    ASSERT_TRUE(WaitExposed(window));
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitFor([&] { return window->isActiveWindow(); }));
    QPointer<frmMain> other = OpenSkin(QStringLiteral("Other"), {});
    ASSERT_TRUE(WaitExposed(other));
    other->activateWindow();
    ASSERT_TRUE(QTest::qWaitFor([&] { return other->isActiveWindow(); }));
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitFor([&] { return window->isActiveWindow(); }));
    EXPECT_EQ(firstActivations, 2)
        << "once per window; the binding hands the lyrics over once per run";
    EXPECT_EQ(OpenSkinWindows(), 2);
}

TEST_F(SkinWindowBehaviour, ASecondWindowOfAnOnlyOneInstanceSkinClosesBeforeItIsVisible) {
    QStringList ran;
    services.RunCode = [&ran](frmMain&, const QString& code) { ran.append(code); };
    const QString folder = WriteSkin(QStringLiteral("Single"), {QStringLiteral("skinname=X"),
                                                                QStringLiteral("onlyoneinstance="),
                                                                QStringLiteral("runcode=hello")});
    QPointer<frmMain> first = Open(folder);
    ASSERT_TRUE(WaitExposed(first));
    frmMain* second = Create();
    ShowCounter counter;
    second->installEventFilter(&counter);
    second->LoadSkin(folder + QLatin1String("skin.ini"), folder);
    const bool visibleBefore = second->isVisible();
    QPointer<frmMain> secondGuard = second;
    second->RunAfter();
    EXPECT_FALSE(visibleBefore);
    EXPECT_EQ(counter.shows, 0) << "never shown";
    second->removeEventFilter(&counter);
    EXPECT_EQ(ran, (QStringList{QStringLiteral("hello"), QStringLiteral("hello")}))
        << "its runcode lines already ran";
    EXPECT_EQ(OpenSkinWindows(), 1);
    EXPECT_TRUE(forms.Contains(first.data())) << "the window that was open first stays";
}

TEST_F(SkinWindowBehaviour, TwoSkinsWithoutSkinnameCountAsTheSameSkin) {
    QPointer<frmMain> a = OpenSkin(QStringLiteral("A"), {QStringLiteral("onlyoneinstance=False")});
    QPointer<frmMain> b = OpenSkin(QStringLiteral("B"), {QStringLiteral("onlyoneinstance=")});
    EXPECT_EQ(OpenSkinWindows(), 1);
    EXPECT_TRUE(forms.Contains(a.data()));
}

TEST_F(SkinWindowBehaviour, SingleInstanceComparesTagsExactly) {
    OpenSkin(QStringLiteral("Moon1"), {QStringLiteral("skinname=Moon")});
    OpenSkin(QStringLiteral("Moon2"),
             {QStringLiteral("skinname=moon"), QStringLiteral("onlyoneinstance=")});
    EXPECT_EQ(OpenSkinWindows(), 2);
}

TEST_F(SkinWindowBehaviour, APressOnTheWindowRaisesTheFlagRunsInteractionCodesThenFormclick) {
    QStringList ran;
    int menus = 0;
    services.RunCode = [&ran](frmMain&, const QString& code) { ran.append(code); };
    windowSignals.menuRequested = [&menus] { ++menus; };
    QPointer<frmMain> window =
        OpenSkin(QStringLiteral("Press"),
                 {QStringLiteral("anyinteraction=one"), QStringLiteral("anyinteraction=two"),
                  QStringLiteral("formclick=click"), QStringLiteral("label=0;0;50;20;x")});
    ASSERT_TRUE(WaitExposed(window));
    QTest::mousePress(window, Qt::RightButton, {}, QPoint(80, 50));
    EXPECT_TRUE(window->Interaction().IsRaised());
    EXPECT_EQ(ran,
              (QStringList{QStringLiteral("one"), QStringLiteral("two"), QStringLiteral("click")}));
    EXPECT_EQ(menus, 0);
    QTest::mouseRelease(window, Qt::RightButton, {}, QPoint(80, 50));
    EXPECT_EQ(menus, 1) << "a right release opens the menu";
    ran.clear();
    QTest::mouseClick(window->lblInfo(1), Qt::LeftButton, {}, QPoint(5, 5));
    EXPECT_EQ(ran.size(), 3) << "a press on a label is a press on the window";
}

TEST_F(SkinWindowBehaviour, FadeInWithTransparency200EndsAtAlpha200) {
    QPointer<frmMain> window =
        OpenSkin(QStringLiteral("FadeIn"),
                 {QStringLiteral("transparency=200"), QStringLiteral("showaction=fadein")});
    // The fade ran inside the opening; what counts is the alpha it left, not when the window
    // manager got round to exposing the window.
    ASSERT_TRUE(QTest::qWaitFor([&] { return window && window->isVisible(); }));
    EXPECT_EQ(WindowAlpha(window), 200);
    EXPECT_TRUE(QTest::qWaitFor([&] { return probe.Opacity(Id(window)) == 200u * 0x01010101u; }))
        << std::hex << probe.Opacity(Id(window)).value_or(0);
}

TEST_F(SkinWindowBehaviour, AClickDuringAFadeStopsItAtOnceAndLeavesThePartialAlpha) {
    SteppingPacing stepping;
    pacing = &stepping;
    QPointer<frmMain> window;
    stepping.atPump = [&](int pump) {
        if (pump == 30)
            QTest::mousePress(window, Qt::LeftButton, {}, QPoint(5, 5));
    };
    window = Create();
    const QString folder = WriteSkin(QStringLiteral("Stop"), {QStringLiteral("transparency=250"),
                                                              QStringLiteral("showaction=fadein"),
                                                              QStringLiteral("glassify=True")});
    window->LoadSkin(folder + QLatin1String("skin.ini"), folder);
    window->RunAfter();
    EXPECT_EQ(stepping.pumps, 30);
    EXPECT_EQ(WindowAlpha(window), 29);
    EXPECT_FALSE(window->Interaction().IsRaised());
    EXPECT_TRUE(QTest::qWaitFor([&] { return probe.Opacity(Id(window)) == 29u * 0x01010101u; }));
    window->NormalTransparency();
    EXPECT_EQ(WindowAlpha(window), 250);
}

TEST_F(SkinWindowBehaviour, AfterAnyClickTheNextFadeStopsAtItsFirstStep) {
    SteppingPacing stepping;
    pacing = &stepping;
    QPointer<frmMain> window =
        OpenSkin(QStringLiteral("Clicked"), {QStringLiteral("transparency=100")});
    ASSERT_TRUE(WaitExposed(window));
    QTest::mouseClick(window, Qt::LeftButton, {}, QPoint(5, 5));
    EXPECT_EQ(window->FadeIn(), EffectOutcome::StoppedByInteraction);
    EXPECT_EQ(WindowAlpha(window), 0);
}

TEST_F(SkinWindowBehaviour, FadeCloseWithTransparencyZeroFadesFrom255AndCloses) {
    SteppingPacing stepping;
    pacing = &stepping;
    QPointer<frmMain> window = OpenSkin(QStringLiteral("FadeClose"), {});
    ASSERT_TRUE(WaitExposed(window));
    EXPECT_EQ(window->FadeClose(), EffectOutcome::Completed);
    EXPECT_EQ(stepping.pumps, 256);
    EXPECT_EQ(window->Model().Transparency, 255);
    EXPECT_EQ(OpenSkinWindows(), 0);
    FlushDeletes();
    EXPECT_TRUE(window.isNull());
}

TEST_F(SkinWindowBehaviour, AFadeInterruptedByClosingTheWindowEndsWithoutACrash) {
    SteppingPacing stepping;
    pacing = &stepping;
    QPointer<frmMain> window =
        OpenSkin(QStringLiteral("Interrupted"), {QStringLiteral("transparency=200")});
    ASSERT_TRUE(WaitExposed(window));
    stepping.atPump = [&](int pump) {
        if (pump == 10)
            window->Unload();
    };
    EXPECT_EQ(window->FadeClose(), EffectOutcome::WindowGone);
    EXPECT_EQ(unloadingCalls.size(), 1);
    EXPECT_EQ(OpenSkinWindows(), 0);
}

TEST_F(SkinWindowBehaviour, AFadeWhoseWindowIsDeletedMeanwhileEndsWithoutACrash) {
    SteppingPacing stepping;
    pacing = &stepping;
    QPointer<frmMain> window =
        OpenSkin(QStringLiteral("Deleted"), {QStringLiteral("transparency=200")});
    ASSERT_TRUE(WaitExposed(window));
    frmMain* raw = window.data();
    stepping.atPump = [&](int pump) {
        if (pump == 5) {
            window->Unload();
            FlushDeletes();
        }
    };
    SkinWindowEffects effects(*raw);
    EXPECT_EQ(Pelorin::FadeIn(effects, stepping), EffectOutcome::WindowGone);
    EXPECT_TRUE(window.isNull());
}

TEST_F(SkinWindowBehaviour, SlideUpGrowsTheWindowFromItsBottomEdge) {
    SteppingPacing stepping;
    pacing = &stepping;
    QList<QRect> steps;
    QPointer<frmMain> window;
    stepping.atPump = [&](int) { steps.append(window->geometry()); };
    window = Create();
    const QString folder = WriteSkin(QStringLiteral("Slide"),
                                     {QStringLiteral("left=200"), QStringLiteral("top=100"),
                                      QStringLiteral("width=150"), QStringLiteral("height=60"),
                                      QStringLiteral("showaction=slideup")});
    window->LoadSkin(folder + QLatin1String("skin.ini"), folder);
    window->RunAfter();
    ASSERT_EQ(steps.size(), 60);
    EXPECT_EQ(steps.first(), QRect(200, 159, 150, 1));
    EXPECT_EQ(steps[29], QRect(200, 130, 150, 30));
    EXPECT_EQ(steps.last(), QRect(200, 100, 150, 60));
    EXPECT_EQ(stepping.sleeps, 60 * 3);
    ASSERT_TRUE(WaitExposed(window));
    EXPECT_TRUE(QTest::qWaitFor([&] { return window->geometry() == QRect(200, 100, 150, 60); }));
}

TEST_F(SkinWindowBehaviour, ShowActionFadeInInCapitalsIsAPlainShow) {
    SteppingPacing stepping;
    pacing = &stepping;
    QPointer<frmMain> window =
        OpenSkin(QStringLiteral("Capitals"),
                 {QStringLiteral("showaction=FadeIn"), QStringLiteral("ondesktop=True")});
    ASSERT_TRUE(WaitExposed(window));
    EXPECT_EQ(stepping.pumps, 0);
    EXPECT_FALSE(IsLayered(window));
    EXPECT_EQ(window->LastDesktopPlacement().outcome, DesktopPlacement::Outcome::KeptBelow)
        << "the plain path puts the window on the desktop";
}

TEST_F(SkinWindowBehaviour, AnElementTimerRunsItsCodeUntilTheWindowCloses) {
    QStringList ran;
    services.RunCode = [&ran](frmMain&, const QString& code) { ran.append(code); };
    QPointer<frmMain> window =
        OpenSkin(QStringLiteral("Tick"), {QStringLiteral("timerevent=20;tick")});
    ASSERT_TRUE(QTest::qWaitFor([&] { return ran.size() >= 2; }));
    window->Unload();
    const qsizetype count = ran.size();
    QTest::qWait(100);
    EXPECT_EQ(ran.size(), count);
}
