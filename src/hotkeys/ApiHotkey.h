#pragma once

#include "hotkeys/WindowProcedures.h"

#include <QString>

namespace Pelorin {

// One system-wide hotkey: the combination, the window it is sent to, the atom whose value is its
// id and the outcome of the last registration.
class ApiHotkey {
public:
    // Modifier bits, the program's vocabulary for them.
    enum ModifierBit : int { ModAlt = 1, ModControl = 2, ModShift = 4, ModWin = 8 };

    bool AltKey() const { return (m_modifier & ModAlt) != 0; }
    void SetAltKey(bool on) { SetBit(ModAlt, on); }
    bool ControlKey() const { return (m_modifier & ModControl) != 0; }
    void SetControlKey(bool on) { SetBit(ModControl, on); }
    quint16 hAtom() const { return m_hAtom; }
    int hKey() const { return m_hKey; }
    WindowHandle hwnd() const { return m_hwnd; }
    void Sethwnd(WindowHandle hwnd) { m_hwnd = hwnd; }
    // True when both hold the same modifiers and key; windows and atoms are not compared.
    bool MatchedKey(const ApiHotkey& testKey) const;
    int Modifier() const { return m_modifier; }
    void SetModifier(int modifier) { m_modifier = modifier; }
    // "hwnd:<window>VK:<key>Mod:<modifiers>", plain decimal numbers.
    QString UniqueKey() const;
    // Sets the modifiers the atom's name names (never clears one) and, when its last three
    // characters are digits, the key.
    void ReadFromAtom(quint16 atom);
    // Registers the combination with the system under a fresh atom. A refusal is reported to
    // the control listed under UniqueKey() when there is one; the first registration of a
    // control happens before it is listed, so that one fails silently.
    void Register();
    bool ShiftKey() const { return (m_modifier & ModShift) != 0; }
    void SetShiftKey(bool on) { SetBit(ModShift, on); }
    // "WIN+", "SHIFT+", "CONTROL+", "ALT+" for the modifiers held, in that order, then the key
    // with at least three digits: WIN+SHIFT+080.
    QString UniqueAtomName() const;
    // Unregisters and deletes the atom. hAtom keeps its value, so a second call does both again.
    void Unregister();
    int VKey() const { return m_vKey; }
    void SetVKey(int vKey) { m_vKey = vKey; }
    bool WinKey() const { return (m_modifier & ModWin) != 0; }
    void SetWinKey(bool on) { SetBit(ModWin, on); }

private:
    void SetBit(int bit, bool on) { m_modifier = on ? (m_modifier | bit) : (m_modifier & ~bit); }

    int m_modifier = 0;
    int m_vKey = 0;
    WindowHandle m_hwnd = 0;
    quint16 m_hAtom = 0;
    int m_hKey = 0;
};

// The record kept for each window whose procedure the hotkey code replaced.
class ApiSubclassedWindow {
public:
    WindowHandle hwnd() const { return m_hwnd; }
    void Sethwnd(WindowHandle hwnd) { m_hwnd = hwnd; }
    WindowProcedures::WindowProc OldWndProc() const { return m_oldWndProc; }
    void SetOldWndProc(WindowProcedures::WindowProc proc) { m_oldWndProc = proc; }
    WindowProcedures::WindowProc NewWndProc() const { return m_newWndProc; }
    void SetNewWndProc(WindowProcedures::WindowProc proc) { m_newWndProc = proc; }

private:
    WindowHandle m_hwnd = 0;
    WindowProcedures::WindowProc m_oldWndProc = nullptr;
    WindowProcedures::WindowProc m_newWndProc = nullptr;
};

} // namespace Pelorin
