#pragma once

#include "hotkeys/ApiHotkey.h"
#include "hotkeys/WindowProcedures.h"

#include <QString>

namespace Pelorin {

class VBHotkey;

// The process-wide side of hotkeys: the windows whose procedure was replaced, the started
// hotkey controls (keyed by their UniqueKey) and every combination started so far. A press
// reaches a control through its window's procedure, HotkeyWindowProc.
namespace HotkeySubclass {

// Puts HotkeyWindowProc in front of the window's procedure (once per window, however many
// hotkeys it owns) and records the window.
void SubclassWindow(WindowHandle hwnd);
// Puts the window's old procedure back and forgets every started control whose key contains
// "hwnd:<window>" (a plain text test).
void UnsubclassWindow(WindowHandle hwnd);
// Hands a WM_HOTKEY to the control holding that combination on that window, then passes every
// message on to the window's old procedure.
qintptr HotkeyWindowProc(WindowHandle hwnd, quint32 message, quintptr wParam, qintptr lParam);
// The system's text for its last error, blanks around it trimmed.
QString LastDllErrorText();

// Every combination text that InitTheThing started, one after the other.
QString& UsedCombinations();

// The started control listed under `uniqueKey`; null when there is none.
VBHotkey* ActiveHotkey(const QString& uniqueKey);
void AddActiveHotkey(const QString& uniqueKey, VBHotkey* control);
// The record of a subclassed window; null when the window is not subclassed.
const ApiSubclassedWindow* SubclassedWindow(WindowHandle hwnd);
// Whether the collections exist: each is made on first use and released when it empties.
bool HasSubclassedWindows();
bool HasActiveHotkeys();
int ActiveHotkeyCount();

} // namespace HotkeySubclass
} // namespace Pelorin
