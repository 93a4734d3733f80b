#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <cstdint>
#include <optional>
#include <vector>

namespace Pelorin {

// A Windows colour value: red + 256 * green + 65536 * blue. Skins write it that way, so the model
// keeps the integer as read; ColourToRgb splits it for drawing.
using WindowsColour = std::int32_t;

struct RgbColour {
    int Red = 0;
    int Green = 0;
    int Blue = 0;
    bool operator==(const RgbColour&) const = default;
};

// The low three bytes of the value (a value with its high bit set was a Windows system colour;
// only its low bytes are used).
RgbColour ColourToRgb(WindowsColour colour);

// A keyboard shortcut that a skin (or personal.ini) binds: runcode text and a key specification
// such as "WIN+P".
struct KeyShortcut {
    QString Code;
    QString Keys;
    bool operator==(const KeyShortcut&) const = default;
};

// A font as the skin set it: an empty name or a size of 0 leaves the window's default.
struct SkinFont {
    QString Name;
    double Size = 0; // points
    bool operator==(const SkinFont&) const = default;
};

// Positions and sizes of elements are pixels of the window's client area.
struct ElementGeometry {
    int Left = 0;
    int Top = 0;
    int Width = 0;
    int Height = 0;
    bool operator==(const ElementGeometry&) const = default;
};

// lblInfo(i): a text label; its Tag holds the template with track placeholders.
struct SkinLabel {
    bool Visible = false;
    ElementGeometry Geometry;
    QString Tag;
    SkinFont Font;
    bool Centred = false;
    std::optional<WindowsColour> ForeColor; // unset: the default text colour
    bool operator==(const SkinLabel&) const = default;
};

// scrollWidth(i): the invisible twin of label i that measures text in the label's font.
struct MeasuringSurface {
    SkinFont Font;
    bool operator==(const MeasuringSurface&) const = default;
};

// img(i): a picture button; its Tag is the runcode it runs.
struct SkinImage {
    bool Visible = false;
    ElementGeometry Geometry;
    QString Tag;
    // The full path of the picture that loaded; unset for "none", artwork or a failed load.
    std::optional<QString> Picture;
    // The artwork image takes dropped files.
    bool AcceptsDrops = false;
    bool operator==(const SkinImage&) const = default;
};

// tmr(i): an element timer. Element timers tick as soon as they have an interval.
struct SkinTimer {
    bool Enabled = true;
    std::int32_t Interval = 0; // milliseconds; 0 never ticks
    QString Tag;               // the runcode it runs
    bool operator==(const SkinTimer&) const = default;
};

// imgProgress: hidden until a skin asks for it. Its width follows the track position, so the
// skin gives only the full width, which is kept in Tag as decimal text.
struct ProgressControl {
    bool Visible = false;
    int Left = 0;
    int Top = 0;
    int Height = 0;
    QString Tag;
    std::optional<QString> Picture;
    bool operator==(const ProgressControl&) const = default;
};

// lnTop, lnBottom, lnLeft, lnRight: hidden until a skin asks for them.
struct BorderLine {
    bool Visible = false;
    std::optional<WindowsColour> BorderColor;
    bool operator==(const BorderLine&) const = default;
};

// The synchronized lyrics display: a label showing the lyrics control's current text.
struct LyricsDisplay {
    bool Visible = false;
    ElementGeometry Geometry;
    SkinFont Font;
    std::optional<WindowsColour> ForeColor;
    bool Centred = false;
    bool operator==(const LyricsDisplay&) const = default;
};

// The window's own position and size in pixels; unset values keep the window's default.
struct WindowGeometry {
    std::optional<int> Left;
    std::optional<int> Top;
    std::optional<int> Width;
    std::optional<int> Height;
    bool operator==(const WindowGeometry&) const = default;
};

// What a skin line touched, so a window can create or update the matching widget after each line
// (also after a line that failed halfway: what it set before the failure stays).
enum class SkinPart {
    Nothing,
    Window, // a window setting (geometry, colour, picture, flags, lists)
    Label,  // lblInfo(Index) and scrollWidth(Index)
    Image,  // img(Index)
    Timer,  // tmr(Index)
    ScrollTimer,
    Progress, // imgProgress
    Borders,  // all four border lines
    Lyrics,
};

struct SkinChange {
    SkinPart Part = SkinPart::Nothing;
    int Index = 0;        // the element index for Label, Image and Timer
    bool Created = false; // the line created that element
    bool operator==(const SkinChange&) const = default;
};

// Everything a skin file sets on its window, as plain data. The skin window owns one, lets the
// loader fill it line by line and draws it. Element arrays keep the never-used model element at
// index 0, so skin elements are numbered from 1 as skins and runcode name them.
class SkinModel {
public:
    SkinModel();

    // LoadSkin's first steps: the window's Tag becomes "loadedbyskin" and SkinFolder is set.
    void BeginLoad(const QString& skinFolder);

    int LabelCount() const { return static_cast<int>(lblInfo.size()) - 1; }
    int ImageCount() const { return static_cast<int>(img.size()) - 1; }
    int TimerCount() const { return static_cast<int>(tmr.size()) - 1; }
    bool HasLabel(int index) const {
        return index >= 0 && index < static_cast<int>(lblInfo.size());
    }

    // Per-window settings.
    QString Tag;
    QString SkinFolder; // ends with "/"
    QString ShowAction;
    QString FormClickCode;
    bool OnTop = false;
    std::int16_t RoundWindow = 0;
    std::int16_t Transparency = 0;
    bool OnlyOneInstance = false;
    QString RatingsSpec;
    bool RememberPos = false;
    bool OnDesktop = false;
    bool Glassify = false;
    bool TransparentBackground = false;
    bool HasArtwork = false;
    QStringList LabelTexts;          // index = label index, [0] unused
    QStringList ImagePictures;       // index = image index, [0] unused
    QString NoScrollLabels;          // "[2][5]": labels that never scroll
    QStringList Interactions;        // "anyinteraction" codes; at most 32767 (a 16-bit count)
    QList<KeyShortcut> KeyShortcuts; // always ends with one empty spare record
    bool IsDeskbar = false;
    bool Closing = false;

    // The window itself.
    WindowGeometry Geometry;
    std::optional<WindowsColour> BackColor;
    std::optional<QString> Picture;             // full path of the background picture that loaded
    std::optional<std::int32_t> ScrollInterval; // tmrScroll's interval in ms; unset: no scrolling

    // Elements.
    std::vector<SkinLabel> lblInfo;
    std::vector<MeasuringSurface> scrollWidth;
    std::vector<SkinImage> img;
    std::vector<SkinTimer> tmr;
    ProgressControl imgProgress;
    BorderLine lnTop;
    BorderLine lnBottom;
    BorderLine lnLeft;
    BorderLine lnRight;
    LyricsDisplay Lyrics;
    bool HasLyrics = false;

    bool operator==(const SkinModel&) const = default;
};

} // namespace Pelorin
