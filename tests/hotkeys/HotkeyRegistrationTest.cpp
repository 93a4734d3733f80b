// The hotkey machinery: atoms, the combination texts, registration with the system, the
// per-window procedure chain and the dispatch of a press back to its control. Real widgets
// (offscreen) own the hotkeys; the desktop's side is the recording system.
#include "base/VbError.h"
#include "hotkeys/ApiHotkey.h"
#include "hotkeys/GlobalAtoms.h"
#include "hotkeys/HotkeySubclass.h"
#include "hotkeys/VBHotkey.h"
#include "hotkeys/WindowProcedures.h"
#include "support/hotkeys/RecordingHotkeySystem.h"

#include <QSignalSpy>
#include <QTest>
#include <QWidget>
#include <gtest/gtest.h>
#include <memory>

using namespace Pelorin;
using namespace Pelorin::Testing;

namespace {

// Messages that reached the procedure a test put in front of the hotkey code.
QList<std::pair<quint32, qintptr>>& Seen() {
    static QList<std::pair<quint32, qintptr>> seen;
    return seen;
}

qintptr RecordingProc(WindowHandle, quint32 message, quintptr, qintptr lParam) {
    Seen().append({message, lParam});
    return 7;
}

class HotkeyRegistration : public ::testing::Test {
protected:
    void SetUp() override {
        HotkeySubclass::UsedCombinations().clear();
        Seen().clear();
        form.resize(10, 10);
        hwnd = form.winId();
    }

    // A control on the form wanting the combination.
    std::unique_ptr<VBHotkey> Control(int vkey, bool win = false, bool shift = false,
                                      bool ctrl = false, bool alt = false) {
        auto control = std::make_unique<VBHotkey>(&form);
        control->SetWinKey(win);
        control->SetShiftKey(shift);
        control->SetCtrlKey(ctrl);
        control->SetAltKey(alt);
        control->SetVKey(vkey);
        return control;
    }

    RecordingHotkeySystemScope scope;
    RecordingHotkeySystem& system = *scope.system;
    QWidget form;
    WindowHandle hwnd = 0;
};

TEST_F(HotkeyRegistration, WinShiftAndCode80GiveTheAtomNameWinShift080AndTheKeyWithModifiers12) {
    ApiHotkey hotkey;
    hotkey.SetWinKey(true);
    hotkey.SetShiftKey(true);
    hotkey.SetVKey(80);
    hotkey.Sethwnd(4523);
    EXPECT_EQ(hotkey.UniqueAtomName(), QStringLiteral("WIN+SHIFT+080"));
    EXPECT_EQ(hotkey.UniqueKey(), QStringLiteral("hwnd:4523VK:80Mod:12"));
}

TEST_F(HotkeyRegistration, TheAtomNameListsModifiersWinShiftControlAltInThatOrder) {
    ApiHotkey hotkey;
    hotkey.SetAltKey(true);
    hotkey.SetControlKey(true);
    hotkey.SetShiftKey(true);
    hotkey.SetWinKey(true);
    hotkey.SetVKey(5);
    EXPECT_EQ(hotkey.UniqueAtomName(), QStringLiteral("WIN+SHIFT+CONTROL+ALT+005"));
    ApiHotkey bare;
    bare.SetVKey(5);
    EXPECT_EQ(bare.UniqueAtomName(), QStringLiteral("005"));
}

TEST_F(HotkeyRegistration, ACodeOfAThousandGivesAFourDigitTailAndReadingTheAtomTakesTheLastThree) {
    ApiHotkey hotkey;
    hotkey.SetControlKey(true);
    hotkey.SetVKey(1234);
    EXPECT_EQ(hotkey.UniqueAtomName(), QStringLiteral("CONTROL+1234"));
    const quint16 atom = GlobalAtoms::Add(hotkey.UniqueAtomName());
    ApiHotkey read;
    read.ReadFromAtom(atom);
    EXPECT_TRUE(read.ControlKey());
    EXPECT_FALSE(read.WinKey());
    EXPECT_EQ(read.VKey(), 234);
    GlobalAtoms::Delete(atom);
}

TEST_F(HotkeyRegistration, ReadingAnAtomOnlySetsModifiersItNeverClearsThem) {
    const quint16 atom = GlobalAtoms::Add(QStringLiteral("alt+065"));
    ApiHotkey read;
    read.SetWinKey(true);
    read.ReadFromAtom(atom);
    EXPECT_TRUE(read.WinKey());
    EXPECT_TRUE(read.AltKey()) << "the names are found in any letter case";
    EXPECT_EQ(read.VKey(), 65);
    GlobalAtoms::Delete(atom);
}

TEST_F(HotkeyRegistration, TheModifierPropertiesAreBitsOfOneSet) {
    ApiHotkey hotkey;
    hotkey.SetModifier(ApiHotkey::ModAlt | ApiHotkey::ModWin);
    EXPECT_TRUE(hotkey.AltKey());
    EXPECT_TRUE(hotkey.WinKey());
    EXPECT_FALSE(hotkey.ShiftKey());
    hotkey.SetShiftKey(true);
    hotkey.SetAltKey(false);
    EXPECT_EQ(hotkey.Modifier(), ApiHotkey::ModShift | ApiHotkey::ModWin);
}

TEST_F(HotkeyRegistration, MatchingComparesModifiersAndKeyButNotWindowOrAtom) {
    ApiHotkey a;
    a.SetVKey(80);
    a.SetWinKey(true);
    a.Sethwnd(1);
    ApiHotkey b;
    b.SetVKey(80);
    b.SetModifier(ApiHotkey::ModWin);
    b.Sethwnd(2);
    EXPECT_TRUE(a.MatchedKey(b));
    b.SetShiftKey(true);
    EXPECT_FALSE(a.MatchedKey(b));
}

TEST_F(HotkeyRegistration, TheSameAtomNameGivesTheSameAtomAndTheLastDeleteRemovesIt) {
    const quint16 first = GlobalAtoms::Add(QStringLiteral("WIN+080"));
    const quint16 second = GlobalAtoms::Add(QStringLiteral("win+080"));
    EXPECT_GE(first, GlobalAtoms::FirstAtom);
    EXPECT_EQ(first, second);
    EXPECT_EQ(GlobalAtoms::References(first), 2);
    EXPECT_TRUE(GlobalAtoms::Delete(first));
    EXPECT_EQ(GlobalAtoms::Name(first), QStringLiteral("WIN+080"));
    EXPECT_TRUE(GlobalAtoms::Delete(first));
    EXPECT_EQ(GlobalAtoms::Name(first), QString());
    EXPECT_FALSE(GlobalAtoms::Delete(first));
}

TEST_F(HotkeyRegistration, ANewControlWantsWinAndCode65AndTheBagIsReadAndWrittenInOrder) {
    VBHotkey control(&form);
    EXPECT_TRUE(control.WinKey());
    EXPECT_FALSE(control.AltKey());
    EXPECT_FALSE(control.ShiftKey());
    EXPECT_FALSE(control.CtrlKey());
    EXPECT_EQ(control.VKey(), 65);
    QStringList names;
    for (const auto& [name, value] : control.WriteProperties())
        names.append(name);
    EXPECT_EQ(names, QStringList({QStringLiteral("AltKey"), QStringLiteral("ShiftKey"),
                                  QStringLiteral("CtrlKey"), QStringLiteral("VKey"),
                                  QStringLiteral("WinKey")}));
    control.ReadProperties({{QStringLiteral("VKey"), 80}, {QStringLiteral("AltKey"), true}});
    EXPECT_EQ(control.VKey(), 80);
    EXPECT_TRUE(control.AltKey());
    EXPECT_TRUE(control.WinKey()) << "a name the bag lacks takes its default";
}

TEST_F(HotkeyRegistration, EverySettingReportsThePropertyChangedUnderItsName) {
    VBHotkey control(&form);
    QSignalSpy changed(&control, &VBHotkey::propertyChanged);
    control.SetAltKey(true);
    control.SetShiftKey(true);
    control.SetCtrlKey(true);
    control.SetWinKey(false);
    control.SetVKey(70);
    QStringList names;
    for (const QList<QVariant>& call : changed)
        names.append(call.at(0).toString());
    EXPECT_EQ(names, QStringList({QStringLiteral("AltKey"), QStringLiteral("ShiftKey"),
                                  QStringLiteral("CtrlKey"), QStringLiteral("WinKey"),
                                  QStringLiteral("VKey")}));
}

TEST_F(HotkeyRegistration, StartingRegistersForTheFormSubclassesItAndListsTheControl) {
    auto control = Control(80, true);
    control->InitTheThing();
    ASSERT_EQ(system.registered.size(), 1);
    EXPECT_EQ(system.registered.at(0).hwnd, hwnd);
    EXPECT_EQ(system.registered.at(0).modifiers, ApiHotkey::ModWin);
    EXPECT_EQ(system.registered.at(0).vkey, 80);
    EXPECT_EQ(system.registered.at(0).id, control->hAtom());
    EXPECT_EQ(GlobalAtoms::Name(control->hAtom()), QStringLiteral("WIN+080"));
    EXPECT_EQ(control->hKey(), 1);
    EXPECT_EQ(control->OwnerHandle(), hwnd);
    EXPECT_EQ(WindowProcedures::GetWindowProc(hwnd), &HotkeySubclass::HotkeyWindowProc);
    EXPECT_EQ(HotkeySubclass::ActiveHotkey(control->UniqueKey()), control.get());
    EXPECT_EQ(HotkeySubclass::UsedCombinations(), QStringLiteral("{False;False;False;True;80}"));
    control->StopHotkey();
}

TEST_F(HotkeyRegistration, ASecondControlWithTheSameCombinationShowsTheConflictAndIsNotRegistered) {
    auto first = Control(80, true);
    auto second = Control(80, true);
    first->InitTheThing();
    testing::internal::CaptureStderr();
    second->InitTheThing();
    const std::string err = testing::internal::GetCapturedStderr();
    EXPECT_NE(err.find("Error!: Error: There was a conflict in key combinations! Please make "
                       "sure that you fix this. The program will now continue to load... / "
                       "Debug: {False;False;False;True;80}"),
              std::string::npos)
        << err;
    EXPECT_EQ(system.registered.size(), 1);
    EXPECT_EQ(second->OwnerHandle(), 0U) << "the later control is never started";
    EXPECT_EQ(HotkeySubclass::UsedCombinations(), QStringLiteral("{False;False;False;True;80}"))
        << "the combination is held once";
    first->StopHotkey();
    second->StopHotkey();
}

TEST_F(HotkeyRegistration, ACombinationAnotherProgramHoldsFailsSilentlyOnTheFirstRegistration) {
    system.heldElsewhere.append(RecordingHotkeySystem::Combination(ApiHotkey::ModControl, 80));
    auto control = Control(80, false, false, true);
    QSignalSpy errors(control.get(), &VBHotkey::ErrorOccured);
    testing::internal::CaptureStderr();
    control->InitTheThing();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "") << "no message box";
    EXPECT_EQ(control->hKey(), 0);
    EXPECT_EQ(errors.count(), 0) << "the control is not listed yet when it first registers";
    EXPECT_NE(control->hAtom(), 0) << "the atom is kept";
    control->StopHotkey();
}

TEST_F(HotkeyRegistration,
       ARefusedRegistrationOfAListedControlRaisesErrorOccuredWithTheSystemText) {
    auto control = Control(80, false, false, true);
    control->InitTheThing();
    QSignalSpy errors(control.get(), &VBHotkey::ErrorOccured);
    // Registering again while it is held: the system refuses, and the control is listed now.
    const_cast<ApiHotkey*>(control->Hotkey())->Register();
    ASSERT_EQ(errors.count(), 1);
    EXPECT_EQ(errors.at(0).at(0).toString(), QStringLiteral("ApiHotkey:Register"));
    EXPECT_EQ(errors.at(0).at(1).toString(), QStringLiteral("Hot key is already registered"));
    control->StopHotkey();
}

TEST_F(HotkeyRegistration, StoppingOneOfThreeHotkeysForgetsAllThreeButUnregistersOnlyItself) {
    WindowProcedures::SetWindowProc(hwnd, &RecordingProc);
    auto a = Control(65, false, false, true);
    auto b = Control(66, false, false, true);
    auto c = Control(67, false, false, true);
    a->InitTheThing();
    b->InitTheThing();
    c->InitTheThing();
    EXPECT_EQ(HotkeySubclass::ActiveHotkeyCount(), 3);
    ASSERT_NE(HotkeySubclass::SubclassedWindow(hwnd), nullptr);
    EXPECT_EQ(HotkeySubclass::SubclassedWindow(hwnd)->OldWndProc(), &RecordingProc);
    EXPECT_EQ(HotkeySubclass::SubclassedWindow(hwnd)->NewWndProc(),
              &HotkeySubclass::HotkeyWindowProc);

    b->StopHotkey();
    EXPECT_EQ(HotkeySubclass::ActiveHotkeyCount(), 0);
    EXPECT_FALSE(HotkeySubclass::HasActiveHotkeys()) << "an empty collection is released";
    EXPECT_FALSE(HotkeySubclass::HasSubclassedWindows());
    EXPECT_EQ(WindowProcedures::GetWindowProc(hwnd), &RecordingProc) << "the old procedure is back";
    EXPECT_EQ(system.registered.size(), 2) << "only the stopped hotkey is unregistered";
    EXPECT_EQ(b->Hotkey(), nullptr);
    EXPECT_THROW(b->hAtom(), VbError);

    a->StopHotkey();
    c->StopHotkey();
    WindowProcedures::SetWindowProc(hwnd, &WindowProcedures::DefWindowProc);
}

TEST_F(HotkeyRegistration, AWindowIsSubclassedOnceHoweverManyHotkeysItOwns) {
    auto a = Control(65, true);
    auto b = Control(66, true);
    a->InitTheThing();
    b->InitTheThing();
    ASSERT_NE(HotkeySubclass::SubclassedWindow(hwnd), nullptr);
    EXPECT_EQ(HotkeySubclass::SubclassedWindow(hwnd)->OldWndProc(),
              &WindowProcedures::DefWindowProc)
        << "the second start did not record the hotkey procedure as the old one";
    a->StopHotkey();
    b->StopHotkey();
    EXPECT_EQ(WindowProcedures::GetWindowProc(hwnd), &WindowProcedures::DefWindowProc);
}

TEST_F(HotkeyRegistration, APressReachesTheControlThenThePreviousProcedure) {
    WindowProcedures::SetWindowProc(hwnd, &RecordingProc);
    auto control = Control(80, true);
    control->InitTheThing();
    QSignalSpy pressed(control.get(), &VBHotkey::HotkeyPressed);
    ASSERT_TRUE(system.Press(ApiHotkey::ModWin, 80));
    ASSERT_TRUE(QTest::qWaitFor([&] { return pressed.count() == 1; }, 2000));
    ASSERT_EQ(Seen().size(), 1);
    EXPECT_EQ(Seen().at(0).first, WindowProcedures::WM_HOTKEY);
    control->StopHotkey();
    WindowProcedures::SetWindowProc(hwnd, &WindowProcedures::DefWindowProc);
}

TEST_F(HotkeyRegistration, AHotkeyMessageForAnUnknownCombinationStillReachesThePreviousProcedure) {
    WindowProcedures::SetWindowProc(hwnd, &RecordingProc);
    auto control = Control(80, true);
    control->InitTheThing();
    QSignalSpy pressed(control.get(), &VBHotkey::HotkeyPressed);
    const qintptr lParam = WindowProcedures::HotkeyLParam(ApiHotkey::ModAlt, 81);
    EXPECT_EQ(WindowProcedures::SendMessage(hwnd, WindowProcedures::WM_HOTKEY, 1, lParam), 7);
    EXPECT_EQ(pressed.count(), 0);
    ASSERT_EQ(Seen().size(), 1);
    EXPECT_EQ(Seen().at(0).second, lParam);
    control->StopHotkey();
    WindowProcedures::SetWindowProc(hwnd, &WindowProcedures::DefWindowProc);
}

TEST_F(HotkeyRegistration, UnregisteringTwiceUnregistersAndDeletesTheAtomTwice) {
    ApiHotkey hotkey;
    hotkey.SetVKey(90);
    hotkey.SetControlKey(true);
    hotkey.Sethwnd(hwnd);
    const quint16 extra = GlobalAtoms::Add(hotkey.UniqueAtomName()); // a second reference
    hotkey.Register();
    ASSERT_EQ(hotkey.hAtom(), extra);
    EXPECT_EQ(GlobalAtoms::References(extra), 2);
    system.calls.clear();
    hotkey.Unregister();
    hotkey.Unregister();
    EXPECT_EQ(hotkey.hAtom(), extra) << "the atom value is kept";
    EXPECT_EQ(system.calls, QStringList({QStringLiteral("unregister %1").arg(extra),
                                         QStringLiteral("unregister %1").arg(extra)}));
    EXPECT_EQ(GlobalAtoms::References(extra), 0) << "both references were deleted";
}

TEST_F(HotkeyRegistration, AControlGoingAwayForgetsEveryStartedCombination) {
    auto a = Control(65, true);
    auto b = Control(66, true);
    a->InitTheThing();
    b->InitTheThing();
    a->StopHotkey();
    EXPECT_FALSE(HotkeySubclass::UsedCombinations().isEmpty()) << "stopping forgets nothing";
    b->StopHotkey();
    a.reset();
    EXPECT_EQ(HotkeySubclass::UsedCombinations(), QString()) << "all of them, not only its own";
}

TEST_F(HotkeyRegistration, AControlInADesignEnvironmentRegistersNothingButCountsItsCombination) {
    auto control = Control(80, true);
    control->SetUserMode(false);
    control->InitTheThing();
    EXPECT_TRUE(system.registered.isEmpty());
    EXPECT_EQ(control->OwnerHandle(), 0U);
    EXPECT_EQ(HotkeySubclass::UsedCombinations(), QStringLiteral("{False;False;False;True;80}"));
}

TEST_F(HotkeyRegistration, TheErrorTextIsTheSystemsTextForItsLastError) {
    system.heldElsewhere.append(RecordingHotkeySystem::Combination(0, 13));
    system.RegisterHotKey(hwnd, 1, 0, 13);
    EXPECT_EQ(HotkeySubclass::LastDllErrorText(), QStringLiteral("Hot key is already registered"));
    system.UnregisterHotKey(hwnd, 99);
    EXPECT_EQ(HotkeySubclass::LastDllErrorText(), QStringLiteral("Hot key is not registered"));
}

} // namespace
