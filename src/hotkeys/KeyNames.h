#pragma once

#include <QString>

namespace Pelorin {

// A key combination as key specifications name it: modifiers and a Windows virtual-key code.
struct KeyCombination {
    bool alt = false;
    bool shift = false;
    bool control = false;
    bool win = false;
    int vKey = 37;
};

// What one key name set, as bits.
enum KeyNameEffect : int {
    SetsAlt = 1,
    SetsShift = 2,
    SetsControl = 4,
    SetsWin = 8,
    SetsKey = 16,
};

// Applies one key name (already upper-cased) to `keys`, with the tests in this order, each on
// its own so that a later match overwrites the key an earlier one set: the modifier names
// (switched on, never off); LEFTARROW, RIGHTARROW, UPARROW, DOWNARROW, ENTER, BACKSPACE, TAB,
// PAGEUP, PAGEDOWN; "NUMPAD" and a number (96 + n); "F" and a number (111 + n); a number
// (48 + n); a single character (its code). Returns what it set; a name that is none of these
// sets nothing. Throws VbError (Overflow) for a number beyond any key code.
int ApplyKeyName(KeyCombination& keys, const QString& upperName);

// A whole specification, names separated by "+", applied in order to `start`.
KeyCombination ParseKeySpecification(const QString& specification, KeyCombination start = {});

} // namespace Pelorin
