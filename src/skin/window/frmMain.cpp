// The skin window's construction and loading: the fixed controls, LoadSkin and the controls that
// each skin line creates. Behaviour after loading is in frmMainBehaviour.cpp.
#include "frmMain.h"

#include "SkinControls.h"
#include "SkinWindowEffects.h"
#include "VbTimer.h"
#include "base/Log.h"
#include "base/PositionFile.h"
#include "base/TextFile.h"
#include "base/TextRules.h"
#include "base/VbError.h"
#include "platform/MessageBox.h"
#include "platform/PictureLoader.h"
#include "platform/WindowSystem.h"
#include "skin/SkinLineProcessor.h"
#include "skin/SkinLint.h"
#include "skin/window/effects/EffectPacing.h"

#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QScreen>
#include <algorithm>

namespace Pelorin {

namespace {

// X11 sizes are 16-bit; a skin asking for more gets the most the window system can give.
constexpr int MaxWindowExtent = 32767;

// The progress timer's fixed interval; the hover tracker's.
constexpr int ProgressIntervalMs = 500;
constexpr int TrackImageIntervalMs = 50;

QColor ToQColor(WindowsColour colour) {
    const RgbColour rgb = ColourToRgb(colour);
    return QColor(rgb.Red, rgb.Green, rgb.Blue);
}

QFont SkinFontOf(const SkinFont& skinFont, const QFont& base) {
    QFont font = base;
    if (!skinFont.Name.isEmpty())
        font.setFamily(skinFont.Name);
    if (skinFont.Size > 0)
        font.setPointSizeF(skinFont.Size);
    return font;
}

QRect ToRect(const ElementGeometry& g) {
    return QRect(g.Left, g.Top, std::max(0, g.Width), std::max(0, g.Height));
}

void ShowLoadSkinError(const VbError& error) {
    MessageBox::Show(QStringLiteral("There was an error in LoadSkin") + u'\n' +
                         QStringLiteral("Err %1: %2").arg(error.number()).arg(error.description()),
                     QStringLiteral("Error!"), MessageBox::Icon::Critical);
}

void ShowLineError(const VbError& error, const QString& line) {
    MessageBox::Show(SkinLineErrorText(error, line), SkinLineErrorTitle(),
                     MessageBox::Icon::Critical);
}

} // namespace

frmMain::frmMain(Links links)
    : QWidget(nullptr, Qt::FramelessWindowHint | Qt::Tool), m_links(std::move(links)),
      m_effects(std::make_unique<SkinWindowEffects>(*this)) {
    setObjectName(QStringLiteral("frmMain"));
    setAttribute(Qt::WA_ShowWithoutActivating);
    setFocusPolicy(Qt::StrongFocus);
    resize(DefaultWidth, DefaultHeight);
    m_placedAt = pos();
    m_windowSystem = m_links.windowSystem;
    if (m_windowSystem == nullptr) {
        m_ownWindowSystem = CreateWindowSystem();
        m_windowSystem = m_ownWindowSystem.get();
    }
    m_mover = new WindowMover(this, m_links.moveMethod);
    CreateFixedControls();
    if (m_links.forms.Add)
        m_links.forms.Add(this);
}

frmMain::~frmMain() {
    if (m_links.forms.Remove)
        m_links.forms.Remove(this);
}

void frmMain::CreateFixedControls() {
    m_imgProgress = new PictureBox(QStringLiteral("imgProgress"), this);
    // Empty until a progress tick finds a playing track.
    m_imgProgress->resize(0, 0);
    m_imgProgress->hide();
    connect(m_imgProgress, &PictureBox::MousePressed, this, &frmMain::ProgressPress);
    connect(m_imgProgress, &PictureBox::MouseMoved, this, &frmMain::ProgressMove);
    for (int k = 0; k < static_cast<int>(m_imgRatings.size()); ++k) {
        m_imgRatings[k] = new PictureBox(QStringLiteral("imgRatings"), this);
        m_imgRatings[k]->hide();
        connect(m_imgRatings[k], &PictureBox::MousePressed, this, [this, k] { StarPress(k); });
        connect(m_imgRatings[k], &PictureBox::MouseReleased, this,
                [this, k](Qt::MouseButton button, Qt::KeyboardModifiers, QPoint pos) {
                    StarRelease(k, button, pos);
                });
    }
    m_cantom = new SkinLabelControl(QStringLiteral("Cantom"), this);
    m_cantom->hide();

    m_lnTop = new LineControl(QStringLiteral("lnTop"), this);
    m_lnBottom = new LineControl(QStringLiteral("lnBottom"), this);
    m_lnLeft = new LineControl(QStringLiteral("lnLeft"), this);
    m_lnRight = new LineControl(QStringLiteral("lnRight"), this);
    for (LineControl* line : {m_lnTop, m_lnBottom, m_lnLeft, m_lnRight})
        line->hide();

    // Raised over everything else when it is shown.
    m_lblMove = new SkinLabelControl(QStringLiteral("lblMove"), this);
    m_lblMove->setText(QStringLiteral("Move Window"));
    m_lblMove->setAutoFillBackground(true);
    m_lblMove->hide();
    m_lblMove->installEventFilter(this);

    m_tmrScroll = new VbTimer(QStringLiteral("tmrScroll"), this);
    m_tmrProgress = new VbTimer(QStringLiteral("tmrProgress"), this, true, ProgressIntervalMs);
    m_tmrTrackImage =
        new VbTimer(QStringLiteral("tmrTrackImage"), this, false, TrackImageIntervalMs);
    m_tmrDeskbarLetDie = new VbTimer(QStringLiteral("tmrDeskbarLetDie"), this, false);
    connect(m_tmrScroll, &VbTimer::Timer, this, &frmMain::scrollTimerTicked);
    connect(m_tmrProgress, &VbTimer::Timer, this, &frmMain::progressTimerTicked);
    connect(m_tmrTrackImage, &VbTimer::Timer, this, &frmMain::trackImageTimerTicked);
    connect(m_tmrDeskbarLetDie, &VbTimer::Timer, this, &frmMain::deskbarLetDieTimerTicked);
}

void frmMain::CallService(const std::function<void(frmMain&)>& service) {
    if (service)
        service(*this);
}

EffectPacing& frmMain::Pacing() {
    if (m_links.pacing != nullptr)
        return *m_links.pacing;
    if (!m_ownPacing)
        m_ownPacing = std::make_unique<EventLoopPacing>();
    return *m_ownPacing;
}

void frmMain::LoadSkin(const QString& skinFile, const QString& path) {
    m_model.BeginLoad(path);
    setWindowTitle(QDir(path).dirName());
    try {
        TextFileContent content;
        QString readError;
        if (!QFileInfo(skinFile).isFile())
            throw VbError::FileNotFound();
        if (!TextFile::ReadConfined(skinFile, path, TextFile::MaxSkinFileBytes, content,
                                    &readError))
            throw VbError(VbError::FileNotFoundNumber, readError);
        if (content.MixesLineEnds)
            qCWarning(lcSkin).noquote()
                << skinFile + QLatin1String(": ") + SkinFileMixedLineEndsWarning();
        int faults = 0;
        ProcessLines(
            m_model, content.Lines, path, *this,
            [&faults](const SkinLineFault& fault) {
                // A skin with thousands of broken lines must not bury the user in boxes.
                if (++faults <= MaxLineErrorBoxes)
                    ShowLineError(fault.Error, fault.Line);
            },
            [this](qsizetype, SkinLineResult, const SkinChange& change) { ApplyChange(change); });
        if (faults > MaxLineErrorBoxes)
            MessageBox::Show(MoreLineErrorsText(faults - MaxLineErrorBoxes, path),
                             SkinLineErrorTitle(), MessageBox::Icon::Critical);

        const QString positionFile = m_model.SkinFolder + QLatin1String("position.ini");
        if (m_model.RememberPos && QFileInfo::exists(positionFile))
            ReadPositionFile(
                positionFile, [this](double twips) { SetLeftTwips(twips); },
                [this](double twips) { SetTopTwips(twips); });
        CallService(m_links.services.CheckStartPersonal);
        CallService(m_links.services.LoadSong);
        CallService(m_links.services.ProcessKeyShortcuts);
        Q_EMIT progressTimerTicked();
    } catch (const VbError& error) {
        ShowLoadSkinError(error);
    }
}

void frmMain::ProcessLine(const QString& line, const QString& curPath) {
    SkinLineTrace trace;
    try {
        Pelorin::ProcessLine(m_model, line, curPath, *this, &trace);
    } catch (const VbError& error) {
        ShowLineError(error, line);
    }
    ApplyChange(trace.Change);
}

void frmMain::ApplyChange(const SkinChange& change) {
    switch (change.Part) {
    case SkinPart::Nothing:
        break;
    case SkinPart::Window:
        ApplyWindowSettings();
        break;
    case SkinPart::Label:
        ApplyLabel(change.Index);
        break;
    case SkinPart::Image:
        ApplyImage(change.Index);
        break;
    case SkinPart::Timer:
        ApplyTimer(change.Index);
        break;
    case SkinPart::ScrollTimer:
        if (m_model.ScrollInterval)
            m_tmrScroll->SetInterval(*m_model.ScrollInterval);
        break;
    case SkinPart::Progress:
        ApplyProgress();
        break;
    case SkinPart::Borders:
        ApplyBorders();
        break;
    case SkinPart::Lyrics:
        ApplyLyrics();
        break;
    }
}

void frmMain::ApplyWindowSettings() {
    const WindowGeometry& g = m_model.Geometry;
    QRect r(PlacedPosition(), size());
    if (g.Left)
        r.moveLeft(*g.Left);
    if (g.Top)
        r.moveTop(*g.Top);
    // Negative sizes are taken as they come by the loader; a window cannot be smaller than a
    // pixel nor larger than the window system allows.
    if (g.Width)
        r.setWidth(std::clamp(*g.Width, 1, MaxWindowExtent));
    if (g.Height)
        r.setHeight(std::clamp(*g.Height, 1, MaxWindowExtent));
    if (r != geometry())
        setGeometry(r);
    m_placedAt = r.topLeft();
    m_movedByUser = false;
    // A hidden window gets its resize event only when shown; the lines follow at once.
    UpdateBorderLines();
    if (m_model.TransparentBackground && !testAttribute(Qt::WA_TranslucentBackground))
        setAttribute(Qt::WA_TranslucentBackground);
    update();
}

void frmMain::ApplyLabel(int index) {
    if (index <= 0 || index >= static_cast<int>(m_model.lblInfo.size()))
        return;
    while (static_cast<int>(m_lblInfo.size()) <= index) {
        m_lblInfo.push_back(new SkinLabelControl(QStringLiteral("lblInfo"), this));
    }
    const SkinLabel& item = m_model.lblInfo[index];
    SkinLabelControl* label = m_lblInfo[index];
    label->setGeometry(ToRect(item.Geometry));
    SetControlTag(label, item.Tag);
    label->setFont(SkinFontOf(item.Font, font()));
    label->setAlignment((item.Centred ? Qt::AlignHCenter : Qt::AlignLeft) | Qt::AlignTop);
    if (item.ForeColor) {
        QPalette palette = label->palette();
        palette.setColor(QPalette::WindowText, ToQColor(*item.ForeColor));
        label->setPalette(palette);
    }
    label->setVisible(item.Visible);
}

void frmMain::ApplyImage(int index) {
    if (index <= 0 || index >= static_cast<int>(m_model.img.size()))
        return;
    while (static_cast<int>(m_img.size()) <= index) {
        const int created = static_cast<int>(m_img.size());
        auto* image = new PictureBox(QStringLiteral("img"), this);
        // Moves without a button show the hover picture.
        image->setMouseTracking(true);
        connect(image, &PictureBox::MousePressed, this,
                [this, created](Qt::MouseButton button, Qt::KeyboardModifiers modifiers,
                                QPoint pos) { ImagePress(created, button, modifiers, pos); });
        connect(image, &PictureBox::MouseMoved, this,
                [this, created](Qt::MouseButtons buttons, Qt::KeyboardModifiers modifiers,
                                QPoint pos) { ImageMove(created, buttons, modifiers, pos); });
        connect(image, &PictureBox::MouseReleased, this,
                [this, created](Qt::MouseButton button, Qt::KeyboardModifiers modifiers,
                                QPoint pos) { ImageRelease(created, button, modifiers, pos); });
        connect(image, &PictureBox::FilesDropped, this,
                [this, created](const QStringList& files) { ImageDrop(created, files); });
        m_img.push_back(image);
    }
    const SkinImage& item = m_model.img[index];
    PictureBox* image = m_img[index];
    image->setGeometry(ToRect(item.Geometry));
    SetControlTag(image, item.Tag);
    image->SetPicture(item.Picture ? SkinPicture(*item.Picture) : QImage());
    image->setAcceptDrops(item.AcceptsDrops);
    image->setVisible(item.Visible);
}

void frmMain::ApplyTimer(int index) {
    if (index <= 0 || index >= static_cast<int>(m_model.tmr.size()))
        return;
    while (static_cast<int>(m_tmr.size()) <= index) {
        const int created = static_cast<int>(m_tmr.size());
        const SkinTimer& model = m_model.tmr.front();
        auto* timer = new VbTimer(QStringLiteral("tmr"), this, model.Enabled, model.Interval);
        connect(timer, &VbTimer::Timer, this, [this, created] { tmr_Timer(created); });
        m_tmr.push_back(timer);
    }
    const SkinTimer& item = m_model.tmr[index];
    VbTimer* timer = m_tmr[index];
    SetControlTag(timer, item.Tag);
    if (timer->Interval() != item.Interval)
        timer->SetInterval(item.Interval);
    if (timer->Enabled() != item.Enabled)
        timer->SetEnabled(item.Enabled);
}

void frmMain::ApplyProgress() {
    const ProgressControl& item = m_model.imgProgress;
    // The width follows the track position; the skin gives only the full width (in Tag).
    m_imgProgress->setGeometry(item.Left, item.Top, m_imgProgress->width(),
                               std::max(0, item.Height));
    SetControlTag(m_imgProgress, item.Tag);
    m_imgProgress->SetStretchWidth(Rules::ToInt32(Rules::LeadingNumber(item.Tag)));
    m_imgProgress->SetPicture(item.Picture ? SkinPicture(*item.Picture) : QImage());
    m_imgProgress->setVisible(item.Visible);
}

void frmMain::ApplyBorders() {
    const std::pair<const BorderLine*, LineControl*> lines[] = {{&m_model.lnTop, m_lnTop},
                                                                {&m_model.lnBottom, m_lnBottom},
                                                                {&m_model.lnLeft, m_lnLeft},
                                                                {&m_model.lnRight, m_lnRight}};
    for (const auto& [item, control] : lines) {
        if (item->BorderColor)
            control->SetColour(ToQColor(*item->BorderColor));
        control->setVisible(item->Visible);
    }
    UpdateBorderLines();
}

void frmMain::ApplyLyrics() {
    const LyricsDisplay& item = m_model.Lyrics;
    m_cantom->setGeometry(ToRect(item.Geometry));
    m_cantom->setFont(SkinFontOf(item.Font, font()));
    m_cantom->setAlignment((item.Centred ? Qt::AlignHCenter : Qt::AlignLeft) | Qt::AlignTop);
    if (item.ForeColor) {
        QPalette palette = m_cantom->palette();
        palette.setColor(QPalette::WindowText, ToQColor(*item.ForeColor));
        m_cantom->setPalette(palette);
    }
    m_cantom->setVisible(item.Visible);
}

void frmMain::LoadPicture(const QString& fullPath) {
    if (m_pictureKeys.contains(fullPath))
        return;
    // One file under many names ("big.png", "./big.png", "././big.png") is decoded once.
    const QString canonical = QFileInfo(fullPath).canonicalFilePath();
    const QString key = canonical.isEmpty() ? fullPath : canonical;
    if (!m_pictures.contains(key)) {
        const QImage picture = Pelorin::LoadPicture(fullPath);
        if (m_pictureBytes + picture.sizeInBytes() > m_links.pictureBudgetBytes) {
            qCWarning(lcPicture).noquote()
                << QStringLiteral("Pelorin: ") + fullPath +
                       QStringLiteral(": the skin's pictures would take more than %1 bytes")
                           .arg(m_links.pictureBudgetBytes);
            throw VbError::CannotLoadFile();
        }
        m_pictureBytes += picture.sizeInBytes();
        m_pictures.insert(key, picture);
    }
    m_pictureKeys.insert(fullPath, key);
}

QImage frmMain::SkinPicture(const QString& fullPath) const {
    return m_pictures.value(m_pictureKeys.value(fullPath));
}

void frmMain::NewEvent(const QString& text) {
    if (m_links.services.NewEvent)
        m_links.services.NewEvent(*this, text);
}

void frmMain::RunCode(const QString& code) {
    QString copy = code;
    RunCodeInPlace(copy);
}

void frmMain::RunCodeInPlace(QString& code) {
    if (m_links.services.RunCode)
        m_links.services.RunCode(*this, code);
}

QSize frmMain::PrimaryScreenSize() const {
    const QScreen* screen = QGuiApplication::primaryScreen();
    return screen != nullptr ? screen->size() : QSize(1024, 768);
}

SkinLabelControl* frmMain::lblInfo(int index) const {
    return index > 0 && index < static_cast<int>(m_lblInfo.size()) ? m_lblInfo[index] : nullptr;
}

PictureBox* frmMain::img(int index) const {
    return index > 0 && index < static_cast<int>(m_img.size()) ? m_img[index] : nullptr;
}

VbTimer* frmMain::tmr(int index) const {
    return index > 0 && index < static_cast<int>(m_tmr.size()) ? m_tmr[index] : nullptr;
}

PictureBox* frmMain::imgRatings(int index) const {
    return index >= 0 && index < static_cast<int>(m_imgRatings.size()) ? m_imgRatings[index]
                                                                       : nullptr;
}

int frmMain::scrollWidthTextWidth(int index, const QString& text) const {
    const SkinLabelControl* label = lblInfo(index);
    return label != nullptr ? label->fontMetrics().horizontalAdvance(text) : 0;
}

} // namespace Pelorin
