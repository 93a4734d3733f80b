#pragma once

#include "SkinWindowServices.h"
#include "WindowMover.h"
#include "platform/WindowStyling.h"
#include "skin/SkinHost.h"
#include "skin/SkinModel.h"
#include "skin/window/SkinWindow.h"
#include "skin/window/effects/InteractionFlag.h"
#include "skin/window/effects/WindowEffects.h"

#include <QHash>
#include <QImage>
#include <QWidget>
#include <array>
#include <functional>
#include <memory>
#include <vector>

namespace Pelorin {

class EffectPacing;
class LineControl;
class PictureBox;
class SkinLabelControl;
class SkinWindowEffects;
class VbTimer;
class WindowSystem;

// The skin window: a frameless tool window (not in the task bar) that a skin file fills with
// labels, images, timers, a progress bar, stars, border lines and a lyrics display, and that
// shapes, stacks, fades and moves itself as the skin says. One instance per open skin.
//
// Control arrays keep the skin's numbering: lblInfo(1) is the first "label" line, img(1) the
// first "image" line, tmr(1) the first "timerevent" line; their element 0 is never created.
// imgRatings(0) to imgRatings(4) are the five stars.
class frmMain : public QWidget, public SkinWindow, private SkinHost {
    Q_OBJECT
public:
    // What the window is given by whoever creates it.
    struct Links {
        OpenFormsAccess forms;
        // The shell's part of closing, called while the window is still registered.
        std::function<void(SkinWindow&)> onUnloading;
        SkinWindowServices services;
        // Shared by all skin windows; null: the window makes its own.
        WindowSystem* windowSystem = nullptr;
        // How effects pause between steps; null: the event loop and real sleeps.
        EffectPacing* pacing = nullptr;
        WindowMover::Method moveMethod = WindowMover::Method::SystemFirst;
        // The most the skin's decoded pictures may take together; a picture beyond it is
        // refused as if it could not be loaded.
        qint64 pictureBudgetBytes = 512LL * 1024 * 1024;
    };

    explicit frmMain(Links links);
    ~frmMain() override;

    // Form
    QString Tag() const override { return m_model.Tag; }
    void Unload() override;
    QWidget* Widget() override { return this; }

    // SkinWindow
    void SetIsDeskbar(bool isDeskbar) override { m_model.IsDeskbar = isDeskbar; }
    bool IsDeskbar() const override { return m_model.IsDeskbar; }
    void LoadSkin(const QString& skinFile, const QString& path) override;
    void SetLeftTwips(double twips) override;
    void SetTopTwips(double twips) override;
    double LeftTwips() const override;
    double TopTwips() const override;
    void RunAfter() override;
    bool EmbedInto(quint64 hostWindowId) override;

    // Applies one raw skin line (and builds what it created); reports its own error.
    void ProcessLine(const QString& line, const QString& curPath);

    // The model that the skin lines filled: per-window settings and element data.
    const SkinModel& Model() const { return m_model; }
    SkinModel& Model() { return m_model; }
    const QString& SkinFolder() const { return m_model.SkinFolder; }
    bool Closing() const { return m_model.Closing; }
    // True from the start of Unload on.
    bool IsUnloaded() const { return m_unloaded; }

    // Window behaviour.
    void AlwaysOnTop(bool onTop);
    void CreateRoundRectFromWindow(int amount);
    void GlassifyMe();
    void PutOnDesktop();
    DesktopPlacement LastDesktopPlacement() const { return m_lastPlacement; }
    void StartMoveWindow();
    // Starts moving the window with the pointer, the button being down at `pressGlobal`.
    void MoveWindow(QPoint pressGlobal);

    // The command language's entry, and the interaction codes every press runs.
    void RunCode(const QString& code) override;
    // Runs a code the window keeps, as the variable it is: the interpreter may change it.
    void RunCodeInPlace(QString& code);
    void RunInterActionCode();
    InteractionFlag& Interaction() { return m_interaction; }

    // Effects on this window.
    EffectOutcome FadeIn();
    EffectOutcome FadeClose();
    EffectOutcome SlideUp();
    void NormalTransparency();
    void SetLayeredAlpha(int alpha);

    // Controls. An index that does not exist gives null (element 0 of the skin arrays too).
    SkinLabelControl* lblInfo(int index) const;
    PictureBox* img(int index) const;
    VbTimer* tmr(int index) const;
    // The width of a text in label `index`'s font (scrollWidth(index)); 0 for a missing label.
    int scrollWidthTextWidth(int index, const QString& text) const;
    PictureBox* imgProgress() const { return m_imgProgress; }
    PictureBox* imgRatings(int index) const;
    SkinLabelControl* lblMove() const { return m_lblMove; }
    LineControl* lnTop() const { return m_lnTop; }
    LineControl* lnBottom() const { return m_lnBottom; }
    LineControl* lnLeft() const { return m_lnLeft; }
    LineControl* lnRight() const { return m_lnRight; }
    VbTimer* tmrScroll() const { return m_tmrScroll; }
    VbTimer* tmrProgress() const { return m_tmrProgress; }
    VbTimer* tmrTrackImage() const { return m_tmrTrackImage; }
    VbTimer* tmrDeskbarLetDie() const { return m_tmrDeskbarLetDie; }
    // The lyrics display that the "lyrics" line places.
    SkinLabelControl* Cantom() const { return m_cantom; }
    // A picture the skin loaded, by its full path; null when it did not load.
    QImage SkinPicture(const QString& fullPath) const;

    // Shows the window without taking the focus from the window that has it.
    void ShowWithoutActivating();
    // The window's top edge where it placed itself, and a change of top and height at once (the
    // slide-up effect).
    int WindowTop() const { return PlacedPosition().y(); }
    void SetWindowTopAndHeight(int top, int height);

    // The most faulty-line boxes one load shows; the rest are counted in one more box.
    static constexpr int MaxLineErrorBoxes = 10;
    static QString MoreLineErrorsText(int more, const QString& skinFolder) {
        return QStringLiteral("%1 more lines of this skin could not be loaded and were skipped. "
                              "\"pelorin --check-skin %2\" lists them all.")
            .arg(more)
            .arg(skinFolder);
    }

    // The size a window has when its skin gives none.
    static constexpr int DefaultWidth = 320;
    static constexpr int DefaultHeight = 100;

Q_SIGNALS:
    // What happens to the window, in Qt's terms: whoever brings the window to life connects to
    // these. Positions are in the pressed control's own pixels.
    // The built-in timers' ticks (tmrProgress also ticks once at the end of LoadSkin).
    void scrollTimerTicked();
    void progressTimerTicked();
    void trackImageTimerTicked();
    void deskbarLetDieTimerTicked();
    // img(index) under the pointer, and local files dropped on an image that takes drops.
    void imagePressed(int index, Qt::MouseButton button, Qt::KeyboardModifiers modifiers,
                      QPoint position);
    void imageMoved(int index, Qt::MouseButtons buttons, Qt::KeyboardModifiers modifiers,
                    QPoint position);
    void imageReleased(int index, Qt::MouseButton button, Qt::KeyboardModifiers modifiers,
                       QPoint position);
    void imageFilesDropped(int index, const QStringList& files);
    // The progress bar: a press and the pointer moving over it; `x` from the bar's left edge.
    void progressPressed(Qt::MouseButtons buttons, double x);
    void progressMoved(Qt::MouseButtons buttons, double x);
    // The stars (0 to 4): a press, and a click (a left press released over the same star).
    void starPressed(int index);
    void starClicked(int index);
    // A right-button release on the window or a label: the pop-up menu.
    void menuRequested();
    // The window's first real activation: where the lyrics control gets its folder.
    void firstActivated();

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;

private:
    // SkinHost
    void LoadPicture(const QString& fullPath) override;
    void NewEvent(const QString& text) override;
    QSize PrimaryScreenSize() const override;

    void CreateFixedControls();
    void ApplyChange(const SkinChange& change);
    void ApplyWindowSettings();
    void ApplyLabel(int index);
    void ApplyImage(int index);
    void ApplyTimer(int index);
    void ApplyProgress();
    void ApplyBorders();
    void ApplyLyrics();
    void UpdateBorderLines();
    void Form_Activate();
    void Form_Unload();
    void tmr_Timer(int index);
    void ImagePress(int index, Qt::MouseButton button, Qt::KeyboardModifiers modifiers, QPoint pos);
    void ImageMove(int index, Qt::MouseButtons buttons, Qt::KeyboardModifiers modifiers,
                   QPoint pos);
    void ImageRelease(int index, Qt::MouseButton button, Qt::KeyboardModifiers modifiers,
                      QPoint pos);
    void ImageDrop(int index, const QStringList& files);
    void ProgressPress(Qt::MouseButton button, Qt::KeyboardModifiers modifiers, QPoint pos);
    void ProgressMove(Qt::MouseButtons buttons, Qt::KeyboardModifiers modifiers, QPoint pos);
    void StarPress(int index);
    void StarRelease(int index, Qt::MouseButton button, QPoint pos);
    void CallService(const std::function<void(frmMain&)>& service);
    // Whether anything listens to `signal`: a press nobody handles still counts as an
    // interaction.
    template <typename Signal> bool Handled(Signal signal) const;
    void MoveTo(QPoint position);
    QPoint PlacedPosition() const;
    void ResyncPositionAfterMapping();
    EffectPacing& Pacing();

    Links m_links;
    std::unique_ptr<WindowSystem> m_ownWindowSystem;
    WindowSystem* m_windowSystem = nullptr;
    std::unique_ptr<EffectPacing> m_ownPacing;
    std::unique_ptr<SkinWindowEffects> m_effects;
    SkinModel m_model;
    // Decoded pictures by the canonical path of their file, and the names skin lines gave them.
    QHash<QString, QImage> m_pictures;
    QHash<QString, QString> m_pictureKeys;
    qint64 m_pictureBytes = 0;
    InteractionFlag m_interaction;
    WindowMover* m_mover = nullptr;
    DesktopPlacement m_lastPlacement;
    bool m_unloaded = false;
    bool m_activatedOnce = false;
    // Where the window last placed itself, and whether the user has moved it since.
    QPoint m_placedAt;
    bool m_movedByUser = false;
    bool m_mappedOnce = false;

    std::vector<SkinLabelControl*> m_lblInfo{nullptr};
    std::vector<PictureBox*> m_img{nullptr};
    std::vector<VbTimer*> m_tmr{nullptr};
    PictureBox* m_imgProgress = nullptr;
    std::array<PictureBox*, 5> m_imgRatings{};
    SkinLabelControl* m_lblMove = nullptr;
    LineControl* m_lnTop = nullptr;
    LineControl* m_lnBottom = nullptr;
    LineControl* m_lnLeft = nullptr;
    LineControl* m_lnRight = nullptr;
    VbTimer* m_tmrScroll = nullptr;
    VbTimer* m_tmrProgress = nullptr;
    VbTimer* m_tmrTrackImage = nullptr;
    VbTimer* m_tmrDeskbarLetDie = nullptr;
    SkinLabelControl* m_cantom = nullptr;
};

} // namespace Pelorin
