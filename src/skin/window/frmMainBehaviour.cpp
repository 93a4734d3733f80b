// The skin window after loading: RunAfter, stacking, shape, glass, the desktop, moving, the
// effects, input, activation and closing.
#include "SkinControls.h"
#include "SkinWindowEffects.h"
#include "VbTimer.h"
#include "WindowShape.h"
#include "base/Log.h"
#include "base/PositionFile.h"
#include "base/TextRules.h"
#include "frmMain.h"
#include "platform/MessageBox.h"
#include "platform/WindowSystem.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QMetaMethod>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QTimer>
#include <QWindow>

namespace Pelorin {

namespace {

QColor ToQColor(WindowsColour colour) {
    const RgbColour rgb = ColourToRgb(colour);
    return QColor(rgb.Red, rgb.Green, rgb.Blue);
}

} // namespace

void frmMain::SetLeftTwips(double twips) {
    MoveTo(QPoint(Rules::TwipsToPixels(twips), PlacedPosition().y()));
}

void frmMain::SetTopTwips(double twips) {
    MoveTo(QPoint(PlacedPosition().x(), Rules::TwipsToPixels(twips)));
}

QPoint frmMain::PlacedPosition() const {
    // Until the user moves it, the window is where it placed itself; Qt's own idea of that can
    // lag behind the window manager while the window is being mapped.
    return m_movedByUser ? pos() : m_placedAt;
}

void frmMain::MoveTo(QPoint position) {
    m_placedAt = position;
    m_movedByUser = false;
    move(position);
}

void frmMain::ResyncPositionAfterMapping() {
    // A frameless tool window mapped under a reparenting window manager sometimes keeps Qt's
    // idea of its position at the frame's corner (0, 0) while the window sits where it was
    // placed; position.ini would then remember the wrong place. Asking for the place again
    // makes the window manager report it.
    if (m_unloaded || m_movedByUser || !isVisible() || pos() == m_placedAt)
        return;
    move(m_placedAt + QPoint(1, 0));
    move(m_placedAt);
}

double frmMain::LeftTwips() const {
    return Rules::PixelsToTwips(PlacedPosition().x());
}

double frmMain::TopTwips() const {
    return Rules::PixelsToTwips(PlacedPosition().y());
}

void frmMain::RunAfter() {
    if (m_unloaded)
        return;
    if (m_model.OnlyOneInstance && m_links.forms.Forms) {
        for (Form* form : m_links.forms.Forms()) {
            // Tags compare exactly; the window that was open first stays.
            if (form != this && form->Tag() == m_model.Tag) {
                Unload();
                return;
            }
        }
    }
    AlwaysOnTop(m_model.OnTop);
    if (m_model.Transparency > 0)
        SetLayeredAlpha(m_model.Transparency);
    if (m_model.RoundWindow > 0)
        CreateRoundRectFromWindow(m_model.RoundWindow);
    if (m_model.Glassify)
        GlassifyMe();
    // Show actions compare exactly: "FadeIn" is a plain show.
    if (m_model.ShowAction == u"fadein") {
        FadeIn();
    } else if (m_model.ShowAction == u"slideup") {
        SlideUp();
    } else {
        ShowWithoutActivating();
        if (m_model.OnDesktop)
            PutOnDesktop();
    }
}

bool frmMain::EmbedInto(quint64 hostWindowId) {
    if (hostWindowId == 0)
        return false;
    // The window system takes the window from the window manager first, which a plain
    // re-parenting would race with.
    if (m_windowSystem->IsAvailable())
        return m_windowSystem->ReparentInto(this, static_cast<WId>(hostWindowId));
    QWindow* host = QWindow::fromWinId(static_cast<WId>(hostWindowId));
    if (host == nullptr)
        return false;
    winId();
    windowHandle()->setParent(host);
    return true;
}

void frmMain::AlwaysOnTop(bool onTop) {
    if (windowFlags().testFlag(Qt::WindowStaysOnTopHint) != onTop)
        setWindowFlag(Qt::WindowStaysOnTopHint, onTop);
    ShowWithoutActivating();
}

void frmMain::ShowWithoutActivating() {
    if (m_unloaded)
        return;
    show();
}

void frmMain::CreateRoundRectFromWindow(int amount) {
    ApplyWindowRegion(this, RoundRectRegion(size(), amount));
}

void frmMain::GlassifyMe() {
    if (isMinimized())
        return;
    // A frameless window's outer size is its client size, so the frame part of the region is
    // empty and only the elements remain.
    ApplyWindowRegion(this, GlassRegion(size(), size(), GlassElementRects(this)));
}

void frmMain::PutOnDesktop() {
    m_lastPlacement = Pelorin::PutOnDesktop(*m_windowSystem, this);
    const auto outcome = m_lastPlacement.outcome;
    if (outcome == DesktopPlacement::Outcome::NotAvailable ||
        outcome == DesktopPlacement::Outcome::Failed)
        qCWarning(lcWindow).noquote() << QStringLiteral("Pelorin: ") + windowTitle() +
                                             QStringLiteral(": ") + m_lastPlacement.Describe();
}

void frmMain::SetLayeredAlpha(int alpha) {
    SetWindowAlpha(*m_windowSystem, this, alpha);
}

void frmMain::SetWindowTopAndHeight(int top, int height) {
    // A window cannot be less than a pixel high; the slide starts from a line.
    const int left = PlacedPosition().x();
    m_placedAt = QPoint(left, top);
    m_movedByUser = false;
    setGeometry(left, top, width(), std::max(1, height));
}

EffectOutcome frmMain::FadeIn() {
    return Pelorin::FadeIn(*m_effects, Pacing());
}

EffectOutcome frmMain::FadeClose() {
    return Pelorin::FadeClose(*m_effects, Pacing());
}

EffectOutcome frmMain::SlideUp() {
    return Pelorin::SlideUp(*m_effects, Pacing());
}

void frmMain::NormalTransparency() {
    Pelorin::NormalTransparency(*m_effects);
}

void frmMain::StartMoveWindow() {
    m_lblMove->setGeometry(0, 0, width(), height());
    m_lblMove->raise();
    m_lblMove->show();
}

void frmMain::MoveWindow(QPoint pressGlobal) {
    m_movedByUser = true;
    m_mover->StartMove(pressGlobal);
}

void frmMain::RunInterActionCode() {
    m_interaction.Raise();
    // The codes run as the list's own entries, so a compound code keeps the text the interpreter
    // left in it ("{" removed) for its next run. A code may close the window: each entry runs
    // from a copy that is written back only while the window still exists.
    const QPointer<frmMain> alive(this);
    for (qsizetype i = 0; alive && i < m_model.Interactions.size(); ++i) {
        QString code = m_model.Interactions.at(i);
        RunCodeInPlace(code);
        if (alive && i < m_model.Interactions.size())
            m_model.Interactions[i] = code;
    }
}

template <typename Signal> bool frmMain::Handled(Signal signal) const {
    return isSignalConnected(QMetaMethod::fromSignal(signal));
}

void frmMain::ImagePress(int index, Qt::MouseButton button, Qt::KeyboardModifiers modifiers,
                         QPoint pos) {
    if (Handled(&frmMain::imagePressed))
        Q_EMIT imagePressed(index, button, modifiers, pos);
    else
        RunInterActionCode();
}

void frmMain::ImageMove(int index, Qt::MouseButtons buttons, Qt::KeyboardModifiers modifiers,
                        QPoint pos) {
    Q_EMIT imageMoved(index, buttons, modifiers, pos);
}

void frmMain::ImageRelease(int index, Qt::MouseButton button, Qt::KeyboardModifiers modifiers,
                           QPoint pos) {
    Q_EMIT imageReleased(index, button, modifiers, pos);
}

void frmMain::ImageDrop(int index, const QStringList& files) {
    Q_EMIT imageFilesDropped(index, files);
}

void frmMain::ProgressPress(Qt::MouseButton button, Qt::KeyboardModifiers, QPoint pos) {
    if (Handled(&frmMain::progressPressed))
        Q_EMIT progressPressed(button, pos.x());
    else
        RunInterActionCode();
}

void frmMain::ProgressMove(Qt::MouseButtons buttons, Qt::KeyboardModifiers, QPoint pos) {
    Q_EMIT progressMoved(buttons, pos.x());
}

void frmMain::StarPress(int index) {
    if (Handled(&frmMain::starPressed))
        Q_EMIT starPressed(index);
    else
        RunInterActionCode();
}

void frmMain::StarRelease(int index, Qt::MouseButton button, QPoint pos) {
    // A click: the left button released over the star it was pressed on.
    const PictureBox* star = imgRatings(index);
    if (button != Qt::LeftButton || star == nullptr || !star->rect().contains(pos))
        return;
    Q_EMIT starClicked(index);
}

void frmMain::tmr_Timer(int index) {
    VbTimer* timer = tmr(index);
    if (timer == nullptr)
        return;
    // A tick that arrives while the window closes finishes the closing instead.
    if (!m_model.Closing)
        RunCode(ControlTag(timer));
    else
        Unload();
}

bool frmMain::event(QEvent* event) {
    if (event->type() == QEvent::WindowActivate)
        Form_Activate();
    if (event->type() == QEvent::Show && !m_mappedOnce) {
        m_mappedOnce = true;
        for (const int delay : {0, 100, 300, 1000})
            QTimer::singleShot(delay, this, &frmMain::ResyncPositionAfterMapping);
    }
    return QWidget::event(event);
}

void frmMain::Form_Activate() {
    if (m_unloaded)
        return;
    if (!m_activatedOnce) {
        m_activatedOnce = true;
        Q_EMIT firstActivated();
    }
    // A window that no skin was loaded into has no business being open.
    if (m_model.Tag.isEmpty())
        Unload();
}

bool frmMain::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_lblMove && event->type() == QEvent::MouseButtonPress) {
        // lblMove_MouseDown: any button moves the window; the handle goes away meanwhile.
        MoveWindow(static_cast<QMouseEvent*>(event)->globalPosition().toPoint());
        m_lblMove->hide();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

void frmMain::mousePressEvent(QMouseEvent* event) {
    // Form_MouseDown (labels hand their presses on to here, as lblInfo_MouseDown does).
    RunInterActionCode();
    if (!m_unloaded) {
        // The window-click code is the window's own variable, changed in place like the
        // interaction codes.
        const QPointer<frmMain> alive(this);
        QString code = m_model.FormClickCode;
        RunCodeInPlace(code);
        if (alive)
            m_model.FormClickCode = code;
    }
    event->accept();
}

void frmMain::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::RightButton)
        Q_EMIT menuRequested();
    event->accept();
}

void frmMain::keyPressEvent(QKeyEvent* event) {
    const int key = event->key();
    const bool modifierKey = key == Qt::Key_Shift || key == Qt::Key_Control || key == Qt::Key_Alt;
    const Qt::KeyboardModifiers moving = Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier;
    if ((event->modifiers() & moving) != 0 || modifierKey)
        StartMoveWindow();
    event->accept();
}

void frmMain::keyReleaseEvent(QKeyEvent* event) {
    if (!m_lblMove->isHidden())
        m_lblMove->hide();
    event->accept();
}

void frmMain::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    if (!isMinimized())
        UpdateBorderLines();
}

void frmMain::UpdateBorderLines() {
    // The lines start at the top-left corner; their far ends follow the size, 2 pixels in from
    // the right and bottom edges.
    const int w = width();
    const int h = height();
    m_lnRight->SetEnds(w - 2, 0, w - 2, h);
    m_lnLeft->SetEnds(0, 0, 0, h);
    m_lnBottom->SetEnds(0, h - 2, w, h - 2);
    m_lnTop->SetEnds(0, 0, w, 0);
}

void frmMain::paintEvent(QPaintEvent*) {
    if (m_model.TransparentBackground)
        return;
    QPainter painter(this);
    painter.fillRect(rect(),
                     m_model.BackColor ? ToQColor(*m_model.BackColor) : palette().window().color());
    if (m_model.Picture)
        painter.drawImage(QPoint(0, 0), SkinPicture(*m_model.Picture));
}

void frmMain::closeEvent(QCloseEvent* event) {
    // The window system's close request goes through the window's own closing.
    event->ignore();
    Unload();
}

void frmMain::Unload() {
    if (m_unloaded)
        return;
    m_unloaded = true;
    Form_Unload();
}

void frmMain::Form_Unload() {
    m_model.Closing = true;
    CallService(m_links.services.CloseAllHotkeys);
    CallService(m_links.services.CloseLyrics);
    if (m_model.RememberPos) {
        QString error;
        if (!WritePositionFile(m_model.SkinFolder + QLatin1String("position.ini"), LeftTwips(),
                               TopTwips(), &error))
            MessageBox::Show(error, QStringLiteral("Error!"), MessageBox::Icon::Critical);
    }
    for (VbTimer* timer : findChildren<VbTimer*>()) {
        if (timer->objectName().left(3).compare(QLatin1String("tmr"), Qt::CaseInsensitive) == 0)
            timer->SetEnabled(false);
    }
    if (m_mover->IsMovingByHand())
        releaseMouse();
    hide();
    // The shell counts this window still: the last one takes the menus (and maybe the program)
    // with it.
    if (m_links.onUnloading)
        m_links.onUnloading(*this);
    if (m_links.forms.Remove)
        m_links.forms.Remove(this);
    deleteLater();
}

} // namespace Pelorin
