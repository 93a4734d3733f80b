#pragma once

// A desktop's hotkeys in memory, for tests of what the hotkey code asks of the system: every
// call is recorded, combinations can be marked as held by another program, and a press of a
// registered combination is delivered as the real system delivers it (through the event loop).
#include "hotkeys/HotkeySystem.h"

#include <QList>
#include <QStringList>
#include <memory>

namespace Pelorin::Testing {

class RecordingHotkeySystem final : public HotkeySystem {
public:
    struct Registration {
        WindowHandle hwnd;
        int id;
        int modifiers;
        int vkey;
    };

    bool RegisterHotKey(WindowHandle hwnd, int id, int modifiers, int vkey) override {
        calls.append(QStringLiteral("register %1 %2 %3").arg(id).arg(modifiers).arg(vkey));
        for (const Registration& held : std::as_const(registered)) {
            if ((held.modifiers == modifiers && held.vkey == vkey) ||
                (held.hwnd == hwnd && held.id == id)) {
                SetLastError(AlreadyRegistered);
                return false;
            }
        }
        if (heldElsewhere.contains(Combination(modifiers, vkey))) {
            SetLastError(AlreadyRegistered);
            return false;
        }
        registered.append({hwnd, id, modifiers, vkey});
        SetLastError(NoError);
        return true;
    }

    bool UnregisterHotKey(WindowHandle hwnd, int id) override {
        calls.append(QStringLiteral("unregister %1").arg(id));
        for (qsizetype i = 0; i < registered.size(); ++i) {
            if (registered.at(i).hwnd == hwnd && registered.at(i).id == id) {
                registered.removeAt(i);
                SetLastError(NoError);
                return true;
            }
        }
        SetLastError(NotRegistered);
        return false;
    }

    // A press of the combination; false when nothing holds it.
    bool Press(int modifiers, int vkey) {
        for (const Registration& held : std::as_const(registered)) {
            if (held.modifiers == modifiers && held.vkey == vkey) {
                Deliver(held.hwnd, held.id, modifiers, vkey);
                return true;
            }
        }
        return false;
    }

    static QString Combination(int modifiers, int vkey) {
        return QStringLiteral("%1/%2").arg(modifiers).arg(vkey);
    }

    QStringList calls;
    QList<Registration> registered;
    QStringList heldElsewhere;
};

// Puts a recording system in place for the life of the object and the previous one back after.
class RecordingHotkeySystemScope {
public:
    RecordingHotkeySystemScope() {
        auto owned = std::make_unique<RecordingHotkeySystem>();
        system = owned.get();
        previous = HotkeySystem::Replace(std::move(owned));
    }
    ~RecordingHotkeySystemScope() { HotkeySystem::Replace(std::move(previous)); }
    RecordingHotkeySystemScope(const RecordingHotkeySystemScope&) = delete;
    RecordingHotkeySystemScope& operator=(const RecordingHotkeySystemScope&) = delete;

    RecordingHotkeySystem* system = nullptr;

private:
    std::unique_ptr<HotkeySystem> previous;
};

} // namespace Pelorin::Testing
