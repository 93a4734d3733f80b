#pragma once

#include <QColor>

namespace Pelorin::SkinArt {

// One palette for every bundled skin, so they read as one family: a dark slate body, light
// glyphs, a blue-to-violet accent for the progress and the pressed state, amber stars.
struct Palette {
    static QColor BodyTop() { return QColor(0x23, 0x28, 0x36); }
    static QColor BodyBottom() { return QColor(0x14, 0x17, 0x20); }
    static QColor Edge() { return QColor(255, 255, 255, 22); }
    static QColor Sheen() { return QColor(255, 255, 255, 14); }
    static QColor Groove() { return QColor(0x2C, 0x32, 0x42); }
    static QColor Well() { return QColor(0x1F, 0x24, 0x31); }
    static QColor WellGlyph() { return QColor(0x3C, 0x44, 0x58); }
    static QColor Glyph() { return QColor(0xC3, 0xCB, 0xDA); }
    static QColor GlyphHover() { return QColor(0xFF, 0xFF, 0xFF); }
    static QColor HoverHalo() { return QColor(255, 255, 255, 30); }
    static QColor AccentStart() { return QColor(0x4F, 0x9D, 0xFF); }
    static QColor AccentEnd() { return QColor(0x8E, 0x7B, 0xFF); }
    static QColor Knob() { return QColor(0xEC, 0xEF, 0xF5); }
    static QColor KnobGlyph() { return QColor(0x16, 0x1A, 0x24); }
    static QColor StarLit() { return QColor(0xFF, 0xC2, 0x47); }
    static QColor StarUnlitFill() { return QColor(0x25, 0x2A, 0x38); }
    static QColor StarUnlitEdge() { return QColor(0x55, 0x5E, 0x73); }
    static QColor CloseHover() { return QColor(0xE5, 0x48, 0x4D, 70); }
    static QColor ClosePressed() { return QColor(0xE5, 0x48, 0x4D); }
};

} // namespace Pelorin::SkinArt
