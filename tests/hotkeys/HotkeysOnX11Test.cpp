// Keyboard shortcuts on a real X server (Xvfb with openbox): skin windows bound to the in-memory
// player grab their keys through the X11 hotkey system, xdotool presses them, and a second X
// client plays "another program" that holds or wants the same keys.
#include "X11Probe.h"
#include "app/binding/BoundWindowRig.h"
#include "hotkeys/HotkeySubclass.h"
#include "hotkeys/HotkeySystem.h"
#include "hotkeys/KeyboardShortcuts.h"
#include "hotkeys/VBHotkey.h"

#include <QProcess>
#include <cstdlib>
#include <gtest/gtest.h>
#include <xcb/xcb_keysyms.h>

using namespace Pelorin;
using namespace Pelorin::Testing;

namespace {

constexpr std::uint32_t XK_p = 0x70;
constexpr std::uint32_t XK_q = 0x71;

bool Xdotool(const QStringList& arguments) {
    QProcess process;
    process.start(QStringLiteral("xdotool"), arguments);
    return process.waitForFinished(10000) && process.exitStatus() == QProcess::NormalExit &&
           process.exitCode() == 0;
}

// Another program on the same X server, holding or trying to hold a key.
class OtherClient {
public:
    OtherClient() : m_symbols(xcb_key_symbols_alloc(m_probe.Connection())) {}
    ~OtherClient() { xcb_key_symbols_free(m_symbols); }
    OtherClient(const OtherClient&) = delete;
    OtherClient& operator=(const OtherClient&) = delete;

    bool Ok() const { return m_probe.Ok(); }

    // True when the server let this client grab the key with exactly these modifiers.
    bool Grab(std::uint32_t keySym, std::uint16_t modifiers) {
        xcb_keycode_t* codes = xcb_key_symbols_get_keycode(m_symbols, keySym);
        if (codes == nullptr)
            return false;
        const xcb_keycode_t code = codes[0];
        std::free(codes);
        const auto cookie = xcb_grab_key_checked(m_probe.Connection(), 1, m_probe.Root(), modifiers,
                                                 code, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
        xcb_generic_error_t* error = xcb_request_check(m_probe.Connection(), cookie);
        std::free(error);
        return error == nullptr;
    }

private:
    X11Probe m_probe;
    xcb_key_symbols_t* m_symbols;
};

constexpr std::uint16_t CtrlAlt = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1;

class HotkeysOnX11 : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(rig.dir.isValid());
        HotkeySubclass::UsedCombinations().clear();
        rig.PlayTrack(BoundWindowRig::Track(QStringLiteral("Song"), 300));
        rig.Player().Pause();
    }

    SkinWindowBinding* Open(const QString& name, const QStringList& bindings) {
        QStringList lines{QStringLiteral("width=120"), QStringLiteral("height=40")};
        for (const QString& binding : bindings)
            lines.append(QStringLiteral("keyboardshortcut=") + binding);
        return rig.OpenSkin(name, lines);
    }

    bool Playing() { return rig.Player().playState() == MemoryPlayState::Playing; }

    // Presses the keys and waits for the player to reach the state.
    bool PressAndWait(const QString& keys, bool playing) {
        if (!Xdotool({QStringLiteral("key"), keys}))
            return false;
        return BoundWindowRig::WaitFor([&] { return Playing() == playing; }, 3000);
    }

    void Close(SkinWindowBinding* binding) {
        binding->Window()->Unload();
        BoundWindowRig::FlushDeletes();
    }

    BoundWindowRig rig;
};

TEST_F(HotkeysOnX11, ARealKeyPressPlaysAndASecondPauses) {
    Open(QStringLiteral("Keys"), {QStringLiteral("CONTROL+ALT+P;playpause")});
    EXPECT_TRUE(PressAndWait(QStringLiteral("ctrl+alt+p"), true));
    EXPECT_TRUE(PressAndWait(QStringLiteral("ctrl+alt+p"), false));
}

TEST_F(HotkeysOnX11, TheShortcutWorksWithNumLockAndCapsLockOn) {
    Open(QStringLiteral("Keys"), {QStringLiteral("CONTROL+ALT+P;playpause")});
    ASSERT_TRUE(Xdotool({QStringLiteral("key"), QStringLiteral("Num_Lock")}));
    ASSERT_TRUE(Xdotool({QStringLiteral("key"), QStringLiteral("Caps_Lock")}));
    const bool played = PressAndWait(QStringLiteral("ctrl+alt+p"), true);
    Xdotool({QStringLiteral("key"), QStringLiteral("Caps_Lock")});
    Xdotool({QStringLiteral("key"), QStringLiteral("Num_Lock")});
    EXPECT_TRUE(played);
}

TEST_F(HotkeysOnX11, ACombinationAnotherClientHoldsIsRefusedSilently) {
    OtherClient other;
    ASSERT_TRUE(other.Ok());
    ASSERT_TRUE(other.Grab(XK_p, CtrlAlt));
    testing::internal::CaptureStderr();
    Open(QStringLiteral("Keys"),
         {QStringLiteral("CONTROL+ALT+P;playpause"), QStringLiteral("CONTROL+ALT+Q;playpause")});
    const std::string err = testing::internal::GetCapturedStderr();
    EXPECT_EQ(err.find("Error!"), std::string::npos) << "no message box: " << err;
    EXPECT_FALSE(PressAndWait(QStringLiteral("ctrl+alt+p"), true)) << "the other client has it";
    EXPECT_TRUE(PressAndWait(QStringLiteral("ctrl+alt+q"), true)) << "the next binding works";
}

TEST_F(HotkeysOnX11, ADuplicateCombinationShowsTheConflictAndTheLaterBindingStaysSilent) {
    testing::internal::CaptureStderr();
    Open(QStringLiteral("First"), {QStringLiteral("CONTROL+ALT+P;playpause")});
    Open(QStringLiteral("Second"), {QStringLiteral("CONTROL+ALT+P;showskin=Elsewhere")});
    const std::string err = testing::internal::GetCapturedStderr();
    EXPECT_NE(err.find("There was a conflict in key combinations"), std::string::npos) << err;
    EXPECT_TRUE(PressAndWait(QStringLiteral("ctrl+alt+p"), true));
    QTest::qWait(200);
    EXPECT_TRUE(rig.opened.isEmpty()) << "the later binding never ran";
}

TEST_F(HotkeysOnX11, ClosingTheWindowReleasesEveryGrab) {
    SkinWindowBinding* binding =
        Open(QStringLiteral("Keys"), {QStringLiteral("CONTROL+ALT+P;playpause"),
                                      QStringLiteral("CONTROL+ALT+Q;playpause")});
    OtherClient other;
    ASSERT_TRUE(other.Ok());
    EXPECT_FALSE(other.Grab(XK_p, CtrlAlt)) << "held while the window is open";
    Close(binding);
    EXPECT_TRUE(other.Grab(XK_p, CtrlAlt));
    EXPECT_TRUE(other.Grab(XK_q, CtrlAlt));
    EXPECT_TRUE(other.Grab(XK_q, CtrlAlt | XCB_MOD_MASK_LOCK)) << "the lock variants too";
}

TEST_F(HotkeysOnX11, ReopeningASkinRegistersItsBindingsAfresh) {
    Close(Open(QStringLiteral("Keys"), {QStringLiteral("CONTROL+ALT+P;playpause")}));
    testing::internal::CaptureStderr();
    Open(QStringLiteral("Keys"), {QStringLiteral("CONTROL+ALT+P;playpause")});
    const std::string err = testing::internal::GetCapturedStderr();
    EXPECT_EQ(err.find("conflict"), std::string::npos) << err;
    EXPECT_TRUE(PressAndWait(QStringLiteral("ctrl+alt+p"), true));
}

TEST_F(HotkeysOnX11, AKeyCodeWithNoKeyOnXRegistersAndNeverFires) {
    // "10" gives the code 58, which no key has.
    SkinWindowBinding* binding =
        Open(QStringLiteral("Keys"), {QStringLiteral("CONTROL+10;playpause")});
    ASSERT_NE(binding->Shortcuts().Control(0), nullptr);
    EXPECT_EQ(binding->Shortcuts().Control(0)->hKey(), 1);
    EXPECT_EQ(HotkeySystem::Current().LastError(), HotkeySystem::NoError);
}

} // namespace
