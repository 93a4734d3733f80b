#include "hotkeys/X11HotkeySystem.h"

#include "base/Log.h"
#include "hotkeys/ApiHotkey.h"
#include "hotkeys/VirtualKeys.h"
#include "platform/X11WindowSystem.h"

#include <QCoreApplication>
#include <cstdlib>
#include <xcb/xcb.h>
#include <xcb/xcb_keysyms.h>

namespace Pelorin {

namespace {

constexpr std::uint32_t XK_Num_Lock = 0xff7f;
constexpr std::uint32_t XK_Scroll_Lock = 0xff14;
// The modifiers a binding can hold; everything else in a key event's state is ignored.
constexpr std::uint16_t BindingMask =
    XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1 | XCB_MOD_MASK_4;

std::uint16_t XModifiers(int modifiers) {
    std::uint16_t mask = 0;
    if ((modifiers & ApiHotkey::ModAlt) != 0)
        mask |= XCB_MOD_MASK_1;
    if ((modifiers & ApiHotkey::ModControl) != 0)
        mask |= XCB_MOD_MASK_CONTROL;
    if ((modifiers & ApiHotkey::ModShift) != 0)
        mask |= XCB_MOD_MASK_SHIFT;
    if ((modifiers & ApiHotkey::ModWin) != 0)
        mask |= XCB_MOD_MASK_4;
    return mask;
}

} // namespace

std::unique_ptr<X11HotkeySystem> X11HotkeySystem::FromApplication() {
    const X11Display display = ApplicationX11Display();
    if (display.connection == nullptr)
        return nullptr;
    return std::make_unique<X11HotkeySystem>(display.connection, display.root);
}

X11HotkeySystem::X11HotkeySystem(xcb_connection_t* connection, std::uint32_t root)
    : m_connection(connection), m_root(root), m_symbols(xcb_key_symbols_alloc(connection)) {
    QCoreApplication::instance()->installNativeEventFilter(this);
}

X11HotkeySystem::~X11HotkeySystem() {
    if (QCoreApplication* app = QCoreApplication::instance())
        app->removeNativeEventFilter(this);
    for (const Registration& registration : std::as_const(m_registrations))
        Ungrab(registration);
    xcb_flush(m_connection);
    if (m_symbols != nullptr)
        xcb_key_symbols_free(m_symbols);
}

QList<std::uint8_t> X11HotkeySystem::KeycodesOf(std::uint32_t keySym) const {
    QList<std::uint8_t> keycodes;
    if (keySym == 0 || m_symbols == nullptr)
        return keycodes;
    xcb_keycode_t* found = xcb_key_symbols_get_keycode(m_symbols, keySym);
    if (found == nullptr)
        return keycodes;
    for (xcb_keycode_t* code = found; *code != XCB_NO_SYMBOL; ++code) {
        if (!keycodes.contains(*code))
            keycodes.append(*code);
    }
    std::free(found);
    return keycodes;
}

const QList<std::uint16_t>& X11HotkeySystem::LockVariants() {
    if (!m_lockVariants.isEmpty())
        return m_lockVariants;
    // Which modifiers Num Lock and Scroll Lock sit on, from one look at the modifier mapping.
    const QList<std::uint8_t> numLock = KeycodesOf(XK_Num_Lock);
    const QList<std::uint8_t> scrollLock = KeycodesOf(XK_Scroll_Lock);
    std::uint16_t numMask = 0;
    std::uint16_t scrollMask = 0;
    if (xcb_get_modifier_mapping_reply_t* reply = xcb_get_modifier_mapping_reply(
            m_connection, xcb_get_modifier_mapping(m_connection), nullptr)) {
        const xcb_keycode_t* codes = xcb_get_modifier_mapping_keycodes(reply);
        const int perModifier = reply->keycodes_per_modifier;
        for (int modifier = 0; modifier < 8; ++modifier) {
            for (int i = 0; i < perModifier; ++i) {
                const xcb_keycode_t code = codes[modifier * perModifier + i];
                const auto bit = static_cast<std::uint16_t>(1U << modifier);
                if (numLock.contains(code))
                    numMask |= bit;
                if (scrollLock.contains(code))
                    scrollMask |= bit;
            }
        }
        std::free(reply);
    }
    m_lockVariants = {0};
    for (const std::uint16_t lock :
         {static_cast<std::uint16_t>(XCB_MOD_MASK_LOCK), numMask, scrollMask}) {
        // A lock that shares a modifier with a binding's modifiers would grab too much.
        if (lock == 0 || (lock & BindingMask) != 0)
            continue;
        const qsizetype count = m_lockVariants.size();
        for (qsizetype i = 0; i < count; ++i) {
            const auto variant = static_cast<std::uint16_t>(m_lockVariants.at(i) | lock);
            if (!m_lockVariants.contains(variant))
                m_lockVariants.append(variant);
        }
    }
    return m_lockVariants;
}

void X11HotkeySystem::Ungrab(const Registration& registration) {
    for (const auto& [keycode, modifiers] : registration.grabs)
        xcb_ungrab_key(m_connection, keycode, m_root, modifiers);
}

bool X11HotkeySystem::RegisterHotKey(WindowHandle hwnd, int id, int modifiers, int vkey) {
    for (const Registration& held : std::as_const(m_registrations)) {
        if ((held.modifiers == modifiers && held.vkey == vkey) ||
            (held.hwnd == hwnd && held.id == id)) {
            SetLastError(AlreadyRegistered);
            return false;
        }
    }
    Registration registration{
        hwnd, id, modifiers, vkey, XModifiers(modifiers), KeycodesOf(VirtualKeys::KeySym(vkey)),
        {}};
    for (const std::uint8_t keycode : std::as_const(registration.keycodes)) {
        for (const std::uint16_t variant : LockVariants()) {
            const auto grabbed = static_cast<std::uint16_t>(registration.xModifiers | variant);
            const xcb_void_cookie_t cookie =
                xcb_grab_key_checked(m_connection, 1, m_root, grabbed, keycode, XCB_GRAB_MODE_ASYNC,
                                     XCB_GRAB_MODE_ASYNC);
            if (xcb_generic_error_t* error = xcb_request_check(m_connection, cookie)) {
                std::free(error);
                Ungrab(registration);
                xcb_flush(m_connection);
                qCInfo(lcHotkeys).noquote()
                    << QStringLiteral("Another program holds the hotkey with modifiers %1 and "
                                      "key code %2; that shortcut stays silent.")
                           .arg(modifiers)
                           .arg(vkey);
                SetLastError(AlreadyRegistered);
                return false;
            }
            registration.grabs.append({keycode, grabbed});
        }
    }
    xcb_flush(m_connection);
    m_registrations.append(registration);
    SetLastError(NoError);
    return true;
}

bool X11HotkeySystem::UnregisterHotKey(WindowHandle hwnd, int id) {
    for (qsizetype i = 0; i < m_registrations.size(); ++i) {
        const Registration& registration = m_registrations.at(i);
        if (registration.hwnd == hwnd && registration.id == id) {
            Ungrab(registration);
            xcb_flush(m_connection);
            m_registrations.removeAt(i);
            SetLastError(NoError);
            return true;
        }
    }
    SetLastError(NotRegistered);
    return false;
}

bool X11HotkeySystem::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*) {
    if (eventType != "xcb_generic_event_t" || message == nullptr)
        return false;
    auto* event = static_cast<xcb_generic_event_t*>(message);
    const std::uint8_t type = event->response_type & 0x7F;
    if (type == XCB_MAPPING_NOTIFY) {
        auto* mapping = reinterpret_cast<xcb_mapping_notify_event_t*>(event);
        if (m_symbols != nullptr)
            xcb_refresh_keyboard_mapping(m_symbols, mapping);
        // Where the locks sit may have moved; the grabs already made keep their own record.
        m_lockVariants.clear();
        return false;
    }
    if (type != XCB_KEY_PRESS && type != XCB_KEY_RELEASE)
        return false;
    // Press and release share their layout.
    auto* key = reinterpret_cast<xcb_key_press_event_t*>(event);
    if (key->event != m_root)
        return false;
    const auto state = static_cast<std::uint16_t>(key->state & BindingMask);
    for (const Registration& registration : std::as_const(m_registrations)) {
        if (registration.xModifiers == state && registration.keycodes.contains(key->detail)) {
            if (type == XCB_KEY_PRESS)
                Deliver(registration.hwnd, registration.id, registration.modifiers,
                        registration.vkey);
            return true;
        }
    }
    return false;
}

} // namespace Pelorin
