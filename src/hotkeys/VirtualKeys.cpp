#include "hotkeys/VirtualKeys.h"

namespace Pelorin::VirtualKeys {

namespace {

struct Pair {
    int vKey;
    quint32 keySym;
};

// Every code that a key name can give: the named keys, the keypad, function keys, digits, and
// the codes that single characters (punctuation, Latin-1 letters) happen to be.
constexpr Pair Table[] = {
    {0x03, 0xff6b},     // Cancel: Break
    {0x08, 0xff08},     // BackSpace
    {0x09, 0xff09},     // Tab
    {0x0C, 0xff0b},     // Clear
    {0x0D, 0xff0d},     // Return
    {0x10, 0xffe1},     // Shift
    {0x11, 0xffe3},     // Control
    {0x12, 0xffe9},     // Alt
    {0x13, 0xff13},     // Pause
    {0x14, 0xffe5},     // Caps_Lock
    {0x1B, 0xff1b},     // Escape
    {0x20, 0x0020},     // space
    {0x21, 0xff55},     // Prior (Page Up)
    {0x22, 0xff56},     // Next (Page Down)
    {0x23, 0xff57},     // End
    {0x24, 0xff50},     // Home
    {0x25, 0xff51},     // Left
    {0x26, 0xff52},     // Up
    {0x27, 0xff53},     // Right
    {0x28, 0xff54},     // Down
    {0x29, 0xff60},     // Select
    {0x2A, 0xff61},     // Print
    {0x2B, 0xff62},     // Execute
    {0x2C, 0xff61},     // Snapshot: Print
    {0x2D, 0xff63},     // Insert
    {0x2E, 0xffff},     // Delete
    {0x2F, 0xff6a},     // Help
    {0x5B, 0xffeb},     // left Windows key: Super_L
    {0x5C, 0xffec},     // right Windows key: Super_R
    {0x5D, 0xff67},     // Apps: Menu
    {0x5F, 0x1008ff2f}, // Sleep
    {0x6A, 0xffaa},     // KP_Multiply
    {0x6B, 0xffab},     // KP_Add
    {0x6C, 0xffac},     // KP_Separator
    {0x6D, 0xffad},     // KP_Subtract
    {0x6E, 0xffae},     // KP_Decimal
    {0x6F, 0xffaf},     // KP_Divide
    {0x90, 0xff7f},     // Num_Lock
    {0x91, 0xff14},     // Scroll_Lock
    {0xA0, 0xffe1},     // Shift_L
    {0xA1, 0xffe2},     // Shift_R
    {0xA2, 0xffe3},     // Control_L
    {0xA3, 0xffe4},     // Control_R
    {0xA4, 0xffe9},     // Alt_L
    {0xA5, 0xffea},     // Alt_R
    {0xA6, 0x1008ff26}, // Browser back
    {0xA7, 0x1008ff27}, // Browser forward
    {0xA8, 0x1008ff73}, // Browser refresh: XF86Reload
    {0xA9, 0x1008ff28}, // Browser stop
    {0xAA, 0x1008ff1b}, // Browser search
    {0xAB, 0x1008ff30}, // Browser favourites
    {0xAC, 0x1008ff18}, // Browser home
    {0xAD, 0x1008ff12}, // Volume mute
    {0xAE, 0x1008ff11}, // Volume down
    {0xAF, 0x1008ff13}, // Volume up
    {0xB0, 0x1008ff17}, // Media next track
    {0xB1, 0x1008ff16}, // Media previous track
    {0xB2, 0x1008ff15}, // Media stop
    {0xB3, 0x1008ff14}, // Media play/pause
    {0xB4, 0x1008ff19}, // Mail
    {0xB5, 0x1008ff32}, // Media select
    {0xB6, 0x1008ff5d}, // Application 1: XF86Explorer
    {0xB7, 0x1008ff1d}, // Application 2: XF86Calculator
    {0xBA, 0x003b},     // semicolon
    {0xBB, 0x003d},     // equal
    {0xBC, 0x002c},     // comma
    {0xBD, 0x002d},     // minus
    {0xBE, 0x002e},     // period
    {0xBF, 0x002f},     // slash
    {0xC0, 0x0060},     // grave
    {0xDB, 0x005b},     // bracketleft
    {0xDC, 0x005c},     // backslash
    {0xDD, 0x005d},     // bracketright
    {0xDE, 0x0027},     // apostrophe
    {0xE2, 0x003c},     // less (the key beside the left Shift on European keyboards)
    {0xFA, 0x1008ff14}, // Play
};

} // namespace

quint32 KeySym(int vKey) {
    if (vKey >= '0' && vKey <= '9')
        return static_cast<quint32>(vKey); // XK_0 .. XK_9
    if (vKey >= 'A' && vKey <= 'Z')
        return static_cast<quint32>(vKey - 'A' + 'a'); // XK_a .. XK_z
    if (vKey >= 0x60 && vKey <= 0x69)
        return 0xffb0 + static_cast<quint32>(vKey - 0x60); // XK_KP_0 .. XK_KP_9
    if (vKey >= 0x70 && vKey <= 0x87)
        return 0xffbe + static_cast<quint32>(vKey - 0x70); // XK_F1 .. XK_F24
    for (const Pair& pair : Table) {
        if (pair.vKey == vKey)
            return pair.keySym;
    }
    return 0;
}

} // namespace Pelorin::VirtualKeys
