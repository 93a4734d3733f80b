#include "app/binding/SkinWindowBinding.h"

#include "app/binding/BoundWindow.h"
#include "display/TrackDisplay.h"
#include "hotkeys/KeyboardShortcuts.h"
#include "lyrics/LyricsControl.h"
#include "platform/MessageBox.h"
#include "platform/PlatformHelpers.h"
#include "player/link/PlayerLink.h"
#include "runcode/CommandInterpreter.h"
#include "skin/interaction/PointerInteraction.h"
#include "skin/window/SkinControls.h"

namespace Pelorin {

SkinWindowBinding* SkinWindowBinding::Create(frmMain::Links links, SkinWindowProgram program) {
    auto* binding = new SkinWindowBinding(std::move(program));
    links.services = binding->MakeServices();
    binding->Attach(new frmMain(std::move(links)));
    return binding;
}

SkinWindowBinding::SkinWindowBinding(SkinWindowProgram program) : m_program(std::move(program)) {}

SkinWindowBinding::~SkinWindowBinding() {
    // The parts refer to each other: the users go before what they use.
    m_lyrics.reset();
    m_shortcuts.reset();
    m_pointer.reset();
    m_interpreter.reset();
    m_display.reset();
    m_boundWindow.reset();
    m_link.reset();
}

void SkinWindowBinding::Attach(frmMain* window) {
    m_window = window;
    connect(window, &QObject::destroyed, this, &SkinWindowBinding::WindowDestroyed);

    PlayerApplication* player = m_program.player;
    Q_ASSERT(player != nullptr);
    m_link = std::make_unique<PlayerLink>(*player, *this);
    // The command language, the display and the pointer code all reach the player through the
    // one link, and the window through the one BoundWindow; a click goes window -> pointer ->
    // interpreter -> link -> player.
    m_boundWindow = std::make_unique<BoundWindow>(*window, m_program);
    m_display = std::make_unique<TrackDisplay>(*m_boundWindow, *m_link);
    m_interpreter = std::make_unique<CommandInterpreter>(*m_boundWindow, *m_link);
    m_pointer =
        std::make_unique<PointerInteraction>(*m_boundWindow, *m_link, [this](const QString& code) {
            if (!m_boundWindow->WindowGone())
                m_interpreter->RunCodeText(code);
        });
    m_shortcuts = std::make_unique<KeyboardShortcuts>(
        *window, [this](int index) { Run([this, index] { RunShortcut(index); }); });
    QString programFolder = m_program.programFolder;
    if (!programFolder.isEmpty() && !programFolder.endsWith(u'/'))
        programFolder += u'/';
    m_lyrics = std::make_unique<LyricsControl>(programFolder);
    connect(m_lyrics.get(), &LyricsControl::textChanged, this, [this](const QString& text) {
        if (WindowAlive())
            m_window->Cantom()->setText(text);
    });
    m_boundWindow->SetDisplay(m_display.get());
    m_boundWindow->SetShowMenu([this] { ShowMenu(); });
    Connect(window);

    // Form_Load: the window connects as it is created.
    Run([this] { m_link->FormLoad(); });
}

bool SkinWindowBinding::WindowAlive() const {
    return m_boundWindow && !m_boundWindow->WindowGone();
}

template <typename Work> void SkinWindowBinding::Run(Work&& work) {
    struct Running {
        SkinWindowBinding& binding;
        explicit Running(SkinWindowBinding& b) : binding(b) { ++binding.m_running; }
        ~Running() {
            if (--binding.m_running == 0 && binding.m_windowDestroyed)
                binding.deleteLater();
        }
        Running(const Running&) = delete;
        Running& operator=(const Running&) = delete;
    } running(*this);
    work();
}

void SkinWindowBinding::WindowDestroyed() {
    m_windowDestroyed = true;
    if (m_running == 0)
        deleteLater();
}

SkinWindowServices SkinWindowBinding::MakeServices() {
    SkinWindowServices s;
    s.RunCode = [this](frmMain&, QString& code) { Run([&] { m_interpreter->RunCode(code); }); };
    s.NewEvent = [this](frmMain&, const QString& line) { m_events.NewEvent(line); };
    s.LoadSong = [this](frmMain&) { Run([this] { m_display->LoadSong(); }); };
    s.CheckStartPersonal = [this](frmMain& window) {
        const int count = m_program.skinWindowCount ? m_program.skinWindowCount() : 1;
        CheckStartPersonal(
            count, m_program.programFolder,
            [&window](const QString& line) { window.ProcessLine(line, window.SkinFolder()); },
            [](const QString& message) {
                MessageBox::Show(message, QString(), MessageBox::Icon::Exclamation);
            });
    };
    s.ProcessKeyShortcuts = [this](frmMain& window) {
        Run([&] { m_shortcuts->ProcessKeyShortcuts(window.Model().KeyShortcuts); });
    };
    s.CloseAllHotkeys = [this](frmMain&) {
        Run([this] { m_shortcuts->CloseAllHotkeys([this] { return !m_windowDestroyed; }); });
    };
    s.CloseLyrics = [this](frmMain&) {
        if (!m_lyrics->Running())
            return;
        // The lyrics loop ended with its window, and the program with it; a skin switch reopens
        // the windows instead.
        const bool switching = m_program.switchingSkin && m_program.switchingSkin();
        m_lyrics->CloseLyrics();
        if (!switching && m_program.endProgram)
            m_program.endProgram();
    };
    return s;
}

void SkinWindowBinding::FirstActivation() {
    // Only the first activation of the whole run hands the lyrics folder over, and only when
    // that window's skin shows lyrics.
    if (!m_program.firstActivationSeen || *m_program.firstActivationSeen)
        return;
    *m_program.firstActivationSeen = true;
    if (!WindowAlive() || !m_window->Model().HasLyrics)
        return;
    const QString path = m_program.lyricsPath ? m_program.lyricsPath() : QString();
    m_lyrics->StartLyrics(m_link->iTunesApp(), path);
}

void SkinWindowBinding::RunShortcut(int index) {
    if (!WindowAlive() || m_window->IsUnloaded())
        return;
    QList<KeyShortcut>& shortcuts = m_window->Model().KeyShortcuts;
    if (index < 0 || index >= shortcuts.size())
        return;
    // The binding's own code is the interpreter's variable, as every stored code is.
    m_window->RunCodeInPlace(shortcuts[index].Code);
}

void SkinWindowBinding::Connect(frmMain* window) {
    // Every handler runs inside Run, so the binding outlives the calls that are running when its
    // window goes.
    const auto on = [this, window](auto signal, auto handler) {
        connect(window, signal, this,
                [this, handler](auto... arguments) { Run([&] { handler(arguments...); }); });
    };
    on(&frmMain::scrollTimerTicked, [this] { m_display->tmrScroll_Timer(); });
    on(&frmMain::progressTimerTicked, [this] { m_display->tmrProgress_Timer(); });
    on(&frmMain::trackImageTimerTicked, [this] { m_pointer->tmrTrackImage_Timer(); });
    on(&frmMain::deskbarLetDieTimerTicked, [this] { m_link->tmrDeskbarLetDie_Timer(); });
    on(&frmMain::imagePressed,
       [this](int index, Qt::MouseButton button, Qt::KeyboardModifiers modifiers, QPoint position) {
           m_pointer->ImagePressed(index, button, modifiers, position);
       });
    on(&frmMain::imageMoved,
       [this](int index, Qt::MouseButtons buttons, Qt::KeyboardModifiers modifiers,
              QPoint position) { m_pointer->ImageMoved(index, buttons, modifiers, position); });
    on(&frmMain::imageReleased,
       [this](int index, Qt::MouseButton button, Qt::KeyboardModifiers modifiers, QPoint position) {
           m_pointer->ImageReleased(index, button, modifiers, position);
       });
    on(&frmMain::imageFilesDropped,
       [this](int index, const QStringList& files) { m_pointer->img_OLEDragDrop(index, files); });
    on(&frmMain::progressPressed, [this](Qt::MouseButtons buttons, double x) {
        m_display->imgProgress_MouseDown(buttons, x);
    });
    on(&frmMain::progressMoved, [this](Qt::MouseButtons buttons, double x) {
        m_display->imgProgress_MouseMove(buttons, x);
    });
    on(&frmMain::starPressed, [this](int index) { m_display->imgRatings_MouseDown(index); });
    on(&frmMain::starClicked, [this](int index) { m_display->imgRatings_Click(index); });
    on(&frmMain::menuRequested, [this] { ShowMenu(); });
    on(&frmMain::firstActivated, [this] { FirstActivation(); });
}

void SkinWindowBinding::CheckEvent(const QString& eventName) {
    if (!WindowAlive())
        return;
    Run([&] {
        m_events.CheckEvent(eventName, [this](QString& code) {
            if (WindowAlive())
                m_interpreter->RunCode(code);
        });
    });
}

void SkinWindowBinding::LoadSong() {
    if (!WindowAlive())
        return;
    Run([this] { m_display->LoadSong(); });
}

bool SkinWindowBinding::IsDeskbar() const {
    return m_window && m_window->IsDeskbar();
}

void SkinWindowBinding::UnloadAllForms() {
    if (m_program.closeAllWindows)
        m_program.closeAllWindows();
}

void SkinWindowBinding::ShowMenu() {
    if (!WindowAlive() || !m_program.showMenu)
        return;
    m_program.showMenu(m_window);
}

} // namespace Pelorin
