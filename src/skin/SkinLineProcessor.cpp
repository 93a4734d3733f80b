#include "SkinLineProcessor.h"

#include "base/FileNames.h"
#include "base/TextRules.h"
#include "skin/SkinHost.h"
#include "skin/SkinLine.h"

#include <limits>
#include <span>

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

    struct Keyword {
        QLatin1String name;
        void (*apply)(LineApplier&);
    };
    static std::span<const Keyword> Keywords();

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

std::span<const LineApplier::Keyword> LineApplier::Keywords() {
    // Each keyword's whole work; the reader knows exactly these (and the checker reports any
    // other).
    static const Keyword keywords[] = {
        {QLatin1String("skinname"),
         [](LineApplier& a) {
             a.Touch(SkinPart::Window);
             a.m.Tag = a.f.Value(QStringLiteral("skin name"));
         }},
        {QLatin1String("backgroundcolor"),
         [](LineApplier& a) {
             a.Touch(SkinPart::Window);
             a.m.BackColor = Rules::Int32Of(a.f.Value(QStringLiteral("colour")));
         }},
        {QLatin1String("left"),
         [](LineApplier& a) {
             a.Touch(SkinPart::Window);
             a.m.Geometry.Left =
                 a.WindowPosition(a.m_host.PrimaryScreenSize().width(), QStringLiteral("left"));
         }},
        {QLatin1String("top"),
         [](LineApplier& a) {
             a.Touch(SkinPart::Window);
             a.m.Geometry.Top =
                 a.WindowPosition(a.m_host.PrimaryScreenSize().height(), QStringLiteral("top"));
         }},
        {QLatin1String("width"),
         [](LineApplier& a) {
             a.Touch(SkinPart::Window);
             a.m.Geometry.Width =
                 Rules::ToInt32(Rules::LeadingNumber(a.f.Value(QStringLiteral("width"))));
         }},
        {QLatin1String("height"),
         [](LineApplier& a) {
             a.Touch(SkinPart::Window);
             a.m.Geometry.Height =
                 Rules::ToInt32(Rules::LeadingNumber(a.f.Value(QStringLiteral("height"))));
         }},
        {QLatin1String("backgroundpicture"),
         [](LineApplier& a) {
             a.Touch(SkinPart::Window);
             const QString& value = a.f.Value(QStringLiteral("picture"));
             // Exactly this text, case included; any other spelling is a file name.
             if (value == u"[TransparentBackground]")
                 a.m.TransparentBackground = true;
             else
                 a.m.Picture = a.LoadFile(value);
         }},
        {QLatin1String("label"), [](LineApplier& a) { a.Label(); }},
        {QLatin1String("image"), [](LineApplier& a) { a.Image(); }},
        {QLatin1String("labelfont"), [](LineApplier& a) { a.LabelFont(); }},
        {QLatin1String("labelcenter"), [](LineApplier& a) { a.LabelCenter(); }},
        {QLatin1String("labelcolor"), [](LineApplier& a) { a.LabelColor(); }},
        {QLatin1String("ontop"),
         [](LineApplier& a) {
             a.Touch(SkinPart::Window);
             a.m.OnTop = Rules::ToBoolean(a.f.Value(QStringLiteral("Boolean")));
         }},
        {QLatin1String("scrolltimer"),
         [](LineApplier& a) {
             a.Touch(SkinPart::ScrollTimer);
             a.m.ScrollInterval = Rules::Int32Of(a.f.Value(QStringLiteral("interval")));
         }},
        {QLatin1String("borders"), [](LineApplier& a) { a.Borders(); }},
        {QLatin1String("roundwindow"),
         [](LineApplier& a) {
             a.Touch(SkinPart::Window);
             a.m.RoundWindow = a.f.Integer16(0, QStringLiteral("corner diameter"));
         }},
        {QLatin1String("rememberpos"),
         [](LineApplier& a) {
             a.Touch(SkinPart::Window);
             a.m.RememberPos = a.f.Boolean(0, QStringLiteral("Boolean"));
         }},
        {QLatin1String("transparency"),
         [](LineApplier& a) {
             a.Touch(SkinPart::Window);
             a.m.Transparency = Rules::Int16Of(a.f.Value(QStringLiteral("alpha")));
         }},
        {QLatin1String("ondesktop"),
         [](LineApplier& a) {
             a.Touch(SkinPart::Window);
             a.m.OnDesktop = a.f.Boolean(0, QStringLiteral("Boolean"));
         }},
        {QLatin1String("glassify"),
         [](LineApplier& a) {
             a.Touch(SkinPart::Window);
             a.m.Glassify = a.f.Boolean(0, QStringLiteral("Boolean"));
         }},
        {QLatin1String("event"),
         [](LineApplier& a) { a.m_host.NewEvent(a.f.Value(QStringLiteral("event"))); }},
        {QLatin1String("timerevent"), [](LineApplier& a) { a.TimerEvent(); }},
        {QLatin1String("runcode"),
         [](LineApplier& a) { a.m_host.RunCode(a.f.Value(QStringLiteral("code"))); }},
        {QLatin1String("showaction"),
         [](LineApplier& a) {
             a.Touch(SkinPart::Window);
             a.m.ShowAction = a.f.Value(QStringLiteral("show action"));
         }},
        {QLatin1String("formclick"),
         [](LineApplier& a) {
             a.Touch(SkinPart::Window);
             a.m.FormClickCode = a.f.Value(QStringLiteral("code"));
         }},
        {QLatin1String("onlyoneinstance"),
         [](LineApplier& a) {
             // Any value switches the rule on, "False" included.
             a.Touch(SkinPart::Window);
             a.m.OnlyOneInstance = true;
         }},
        {QLatin1String("ratingscontrol"),
         [](LineApplier& a) {
             a.Touch(SkinPart::Window);
             a.m.RatingsSpec = a.f.Value(QStringLiteral("ratings"));
         }},
        {QLatin1String("progresscontrol"), [](LineApplier& a) { a.ProgressControl(); }},
        {QLatin1String("anyinteraction"),
         [](LineApplier& a) {
             a.Touch(SkinPart::Window);
             const QString& code = a.f.Value(QStringLiteral("code"));
             // The list's count is a 16-bit number.
             if (a.m.Interactions.size() >= std::numeric_limits<std::int16_t>::max()) {
                 a.f.Mark(-1, QStringLiteral("interaction count"));
                 throw VbError::Overflow();
             }
             a.m.Interactions.append(code);
         }},
        {QLatin1String("keyboardshortcut"), [](LineApplier& a) { a.KeyboardShortcut(); }},
        // Recognised and ignored.
        {QLatin1String("autoresize"), [](LineApplier&) {}},
        {QLatin1String("disablelabelscroll"),
         [](LineApplier& a) {
             a.Touch(SkinPart::Window);
             a.m.NoScrollLabels += u'[' + a.f.Text(0, QStringLiteral("label index")) + u']';
         }},
        {QLatin1String("lyrics"), [](LineApplier& a) { a.Lyrics(); }},
    };
    return keywords;
}

bool LineApplier::Apply() {
    for (const Keyword& keyword : Keywords()) {
        if (e.Keyword == keyword.name) {
            keyword.apply(*this);
            return true;
        }
    }
    return false;
}

} // namespace

QStringList SkinKeywords() {
    QStringList names;
    for (const LineApplier::Keyword& keyword : LineApplier::Keywords())
        names.append(keyword.name);
    return names;
}

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
