#include "SkinLineProcessor.h"

#include "base/FileNames.h"
#include "base/TextRules.h"
#include "skin/SkinHost.h"
#include "skin/SkinLine.h"

#include <limits>

namespace Pelorin {

namespace {

// Reads the fields of one line, telling the trace what it reads before each conversion, so a
// failure can be pinned to its field.
class FieldReader {
public:
    FieldReader(const SkinEntry& entry, SkinLineTrace* trace) : m_entry(entry), m_trace(trace) {}

    const QString& Value(const QString& meaning) {
        Mark(-1, meaning);
        return m_entry.Value;
    }
    const QString& Text(int index, const QString& meaning) {
        Mark(index, meaning);
        return Rules::Field(m_entry.Fields, index);
    }
    bool Has(int index) const { return index < m_entry.Fields.size(); }
    // Present and not empty: optional trailing fields left blank keep their default.
    bool Given(int index) const { return Has(index) && !m_entry.Fields[index].isEmpty(); }

    double Number(int index, const QString& meaning) {
        return Rules::LeadingNumber(Text(index, meaning));
    }
    // Whole pixels: halves round to even, beyond 32 bits is an overflow.
    int Pixels(int index, const QString& meaning) { return Rules::ToInt32(Number(index, meaning)); }
    std::int32_t Integer(int index, const QString& meaning) {
        return Rules::Int32Of(Text(index, meaning));
    }
    std::int16_t Integer16(int index, const QString& meaning) {
        return Rules::Int16Of(Text(index, meaning));
    }
    WindowsColour Colour(int index) {
        return Rules::Int32Of(Text(index, QStringLiteral("colour")));
    }
    bool Boolean(int index, const QString& meaning) {
        return Rules::ToBoolean(Text(index, meaning));
    }

    void Mark(int index, const QString& meaning) {
        if (m_trace) {
            m_trace->Field = index;
            m_trace->Meaning = meaning;
        }
    }
    void MarkFile(const QString& path) {
        if (m_trace)
            m_trace->File = path;
    }

private:
    const SkinEntry& m_entry;
    SkinLineTrace* m_trace;
};

class LineApplier {
public:
    LineApplier(SkinModel& model, const SkinEntry& entry, const QString& curPath, SkinHost& host,
                SkinLineTrace& trace)
        : m(model), e(entry), f(entry, &trace), m_curPath(curPath), m_host(host),
          m_change(trace.Change) {}

    bool Apply();

private:
    void Touch(SkinPart part, int index = 0, bool created = false) {
        m_change = {part, index, created};
    }

    // A file field: the skin folder in front of the name as it stands.
    QString LoadFile(const QString& name) {
        const QString path = FileNames::InFolder(m_curPath, name);
        f.MarkFile(path);
        // A skin's picture comes from inside its own folder, or is missing.
        if (!FileNames::Confined(m_curPath, name, path))
            throw VbError::CannotLoadFile();
        m_host.LoadPicture(path);
        return path;
    }

    // Window Left/Top: pixels, or with a lower-case "r" first, counted back from the screen's
    // right (bottom) edge. The window's own size is not subtracted; skins write it themselves.
    int WindowPosition(int screenExtent, const QString& meaning) {
        const QString& value = f.Value(meaning);
        if (value.startsWith(u'r'))
            return Rules::ToInt32(screenExtent - Rules::LeadingNumber(QStringView(value).mid(1)));
        return Rules::ToInt32(Rules::LeadingNumber(value));
    }

    int LabelIndex() {
        const int index = f.Integer16(0, QStringLiteral("label index"));
        if (!m.HasLabel(index))
            throw VbError::ControlArrayElementMissing(index);
        return index;
    }

    void Label();
    void Image();
    void LabelFont();
    void LabelCenter();
    void LabelColor();
    void Borders();
    void TimerEvent();
    void ProgressControl();
    void KeyboardShortcut();
    void Lyrics();

    SkinModel& m;
    const SkinEntry& e;
    FieldReader f;
    const QString& m_curPath;
    SkinHost& m_host;
    SkinChange& m_change;
};

void LineApplier::Label() {
    const int index = static_cast<int>(m.lblInfo.size());
    m.lblInfo.emplace_back();
    m.scrollWidth.emplace_back();
    m.LabelTexts.append(QString());
    Touch(SkinPart::Label, index, true);
    SkinLabel& label = m.lblInfo.back();
    label.Visible = true;
    label.Geometry.Left = f.Pixels(0, QStringLiteral("left"));
    label.Geometry.Top = f.Pixels(1, QStringLiteral("top"));
    label.Geometry.Width = f.Pixels(2, QStringLiteral("width"));
    label.Geometry.Height = f.Pixels(3, QStringLiteral("height"));
    label.Tag = f.Text(4, QStringLiteral("template"));
}

void LineApplier::Image() {
    const int index = static_cast<int>(m.img.size());
    m.img.emplace_back();
    m.ImagePictures.append(QString());
    Touch(SkinPart::Image, index, true);
    SkinImage& image = m.img.back();
    image.Visible = true;
    image.Geometry.Left = f.Pixels(0, QStringLiteral("left"));
    image.Geometry.Top = f.Pixels(1, QStringLiteral("top"));
    image.Geometry.Width = f.Pixels(2, QStringLiteral("width"));
    image.Geometry.Height = f.Pixels(3, QStringLiteral("height"));
    image.Tag = f.Text(4, QStringLiteral("code"));
    const QString& pictures = f.Text(5, QStringLiteral("pictures"));
    m.ImagePictures[index] = pictures;
    // Only the normal picture is loaded now; hover and pressed pictures load when used.
    const QStringList names = Rules::SplitFirstFields(pictures, 1, u'|');
    const QString& normal = Rules::Field(names, 0);
    const QString upper = normal.toUpper();
    if (upper == u"NONE")
        return;
    if (upper == u"ARTWORK") {
        m.HasArtwork = true;
        image.AcceptsDrops = true;
        return;
    }
    image.Picture = LoadFile(normal);
}

void LineApplier::LabelFont() {
    const int index = LabelIndex();
    Touch(SkinPart::Label, index);
    const QString& name = f.Text(1, QStringLiteral("font name"));
    m.lblInfo[index].Font.Name = name;
    m.scrollWidth[index].Font.Name = name;
    // The size must be present even when it is 0 (which keeps the size).
    const double size = f.Number(2, QStringLiteral("font size"));
    if (size > 0) {
        m.lblInfo[index].Font.Size = size;
        m.scrollWidth[index].Font.Size = size;
    }
}

void LineApplier::LabelCenter() {
    const int index = LabelIndex();
    Touch(SkinPart::Label, index);
    m.lblInfo[index].Centred = f.Has(1) ? f.Boolean(1, QStringLiteral("centred")) : true;
}

void LineApplier::LabelColor() {
    const int index = LabelIndex();
    Touch(SkinPart::Label, index);
    m.lblInfo[index].ForeColor = f.Colour(1);
}

void LineApplier::Borders() {
    Touch(SkinPart::Borders);
    const bool visible = f.Boolean(0, QStringLiteral("shown"));
    for (BorderLine* line : {&m.lnTop, &m.lnBottom, &m.lnLeft, &m.lnRight})
        line->Visible = visible;
    const WindowsColour colour = f.Colour(1);
    for (BorderLine* line : {&m.lnTop, &m.lnBottom, &m.lnLeft, &m.lnRight})
        line->BorderColor = colour;
}

void LineApplier::TimerEvent() {
    const int index = static_cast<int>(m.tmr.size());
    m.tmr.push_back(m.tmr.front()); // new timers copy the model element's settings
    Touch(SkinPart::Timer, index, true);
    m.tmr.back().Interval = f.Integer(0, QStringLiteral("interval"));
    m.tmr.back().Tag = f.Text(1, QStringLiteral("code"));
}

void LineApplier::ProgressControl() {
    Touch(SkinPart::Progress);
    Pelorin::ProgressControl& progress = m.imgProgress;
    progress.Visible = true;
    progress.Left = f.Pixels(0, QStringLiteral("left"));
    progress.Top = f.Pixels(1, QStringLiteral("top"));
    progress.Tag = QString::number(f.Number(2, QStringLiteral("full width")), 'g', 15);
    progress.Height = f.Pixels(3, QStringLiteral("height"));
    progress.Picture = LoadFile(f.Text(4, QStringLiteral("picture")));
}

void LineApplier::KeyboardShortcut() {
    Touch(SkinPart::Window);
    // The record is only added whole; the spare record at the end stays empty.
    KeyShortcut shortcut;
    shortcut.Code = f.Text(1, QStringLiteral("code"));
    shortcut.Keys = f.Text(0, QStringLiteral("keys"));
    m.KeyShortcuts.back() = shortcut;
    m.KeyShortcuts.append(KeyShortcut());
}

void LineApplier::Lyrics() {
    Touch(SkinPart::Lyrics);
    m.HasLyrics = true;
    LyricsDisplay& lyrics = m.Lyrics;
    lyrics.Visible = true;
    lyrics.Geometry.Left = f.Pixels(0, QStringLiteral("left"));
    lyrics.Geometry.Top = f.Pixels(1, QStringLiteral("top"));
    lyrics.Geometry.Width = f.Pixels(2, QStringLiteral("width"));
    lyrics.Geometry.Height = f.Pixels(3, QStringLiteral("height"));
    if (f.Given(4))
        lyrics.Font.Name = f.Text(4, QStringLiteral("font name"));
    if (f.Given(5)) {
        const double size = f.Number(5, QStringLiteral("font size"));
        if (size > 0)
            lyrics.Font.Size = size;
    }
    if (f.Given(6))
        lyrics.ForeColor = f.Colour(6);
    if (f.Given(7))
        lyrics.Centred = f.Boolean(7, QStringLiteral("centred"));
}

bool LineApplier::Apply() {
    const QString& k = e.Keyword;
    if (k == u"skinname") {
        Touch(SkinPart::Window);
        m.Tag = f.Value(QStringLiteral("skin name"));
    } else if (k == u"backgroundcolor") {
        Touch(SkinPart::Window);
        m.BackColor = Rules::Int32Of(f.Value(QStringLiteral("colour")));
    } else if (k == u"left") {
        Touch(SkinPart::Window);
        m.Geometry.Left =
            WindowPosition(m_host.PrimaryScreenSize().width(), QStringLiteral("left"));
    } else if (k == u"top") {
        Touch(SkinPart::Window);
        m.Geometry.Top = WindowPosition(m_host.PrimaryScreenSize().height(), QStringLiteral("top"));
    } else if (k == u"width") {
        Touch(SkinPart::Window);
        m.Geometry.Width = Rules::ToInt32(Rules::LeadingNumber(f.Value(QStringLiteral("width"))));
    } else if (k == u"height") {
        Touch(SkinPart::Window);
        m.Geometry.Height = Rules::ToInt32(Rules::LeadingNumber(f.Value(QStringLiteral("height"))));
    } else if (k == u"backgroundpicture") {
        Touch(SkinPart::Window);
        const QString& value = f.Value(QStringLiteral("picture"));
        // Exactly this text, case included; any other spelling is a file name.
        if (value == u"[TransparentBackground]")
            m.TransparentBackground = true;
        else
            m.Picture = LoadFile(value);
    } else if (k == u"label") {
        Label();
    } else if (k == u"image") {
        Image();
    } else if (k == u"labelfont") {
        LabelFont();
    } else if (k == u"labelcenter") {
        LabelCenter();
    } else if (k == u"labelcolor") {
        LabelColor();
    } else if (k == u"ontop") {
        Touch(SkinPart::Window);
        m.OnTop = Rules::ToBoolean(f.Value(QStringLiteral("Boolean")));
    } else if (k == u"scrolltimer") {
        Touch(SkinPart::ScrollTimer);
        m.ScrollInterval = Rules::Int32Of(f.Value(QStringLiteral("interval")));
    } else if (k == u"borders") {
        Borders();
    } else if (k == u"roundwindow") {
        Touch(SkinPart::Window);
        m.RoundWindow = f.Integer16(0, QStringLiteral("corner diameter"));
    } else if (k == u"rememberpos") {
        Touch(SkinPart::Window);
        m.RememberPos = f.Boolean(0, QStringLiteral("Boolean"));
    } else if (k == u"transparency") {
        Touch(SkinPart::Window);
        m.Transparency = Rules::Int16Of(f.Value(QStringLiteral("alpha")));
    } else if (k == u"ondesktop") {
        Touch(SkinPart::Window);
        m.OnDesktop = f.Boolean(0, QStringLiteral("Boolean"));
    } else if (k == u"glassify") {
        Touch(SkinPart::Window);
        m.Glassify = f.Boolean(0, QStringLiteral("Boolean"));
    } else if (k == u"event") {
        m_host.NewEvent(f.Value(QStringLiteral("event")));
    } else if (k == u"timerevent") {
        TimerEvent();
    } else if (k == u"runcode") {
        m_host.RunCode(f.Value(QStringLiteral("code")));
    } else if (k == u"showaction") {
        Touch(SkinPart::Window);
        m.ShowAction = f.Value(QStringLiteral("show action"));
    } else if (k == u"formclick") {
        Touch(SkinPart::Window);
        m.FormClickCode = f.Value(QStringLiteral("code"));
    } else if (k == u"onlyoneinstance") {
        // Any value switches the rule on, "False" included.
        Touch(SkinPart::Window);
        m.OnlyOneInstance = true;
    } else if (k == u"ratingscontrol") {
        Touch(SkinPart::Window);
        m.RatingsSpec = f.Value(QStringLiteral("ratings"));
    } else if (k == u"progresscontrol") {
        ProgressControl();
    } else if (k == u"anyinteraction") {
        Touch(SkinPart::Window);
        const QString& code = f.Value(QStringLiteral("code"));
        // The list's count is a 16-bit number.
        if (m.Interactions.size() >= std::numeric_limits<std::int16_t>::max()) {
            f.Mark(-1, QStringLiteral("interaction count"));
            throw VbError::Overflow();
        }
        m.Interactions.append(code);
    } else if (k == u"keyboardshortcut") {
        KeyboardShortcut();
    } else if (k == u"autoresize") {
        // Recognised and ignored.
    } else if (k == u"disablelabelscroll") {
        Touch(SkinPart::Window);
        m.NoScrollLabels += u'[' + f.Text(0, QStringLiteral("label index")) + u']';
    } else if (k == u"lyrics") {
        Lyrics();
    } else {
        return false;
    }
    return true;
}

} // namespace

SkinLineResult ProcessLine(SkinModel& model, const QString& line, const QString& curPath,
                           SkinHost& host, SkinLineTrace* trace) {
    SkinLineTrace ownTrace;
    if (trace == nullptr)
        trace = &ownTrace;
    *trace = {};
    // No keyword reads more than eight fields ("lyrics"); a line of a million ";" costs no more.
    constexpr qsizetype MaxFieldsRead = 8;
    const std::optional<SkinEntry> entry = ParseSkinLine(line, MaxFieldsRead);
    if (!entry)
        return SkinLineResult::Skipped;
    LineApplier applier(model, *entry, curPath, host, *trace);
    return applier.Apply() ? SkinLineResult::Applied : SkinLineResult::UnknownKeyword;
}

int ProcessLines(
    SkinModel& model, const QStringList& lines, const QString& curPath, SkinHost& host,
    const std::function<void(const SkinLineFault&)>& onFault,
    const std::function<void(qsizetype, SkinLineResult, const SkinChange&)>& afterLine) {
    int faults = 0;
    for (qsizetype i = 0; i < lines.size(); ++i) {
        SkinLineTrace trace;
        SkinLineResult result = SkinLineResult::Applied;
        try {
            result = ProcessLine(model, lines[i], curPath, host, &trace);
        } catch (const VbError& error) {
            ++faults;
            result = SkinLineResult::Failed;
            if (onFault)
                onFault(SkinLineFault{i, lines[i], error, trace});
        }
        if (afterLine)
            afterLine(i, result, trace.Change);
    }
    return faults;
}

QString SkinLineErrorTitle() {
    return QStringLiteral("Error!");
}

QString SkinLineErrorText(const VbError& error, const QString& line) {
    const QString reason = error.number() == VbError::SubscriptOutOfRangeNumber
                               ? QStringLiteral("Expected parameter missing!")
                               : QStringLiteral("Unknown Error: ") + error.description();
    return QStringLiteral("There was an error while loading the skin:") + u'\n' + reason + u'\n' +
           line;
}

} // namespace Pelorin
