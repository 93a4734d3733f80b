#include "app/binding/SkinWindowBinding.h"

#include "app/binding/SkinWindowMenu.h"
#include "app/binding/WindowDisplayHost.h"
#include "app/binding/WindowPointerHost.h"
#include "app/binding/WindowRunCodeHost.h"
#include "display/TrackDisplay.h"
#include "platform/PlatformHelpers.h"
#include "player/link/PlayerLink.h"
#include "runcode/CommandInterpreter.h"
#include "skin/interaction/PointerInteraction.h"

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
    m_pointer.reset();
    m_pointerHost.reset();
    m_interpreter.reset();
    m_runCodeHost.reset();
    m_display.reset();
    m_displayHost.reset();
    m_link.reset();
}

void SkinWindowBinding::Attach(frmMain* window) {
    m_window = window;
    connect(window, &QObject::destroyed, this, &SkinWindowBinding::WindowDestroyed);

    PlayerApplication* player = m_program.player;
    Q_ASSERT(player != nullptr);
    m_link = std::make_unique<PlayerLink>(*player, *this);
    // The command language, the display and the pointer code all reach the player through the
    // one link; a click goes window -> pointer -> interpreter -> link -> player.
    m_displayHost = std::make_unique<WindowDisplayHost>(*window);
    m_display = std::make_unique<TrackDisplay>(*m_displayHost, *m_link);
    m_runCodeHost = std::make_unique<WindowRunCodeHost>(
        *window, m_program, [this](int index) { m_display->imgRatings_Click(index); });
    m_interpreter = std::make_unique<CommandInterpreter>(*m_runCodeHost, *m_link);
    m_pointerHost =
        std::make_unique<WindowPointerHost>(*window, *m_display, [this] { ShowMenu(); });
    m_pointer =
        std::make_unique<PointerInteraction>(*m_pointerHost, *m_link, [this](const QString& code) {
            if (WindowAlive())
                m_interpreter->RunCodeText(code);
        });

    // Form_Load: the window connects as it is created.
    Run([this] { m_link->FormLoad(); });
}

bool SkinWindowBinding::WindowAlive() const {
    return !m_window.isNull() && !m_window->IsUnloaded();
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
    s.tmrProgress_Timer = [this](frmMain&) { Run([this] { m_display->tmrProgress_Timer(); }); };
    s.tmrScroll_Timer = [this](frmMain&) { Run([this] { m_display->tmrScroll_Timer(); }); };
    s.tmrTrackImage_Timer = [this](frmMain&) { Run([this] { m_pointer->tmrTrackImage_Timer(); }); };
    s.tmrDeskbarLetDie_Timer = [this](frmMain&) {
        Run([this] { m_link->tmrDeskbarLetDie_Timer(); });
    };
    s.ShowMenu = [this](frmMain&) { ShowMenu(); };
    s.img_MouseDown = [this](frmMain&, int index, int button, int shift, int x, int y) {
        Run([&] { m_pointer->img_MouseDown(index, button, shift, x, y); });
    };
    s.img_MouseMove = [this](frmMain&, int index, int button, int shift, int x, int y) {
        Run([&] { m_pointer->img_MouseMove(index, button, shift, x, y); });
    };
    s.img_MouseUp = [this](frmMain&, int index, int button, int shift, int x, int y) {
        Run([&] { m_pointer->img_MouseUp(index, button, shift, x, y); });
    };
    s.img_OLEDragDrop = [this](frmMain&, int index, const QStringList& files) {
        Run([&] { m_pointer->img_OLEDragDrop(index, files); });
    };
    s.imgProgress_MouseDown = [this](frmMain&, Qt::MouseButtons buttons, double x) {
        Run([&] { m_display->imgProgress_MouseDown(buttons, x); });
    };
    s.imgProgress_MouseMove = [this](frmMain&, Qt::MouseButtons buttons, double x) {
        Run([&] { m_display->imgProgress_MouseMove(buttons, x); });
    };
    s.imgRatings_MouseDown = [this](frmMain&, int index) {
        Run([&] { m_display->imgRatings_MouseDown(index); });
    };
    s.imgRatings_Click = [this](frmMain&, int index) {
        Run([&] { m_display->imgRatings_Click(index); });
    };
    // Not built yet: the personal file and keyboard shortcuts, hotkeys and the lyrics control.
    // CheckStartPersonal, ProcessKeyShortcuts, CloseAllHotkeys and FirstActivation stay empty.
    return s;
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
    if (!WindowAlive())
        return;
    QPointer<frmMain> window = m_window;
    SkinWindowMenu::Popup(m_window, CursorPosition(),
                          {.closeSkin =
                               [window] {
                                   if (window)
                                       window->Unload();
                               },
                           .quit = m_program.closeAllWindows});
}

} // namespace Pelorin
