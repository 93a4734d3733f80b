#include "PlainSkinWindow.h"

#include "FormsRegistry.h"
#include "shell/platform/MessageBox.h"
#include "shell/platform/PictureLoader.h"
#include "shell/platform/WindowSystem.h"
#include "shell/rules/TextFile.h"
#include "shell/rules/TextRules.h"
#include "shell/rules/VbError.h"
#include "shell/settings/PositionFile.h"
#include "skin/SkinLineProcessor.h"

#include <QCloseEvent>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QPainter>
#include <QScreen>
#include <QWindow>

namespace Pelorin {

namespace {

// The size a skin window has when its skin gives none.
constexpr int DefaultWidth = 320;
constexpr int DefaultHeight = 100;

QColor ToQColor(WindowsColour colour) {
    const RgbColour rgb = ColourToRgb(colour);
    return QColor(rgb.Red, rgb.Green, rgb.Blue);
}

void ShowLoadSkinError(const VbError& error) {
    MessageBox::Show(QStringLiteral("There was an error in LoadSkin\nErr %1: %2")
                         .arg(error.number())
                         .arg(error.description()),
                     QStringLiteral("Error!"), MessageBox::Icon::Critical);
}

} // namespace

PlainSkinWindow::PlainSkinWindow(FormsRegistry& forms, UnloadingHandler onUnloading)
    : QWidget(nullptr, Qt::FramelessWindowHint | Qt::Tool), m_forms(forms),
      m_onUnloading(std::move(onUnloading)) {
    setAttribute(Qt::WA_ShowWithoutActivating);
    resize(DefaultWidth, DefaultHeight);
    m_forms.Add(this);
}

PlainSkinWindow::~PlainSkinWindow() {
    m_forms.Remove(this);
}

void PlainSkinWindow::LoadSkin(const QString& skinFile, const QString& path) {
    m_model.BeginLoad(path);
    setWindowTitle(QDir(path).dirName());
    try {
        if (!QFileInfo(skinFile).isFile())
            throw VbError::FileNotFound();
        TextFileContent content;
        QString readError;
        if (!TextFile::Read(skinFile, content, &readError))
            throw VbError(VbError::FileNotFoundNumber, readError);
        if (!content.HasCR && !content.Lines.isEmpty() && !content.Lines.first().isEmpty())
            std::fprintf(stderr, "%s\n",
                         qPrintable(QStringLiteral("%1: no CR line ends; the whole file reads as "
                                                   "one line (save it with CR LF line ends)")
                                        .arg(skinFile)));
        ProcessLines(
            m_model, content.Lines, path, *this,
            [](const SkinLineFault& fault) {
                MessageBox::Show(SkinLineErrorText(fault.Error, fault.Line), SkinLineErrorTitle(),
                                 MessageBox::Icon::Critical);
            },
            [this](qsizetype, SkinLineResult) { ApplyGeometry(); });

        const QString positionFile = m_model.SkinFolder + QLatin1String("position.ini");
        if (m_model.RememberPos && QFileInfo::exists(positionFile))
            ReadPositionFile(
                positionFile, [this](double twips) { SetLeftTwips(twips); },
                [this](double twips) { SetTopTwips(twips); });
    } catch (const VbError& error) {
        ShowLoadSkinError(error);
    }
}

void PlainSkinWindow::ApplyGeometry() {
    const WindowGeometry& g = m_model.Geometry;
    QRect r = geometry();
    if (g.Left)
        r.moveLeft(*g.Left);
    if (g.Top)
        r.moveTop(*g.Top);
    r.setWidth(std::max(1, g.Width.value_or(r.width())));
    r.setHeight(std::max(1, g.Height.value_or(r.height())));
    setGeometry(r);
}

void PlainSkinWindow::SetLeftTwips(double twips) {
    move(Rules::TwipsToPixels(twips), y());
}

void PlainSkinWindow::SetTopTwips(double twips) {
    move(x(), Rules::TwipsToPixels(twips));
}

double PlainSkinWindow::LeftTwips() const {
    return Rules::PixelsToTwips(x());
}

double PlainSkinWindow::TopTwips() const {
    return Rules::PixelsToTwips(y());
}

void PlainSkinWindow::RunAfter() {
    if (m_model.OnlyOneInstance) {
        for (Form* form : m_forms.Forms()) {
            if (form != this && form->Tag() == m_model.Tag) {
                Unload();
                return;
            }
        }
    }
    if (m_model.OnTop)
        setWindowFlag(Qt::WindowStaysOnTopHint, true);
    show();
}

bool PlainSkinWindow::EmbedInto(quint64 hostWindowId) {
    const std::unique_ptr<WindowSystem> windowSystem = CreateWindowSystem();
    return windowSystem->ReparentInto(this, static_cast<WId>(hostWindowId));
}

void PlainSkinWindow::Unload() {
    if (m_unloading)
        return;
    m_unloading = true;
    m_model.Closing = true;
    if (m_model.RememberPos) {
        QString error;
        if (!WritePositionFile(m_model.SkinFolder + QLatin1String("position.ini"), LeftTwips(),
                               TopTwips(), &error))
            MessageBox::Show(error, QStringLiteral("Error!"), MessageBox::Icon::Critical);
    }
    hide();
    if (m_onUnloading)
        m_onUnloading(*this);
    m_forms.Remove(this);
    deleteLater();
}

void PlainSkinWindow::closeEvent(QCloseEvent* event) {
    event->ignore();
    Unload();
}

void PlainSkinWindow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (m_model.BackColor)
        painter.fillRect(rect(), ToQColor(*m_model.BackColor));
    if (m_model.Picture)
        painter.drawImage(QPoint(0, 0), m_pictures.value(*m_model.Picture));
}

void PlainSkinWindow::LoadPicture(const QString& fullPath) {
    m_pictures.insert(fullPath, Pelorin::LoadPicture(fullPath));
}

void PlainSkinWindow::RunCode(const QString&) {}

void PlainSkinWindow::NewEvent(const QString&) {}

QSize PlainSkinWindow::PrimaryScreenSize() const {
    const QScreen* screen = QGuiApplication::primaryScreen();
    return screen != nullptr ? screen->size() : QSize(1024, 768);
}

} // namespace Pelorin
