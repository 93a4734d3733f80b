// Keyboard shortcuts of real skin windows (offscreen) bound to the in-memory player: key
// specifications, the personal file, a press running the binding's code, and closing. The
// desktop's side is the recording hotkey system.
#include "hotkeys/KeyboardShortcuts.h"

#include "app/binding/BoundWindowRig.h"
#include "hotkeys/ApiHotkey.h"
#include "hotkeys/HotkeySubclass.h"
#include "hotkeys/VBHotkey.h"
#include "hotkeys/WindowProcedures.h"
#include "support/hotkeys/RecordingHotkeySystem.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

using namespace Pelorin;
using namespace Pelorin::Testing;

namespace {

constexpr int Alt = ApiHotkey::ModAlt;
constexpr int Control = ApiHotkey::ModControl;
constexpr int Shift = ApiHotkey::ModShift;
constexpr int Win = ApiHotkey::ModWin;

class KeyboardShortcutsTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(rig.dir.isValid());
        HotkeySubclass::UsedCombinations().clear();
        rig.Player();
    }

    // Opens a skin whose only lines are its size and these bindings.
    SkinWindowBinding* OpenWith(const QStringList& keys,
                                const QString& name = QStringLiteral("Keys"),
                                const QString& code = QStringLiteral("playpause")) {
        QStringList lines{QStringLiteral("width=100"), QStringLiteral("height=40")};
        for (const QString& key : keys)
            lines.append(QStringLiteral("keyboardshortcut=") + key + u';' + code);
        return rig.OpenSkin(name, lines);
    }

    // The combination the first registration asked for, as "modifiers/key".
    QString Registered(int index = 0) const {
        if (index >= system.registered.size())
            return QStringLiteral("none");
        const auto& r = system.registered.at(index);
        return RecordingHotkeySystem::Combination(r.modifiers, r.vkey);
    }
    static QString Combination(int modifiers, int vkey) {
        return RecordingHotkeySystem::Combination(modifiers, vkey);
    }

    void WritePersonal(const QStringList& lines) {
        QFile file(rig.dir.path() + QStringLiteral("/personal.ini"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        for (const QString& line : lines)
            file.write(line.toUtf8() + "\r\n");
    }

    void Close(SkinWindowBinding* binding) {
        binding->Window()->Unload();
        BoundWindowRig::FlushDeletes();
    }

    RecordingHotkeySystemScope scope;
    RecordingHotkeySystem& system = *scope.system;
    BoundWindowRig rig;
};

TEST_F(KeyboardShortcutsTest, WinPlusPGivesWinAnd80InAnyLetterCase) {
    OpenWith({QStringLiteral("WIN+P"), QStringLiteral("win+q")});
    EXPECT_EQ(Registered(0), Combination(Win, 80));
    EXPECT_EQ(Registered(1), Combination(Win, 81));
}

TEST_F(KeyboardShortcutsTest, ControlAltF5GivesControlAltAnd116) {
    OpenWith({QStringLiteral("CONTROL+ALT+F5")});
    EXPECT_EQ(Registered(), Combination(Control | Alt, 116));
}

TEST_F(KeyboardShortcutsTest, FAloneIsTheLetterFNotTheFunctionKeyTest) {
    OpenWith({QStringLiteral("WIN+F")});
    EXPECT_EQ(Registered(), Combination(Win, 70));
}

TEST_F(KeyboardShortcutsTest, FooGives111TenGives58AndNumpadAloneGives96) {
    OpenWith({QStringLiteral("ALT+FOO"), QStringLiteral("ALT+10"), QStringLiteral("ALT+NUMPAD")});
    EXPECT_EQ(Registered(0), Combination(Alt, 111));
    EXPECT_EQ(Registered(1), Combination(Alt, 58));
    EXPECT_EQ(Registered(2), Combination(Alt, 96));
}

TEST_F(KeyboardShortcutsTest, NamesOutsideTheTableLeaveTheKeySoWinSpaceIsWinAndTheLeftArrow) {
    OpenWith({QStringLiteral("WIN+SPACE"), QStringLiteral("SHIFT+ESC"),
              QStringLiteral("CONTROL+INSERT")});
    EXPECT_EQ(Registered(0), Combination(Win, 37));
    EXPECT_EQ(Registered(1), Combination(Shift, 37));
    EXPECT_EQ(Registered(2), Combination(Control, 37));
}

TEST_F(KeyboardShortcutsTest, AltShiftWithoutAKeyRegistersTheDesignTimeLeftArrow) {
    OpenWith({QStringLiteral("ALT+SHIFT")});
    EXPECT_EQ(Registered(), Combination(Alt | Shift, 37));
}

TEST_F(KeyboardShortcutsTest, NamedKeysNumpadAndFunctionKeysGiveTheirCodes) {
    OpenWith({QStringLiteral("ALT+LEFTARROW"), QStringLiteral("ALT+RIGHTARROW"),
              QStringLiteral("ALT+UPARROW"), QStringLiteral("ALT+DOWNARROW"),
              QStringLiteral("ALT+ENTER"), QStringLiteral("ALT+BACKSPACE"),
              QStringLiteral("ALT+TAB"), QStringLiteral("ALT+PAGEUP"),
              QStringLiteral("ALT+PAGEDOWN"), QStringLiteral("shift+numpad3"),
              QStringLiteral("SHIFT+F12"), QStringLiteral("SHIFT+7"), QStringLiteral("SHIFT+.")});
    const QStringList expected{
        Combination(Alt, 37),   Combination(Alt, 39),    Combination(Alt, 38),
        Combination(Alt, 40),   Combination(Alt, 13),    Combination(Alt, 8),
        Combination(Alt, 9),    Combination(Alt, 33),    Combination(Alt, 34),
        Combination(Shift, 99), Combination(Shift, 123), Combination(Shift, 55),
        Combination(Shift, 46)};
    for (int i = 0; i < expected.size(); ++i)
        EXPECT_EQ(Registered(i), expected.at(i)) << "binding " << i;
}

TEST_F(KeyboardShortcutsTest, WhenSeveralNamesSetTheKeyTheLastOneWins) {
    OpenWith({QStringLiteral("A+WIN+B")});
    EXPECT_EQ(Registered(), Combination(Win, 66));
}

TEST_F(KeyboardShortcutsTest, AnEmptySpecificationAndAllModifiersKeepTheLeftArrow) {
    OpenWith({QString(), QStringLiteral("ALT+SHIFT+CONTROL+WIN")});
    EXPECT_EQ(Registered(0), Combination(0, 37));
    EXPECT_EQ(Registered(1), Combination(Alt | Shift | Control | Win, 37));
}

TEST_F(KeyboardShortcutsTest, ASkinWithoutShortcutsCreatesNoHotkeyAndElementZeroIsNotStarted) {
    SkinWindowBinding* binding = OpenWith({});
    EXPECT_TRUE(system.registered.isEmpty());
    EXPECT_TRUE(system.calls.isEmpty());
    EXPECT_EQ(binding->Shortcuts().Count(), 1) << "element 0 exists";
    EXPECT_EQ(binding->Shortcuts().Control(0)->OwnerHandle(), 0U);
    EXPECT_EQ(HotkeySubclass::UsedCombinations(), QString());
}

TEST_F(KeyboardShortcutsTest, EveryBindingGetsItsOwnElementStartedInOrder) {
    SkinWindowBinding* binding =
        OpenWith({QStringLiteral("WIN+A"), QStringLiteral("WIN+B"), QStringLiteral("WIN+C")});
    EXPECT_EQ(binding->Shortcuts().Count(), 3);
    EXPECT_EQ(HotkeySubclass::UsedCombinations(),
              QStringLiteral("{False;False;False;True;65}{False;False;False;True;66}"
                             "{False;False;False;True;67}"));
}

TEST_F(KeyboardShortcutsTest, APressRunsTheBindingsCodeOnItsWindow) {
    rig.PlayTrack(BoundWindowRig::Track(QStringLiteral("Song"), 100));
    rig.Player().Pause();
    ASSERT_NE(rig.Player().playState(), MemoryPlayState::Playing);
    OpenWith({QStringLiteral("CONTROL+ALT+P")});
    ASSERT_TRUE(system.Press(Control | Alt, 80));
    EXPECT_TRUE(BoundWindowRig::WaitFor(
        [&] { return rig.Player().playState() == MemoryPlayState::Playing; }));
    ASSERT_TRUE(system.Press(Control | Alt, 80));
    EXPECT_TRUE(BoundWindowRig::WaitFor(
        [&] { return rig.Player().playState() != MemoryPlayState::Playing; }));
}

TEST_F(KeyboardShortcutsTest, APressRunsTheCodeOfItsOwnBindingOnly) {
    QStringList lines{QStringLiteral("width=100"), QStringLiteral("height=40"),
                      QStringLiteral("keyboardshortcut=ALT+A;showskin=First"),
                      QStringLiteral("keyboardshortcut=ALT+B;showskin=Second")};
    rig.OpenSkin(QStringLiteral("Two"), lines);
    ASSERT_TRUE(system.Press(Alt, 66));
    ASSERT_TRUE(BoundWindowRig::WaitFor([&] { return rig.opened.size() == 1; }));
    EXPECT_TRUE(rig.opened.first().contains(QStringLiteral("/Skins/Second/")))
        << rig.opened.first().toStdString();
}

TEST_F(KeyboardShortcutsTest, TheSameCombinationTwiceInOneSkinShowsTheConflictAndLoadingGoesOn) {
    testing::internal::CaptureStderr();
    SkinWindowBinding* binding = rig.OpenSkin(
        QStringLiteral("Twice"), {QStringLiteral("width=100"), QStringLiteral("height=40"),
                                  QStringLiteral("keyboardshortcut=WIN+P;playpause"),
                                  QStringLiteral("keyboardshortcut=win+p;nexttrack"),
                                  QStringLiteral("keyboardshortcut=WIN+N;nexttrack")});
    const std::string err = testing::internal::GetCapturedStderr();
    EXPECT_NE(err.find("Error!: Error: There was a conflict in key combinations!"),
              std::string::npos)
        << err;
    EXPECT_EQ(system.registered.size(), 2) << "the duplicate is not registered, the next one is";
    EXPECT_FALSE(binding->Window()->IsUnloaded());
}

TEST_F(KeyboardShortcutsTest, TwoSkinWindowsWithTheSameCombinationGiveTheLaterOneTheConflict) {
    OpenWith({QStringLiteral("WIN+P")}, QStringLiteral("One"));
    testing::internal::CaptureStderr();
    OpenWith({QStringLiteral("WIN+P")}, QStringLiteral("Two"));
    const std::string err = testing::internal::GetCapturedStderr();
    EXPECT_NE(err.find("There was a conflict in key combinations"), std::string::npos) << err;
    EXPECT_EQ(system.registered.size(), 1);
}

TEST_F(KeyboardShortcutsTest, PersonalShortcutsAndLinesApplyToTheFirstSkinWindow) {
    WritePersonal({QStringLiteral("'Keyboard Shortcuts below added by Keyboard Manager"),
                   QStringLiteral("keyboardshortcut=CONTROL+SHIFT+N;nexttrack")});
    SkinWindowBinding* binding = OpenWith({QStringLiteral("WIN+P")});
    EXPECT_EQ(Registered(0), Combination(Win, 80));
    EXPECT_EQ(Registered(1), Combination(Control | Shift, 78));
    EXPECT_EQ(binding->Window()->Model().KeyShortcuts.size(), 3) << "two and the spare record";
}

TEST_F(KeyboardShortcutsTest,
       ASecondSkinWindowOpenedWhileTheFirstIsOpenDoesNotLoadThePersonalFile) {
    WritePersonal({QStringLiteral("keyboardshortcut=CONTROL+SHIFT+N;nexttrack")});
    OpenWith({}, QStringLiteral("First"));
    ASSERT_EQ(system.registered.size(), 1);
    SkinWindowBinding* second = OpenWith({}, QStringLiteral("Second"));
    EXPECT_EQ(system.registered.size(), 1);
    EXPECT_EQ(second->Window()->Model().KeyShortcuts.size(), 1) << "only the spare record";
}

TEST_F(KeyboardShortcutsTest,
       ASkinAndThePersonalFileBindingTheSameKeysGiveThePersonalOneTheConflict) {
    WritePersonal({QStringLiteral("keyboardshortcut=WIN+P;nexttrack")});
    testing::internal::CaptureStderr();
    OpenWith({QStringLiteral("WIN+P")});
    const std::string err = testing::internal::GetCapturedStderr();
    EXPECT_NE(err.find("There was a conflict in key combinations"), std::string::npos) << err;
    ASSERT_EQ(system.registered.size(), 1);
}

TEST_F(KeyboardShortcutsTest, AMissingPersonalFileReadsAsEmpty) {
    testing::internal::CaptureStderr();
    SkinWindowBinding* binding = OpenWith({QStringLiteral("WIN+P")});
    EXPECT_EQ(testing::internal::GetCapturedStderr().find("Pelorin"), std::string::npos)
        << "no message";
    EXPECT_EQ(binding->Window()->Model().KeyShortcuts.size(), 2);
}

TEST_F(KeyboardShortcutsTest, APersonalFileThatIsAFolderIsReportedAndTheSkinStillLoads) {
    ASSERT_TRUE(QDir().mkpath(rig.dir.path() + QStringLiteral("/personal.ini")));
    testing::internal::CaptureStderr();
    SkinWindowBinding* binding = OpenWith({QStringLiteral("WIN+P")});
    const std::string err = testing::internal::GetCapturedStderr();
    EXPECT_NE(err.find("Pelorin cannot read your personal shortcuts"), std::string::npos) << err;
    EXPECT_NE(err.find("personal.ini is not a regular file"), std::string::npos) << err;
    EXPECT_EQ(Registered(), Combination(Win, 80)) << "the skin's own bindings still register";
    EXPECT_FALSE(binding->Window()->IsUnloaded());
}

TEST_F(KeyboardShortcutsTest, ClosingTheWindowUnregistersEveryHotkeyAndRestoresItsProcedure) {
    SkinWindowBinding* binding =
        OpenWith({QStringLiteral("WIN+A"), QStringLiteral("WIN+B"), QStringLiteral("WIN+C")});
    const WindowHandle hwnd = binding->Window()->winId();
    ASSERT_EQ(system.registered.size(), 3);
    ASSERT_EQ(WindowProcedures::GetWindowProc(hwnd), &HotkeySubclass::HotkeyWindowProc);
    Close(binding);
    EXPECT_TRUE(system.registered.isEmpty());
    EXPECT_EQ(WindowProcedures::GetWindowProc(hwnd), &WindowProcedures::DefWindowProc);
    EXPECT_FALSE(HotkeySubclass::HasActiveHotkeys());
    EXPECT_EQ(HotkeySubclass::UsedCombinations(), QString()) << "the controls went with the window";
}

TEST_F(KeyboardShortcutsTest, ReopeningASkinRegistersItsBindingsAfreshWithoutAConflict) {
    Close(OpenWith({QStringLiteral("WIN+P")}));
    testing::internal::CaptureStderr();
    OpenWith({QStringLiteral("WIN+P")});
    EXPECT_EQ(testing::internal::GetCapturedStderr().find("conflict"), std::string::npos);
    EXPECT_EQ(Registered(), Combination(Win, 80));
    ASSERT_TRUE(system.Press(Win, 80));
}

TEST_F(KeyboardShortcutsTest, AWindowClosedByItsOwnHotkeyClosesCleanlyAndReleasesTheKey) {
    SkinWindowBinding* binding =
        OpenWith({QStringLiteral("ALT+Q")}, QStringLiteral("Keys"), QStringLiteral("closeskin"));
    QPointer<frmMain> window = binding->Window();
    ASSERT_TRUE(system.Press(Alt, 81));
    EXPECT_TRUE(BoundWindowRig::WaitFor([&] { return window.isNull() || window->IsUnloaded(); }));
    BoundWindowRig::FlushDeletes();
    EXPECT_TRUE(system.registered.isEmpty());
    EXPECT_FALSE(system.Press(Alt, 81));
}

TEST_F(KeyboardShortcutsTest, ATenKilobyteKeySpecificationIsReportedAsAnOverflowWithoutACrash) {
    testing::internal::CaptureStderr();
    SkinWindowBinding* binding =
        OpenWith({QStringLiteral("F") + QString(10 * 1024, u'9'), QStringLiteral("WIN+P")});
    const std::string err = testing::internal::GetCapturedStderr();
    EXPECT_NE(err.find("Overflow"), std::string::npos) << err;
    EXPECT_TRUE(system.registered.isEmpty()) << "the error ends the registration loop";
    EXPECT_FALSE(binding->Window()->IsUnloaded());
}

TEST_F(KeyboardShortcutsTest, ALongListOfUnknownNamesChangesNothing) {
    QStringList names;
    for (int i = 0; i < 2000; ++i)
        names.append(QStringLiteral("NOSUCHKEY"));
    OpenWith({names.join(u'+')});
    EXPECT_EQ(Registered(), Combination(0, 37));
}

TEST_F(KeyboardShortcutsTest, AThousandBindingsInOneSkinEachRegister) {
    QStringList keys;
    for (int i = 0; i < 1000; ++i)
        keys.append(QStringLiteral("CONTROL+NUMPAD%1").arg(i));
    SkinWindowBinding* binding = OpenWith(keys);
    EXPECT_EQ(system.registered.size(), 1000);
    EXPECT_EQ(binding->Shortcuts().Count(), 1000);
    Close(binding);
    EXPECT_TRUE(system.registered.isEmpty());
}

} // namespace
