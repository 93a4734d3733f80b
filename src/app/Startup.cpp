#include "Startup.h"

#include "ExternalOpener.h"
#include "FormsRegistry.h"
#include "InstanceLock.h"
#include "Shell.h"
#include "SkinTrust.h"
#include "app/binding/SkinWindowBinding.h"
#include "base/Log.h"
#include "base/ProgramPaths.h"
#include "base/Settings.h"
#include "dialogs/KeyboardShortcutDialog.h"
#include "dialogs/MenusForm.h"
#include "dialogs/OptionsDialog.h"
#include "dialogs/SkinEditorDialog.h"
#include "lyrics/LrcImport.h"
#include "platform/MessageBox.h"
#include "platform/PictureLoader.h"
#include "platform/WindowSystem.h"
#include "player/link/PlayerControl.h"
#include "player/link/PlayerLauncher.h"
#include "skin/SkinLint.h"
#include "skin/window/frmMain.h"

#include <QApplication>
#include <QPointer>
#include <QTextStream>
#include <cstdio>
#include <cstdlib>
#include <memory>

namespace Pelorin {

namespace {

const char* const Usage =
    "Usage: pelorin [COMMAND LINE]\n"
    "A skinnable remote control for the Music Player Daemon.\n"
    "\n"
    "  (nothing)               open the skin used last, or \"Default\"\n"
    "  default                 open the \"Default\" skin\n"
    "  FOLDER/|LEFT|TOP        open the skin in FOLDER at LEFT, TOP (twips, 15 per pixel)\n"
    "  Deskband WINDOWID       open the deskband skin inside the X11 window WINDOWID\n"
    "  --check-skin FOLDER     report every fault of the skin in FOLDER; exit status 1 if any\n"
    "  --import-lrc FILE.lrc   turn an LRC lyrics file into the track's lyrics file and print\n"
    "                          where it was written; exit status 1 if it could not be\n"
    "  --help                  show this help\n"
    "  --version               show the version\n"
    "\n"
    "Environment: PELORIN_HOME (program folder), PELORIN_UNATTENDED=1 (message boxes on\n"
    "stderr only), MPD_HOST and MPD_PORT (the player).\n";

// Creates the skin windows (frmMain), registered in the open-forms registry and sharing one
// window system, each bound to the player, the command language and the track display.
class SkinWindows final : public SkinWindowFactory {
public:
    explicit SkinWindows(FormsRegistry& forms)
        : m_forms(forms), m_windowSystem(CreateWindowSystem()) {}
    void SetUnloadingHandler(std::function<void(SkinWindow&)> handler) {
        m_onUnloading = std::move(handler);
    }
    void SetProgram(SkinWindowProgram program) { m_program = std::move(program); }
    SkinWindow* CreateSkinWindow() override {
        frmMain::Links links;
        links.forms = m_forms.Access();
        links.onUnloading = m_onUnloading;
        links.windowSystem = m_windowSystem.get();
        return SkinWindowBinding::Create(std::move(links), m_program)->Window();
    }

private:
    FormsRegistry& m_forms;
    std::unique_ptr<WindowSystem> m_windowSystem;
    std::function<void(SkinWindow&)> m_onUnloading;
    SkinWindowProgram m_program;
};

// Start-up's "open the player": a player that cannot be started is said once, plainly; the skin
// still opens and connects when the player appears later.
class StartupPlayer final : public PlayerControl {
public:
    StartupPlayer(PlayerLauncher& launcher, Settings& settings)
        : m_launcher(launcher), m_settings(settings) {}
    void StartPlayer() override {
        m_launcher.StartPlayer();
        if (!m_launcher.LastError().isEmpty()) {
            MessageBox::Show(QStringLiteral("The player could not be started:\n") +
                                 m_launcher.LastError(),
                             QString(), MessageBox::Icon::Exclamation);
            return;
        }
        // Once, on the first start: a new user's private player with nothing to play.
        if (m_settings.GetNumber(Settings::RunCount) <= 1) {
            const QString notice = m_launcher.MusicFolderNotice();
            if (!notice.isEmpty())
                MessageBox::Show(notice, QString(), MessageBox::Icon::Information);
        }
    }
    void QuitPlayer() override { m_launcher.QuitPlayer(); }

private:
    PlayerLauncher& m_launcher;
    Settings& m_settings;
};

int CheckSkinCommand(int argc, char** argv, const QStringList& args) {
    QCoreApplication app(argc, argv);
    if (args.size() < 2) {
        std::fprintf(stderr, "pelorin: --check-skin needs a skin folder\n");
        return 2;
    }
    QTextStream out(stdout);
    const int faults = CheckSkin(
        args.at(1), [](const QString& path) { (void)LoadPicture(path); }, out);
    out.flush();
    return faults > 0 ? 1 : 0;
}

int ImportLrcCommand(int argc, char** argv, const QStringList& args) {
    QCoreApplication app(argc, argv);
    if (args.size() < 2) {
        std::fprintf(stderr, "pelorin: --import-lrc needs an LRC file\n");
        return 1;
    }
    const Settings settings;
    QString pathError;
    const ProgramPaths paths =
        ProgramPaths::Resolve(ProgramFolderSources::FromEnvironment(), &pathError);
    if (!pathError.isEmpty())
        qCWarning(lcApp).noquote() << QStringLiteral("Pelorin: ") + pathError;
    // The lyrics folder as the lyrics control finds it.
    QString folder = settings.GetSetting(Settings::CantomPath);
    folder.replace(QLatin1String("APPPATH"), paths.ProgramFolder(), Qt::CaseSensitive);
    QString error;
    const QString written = LrcImport::Import(args.at(1), folder, &error);
    if (written.isEmpty()) {
        std::fprintf(stderr, "pelorin: %s\n", qUtf8Printable(error));
        return 1;
    }
    std::printf("%s\n", qUtf8Printable(written));
    return 0;
}

// Skins place themselves and grab hotkeys, which Wayland forbids: use XWayland unless the user
// chose a platform.
void PreferX11() {
    if (qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        return;
    if (qEnvironmentVariableIsSet("WAYLAND_DISPLAY") ||
        qEnvironmentVariable("XDG_SESSION_TYPE") == QLatin1String("wayland"))
        qputenv("QT_QPA_PLATFORM", "xcb");
}

} // namespace

int RunPelorin(int argc, char** argv) {
    UseBareMessageFormat();
    QStringList args;
    for (int i = 1; i < argc; ++i)
        args.append(QString::fromLocal8Bit(argv[i]));
    if (!args.isEmpty()) {
        if (args.first() == QLatin1String("--help") || args.first() == QLatin1String("-h")) {
            std::fputs(Usage, stdout);
            return 0;
        }
        if (args.first() == QLatin1String("--version")) {
            std::printf("Pelorin %s\n", PELORIN_VERSION);
            return 0;
        }
        if (args.first() == QLatin1String("--check-skin"))
            return CheckSkinCommand(argc, argv, args);
        if (args.first() == QLatin1String("--import-lrc"))
            return ImportLrcCommand(argc, argv, args);
    }

    PreferX11();
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Pelorin"));
    QApplication::setOrganizationName(QStringLiteral("Pelorin"));
    QApplication::setApplicationVersion(QStringLiteral(PELORIN_VERSION));
    // Skin windows are tool windows, which Qt's own rule ignores; the last skin window's closing
    // ends the program.
    QApplication::setQuitOnLastWindowClosed(false);

    Settings settings;
    QString pathError;
    const ProgramPaths paths =
        ProgramPaths::Resolve(ProgramFolderSources::FromEnvironment(), &pathError);
    if (!pathError.isEmpty())
        qCWarning(lcApp).noquote() << QStringLiteral("Pelorin: ") + pathError;

    FormsRegistry forms;
    QString lockFolderError;
    const QString lockFile = ProgramPaths::InstanceLockFile(&lockFolderError);
    InstanceLock lock(lockFile, lockFolderError);
    SkinWindows skinWindows(forms);
    PlayerLauncher launcher;
    StartupPlayer player(launcher, settings);
    SkinTrust trust(settings);

    const auto endProgram = [&settings] {
        // At once: no further handlers run, also from inside loops that pump events.
        settings.Flush();
        std::fflush(nullptr);
        std::_Exit(0);
    };
    // frmMenus needs the shell and the shell creates it: the two meet through this.
    std::function<Form*()> loadMenus;
    Shell shell({
        .settings = settings,
        .forms = forms,
        .instanceLock = lock,
        .skinWindows = skinWindows,
        .player = player,
        .paths = paths,
        .loadMenus = [&loadMenus]() -> Form* { return loadMenus(); },
        .processEvents = [] { QCoreApplication::processEvents(); },
        .endProgram = endProgram,
        .openExternal = &OpenExternal,
    });
    QPointer<OptionsDialog> options;
    QPointer<KeyboardShortcutDialog> keyboardManager;
    QPointer<SkinEditorDialog> skinEditor;
    const auto switchToCurrentSkin = [&shell, &settings] {
        shell.SwitchSkin(settings.GetSetting(Settings::CurrentSkin, QStringLiteral("Default")));
    };
    loadMenus = [&]() -> Form* {
        return new MenusForm(
            forms.Access(),
            {
                .programFolder = paths.ProgramFolder(),
                .deskbandMode = shell.DeskbandMode(),
                .switchSkin = [&shell](const QString& name) { shell.SwitchSkin(name); },
                .closeAllWindows = [&shell] { shell.CloseAllWindows(); },
                .shellOpen =
                    [&shell](const QString& file, const QString& parameters) {
                        return shell.ShellOpen(file, parameters);
                    },
                .currentSkin =
                    [&settings] {
                        return settings.GetSetting(Settings::CurrentSkin,
                                                   QStringLiteral("Default"));
                    },
                .defaultSkinWindow =
                    [&shell] { return dynamic_cast<frmMain*>(shell.DefaultSkinWindow()); },
                .showOptions =
                    [&] {
                        // One options dialog at a time, as a form has one instance.
                        if (options.isNull())
                            options =
                                new OptionsDialog(settings, paths.ProgramFolder(), forms.Access());
                        options->show();
                        options->raise();
                        options->activateWindow();
                    },
                .manageKeyboardShortcuts =
                    [&](const QString& skinFile) {
                        if (keyboardManager.isNull())
                            keyboardManager = new KeyboardShortcutDialog(
                                {.programFolder = paths.ProgramFolder(),
                                 .switchToCurrentSkin = switchToCurrentSkin},
                                forms.Access());
                        if (!keyboardManager->LoadAll(skinFile))
                            keyboardManager->Unload();
                    },
                .editSkin =
                    [&](const QString& skinFile) {
                        if (skinEditor.isNull())
                            skinEditor = new SkinEditorDialog(
                                {.switchToCurrentSkin = switchToCurrentSkin}, forms.Access());
                        if (!skinEditor->LoadSkin(skinFile))
                            skinEditor->Unload();
                    },
            });
    };
    skinWindows.SetUnloadingHandler([&shell](SkinWindow& w) { shell.SkinWindowUnloading(w); });
    QString programFolder = paths.ProgramFolder();
    if (programFolder.endsWith(QLatin1Char('/')))
        programFolder.chop(1);
    skinWindows.SetProgram({
        .player = &launcher.Application(),
        .openSkinWindow = [&shell](const QString& folder, std::int16_t left,
                                   std::int16_t top) { shell.ShowSkinWindow(folder, left, top); },
        .closeAllWindows = [&shell] { shell.CloseAllWindows(); },
        .showMenu =
            [&shell](frmMain* window) {
                if (auto* menus = dynamic_cast<MenusForm*>(shell.LoadedMenus()))
                    menus->ShowMenu(QString(), window);
            },
        .endProgram = endProgram,
        .shellOpen =
            [&shell](const QString& file, const QString& parameters) {
                return shell.ShellOpen(file, parameters);
            },
        .skinFolder = [&paths](const QString& name) { return paths.SkinFolder(name); },
        .skinWindowCount = [&shell] { return shell.FrmMainCount(); },
        .programFolder = programFolder,
        .lyricsPath = [&settings] { return settings.GetSetting(Settings::CantomPath); },
        .switchingSkin = [&shell] { return shell.SwitchingSkin(); },
        .playerApp = [&settings] { return settings.GetSetting(Settings::PlayerApp); },
        .mayChangeLibrary =
            [&trust](const QString& skinName, const QString& command) {
                return trust.MayChangeLibrary(skinName, command);
            },
    });

    shell.Main(args.join(QLatin1Char(' ')));
    if (shell.FrmMainCount() == 0) {
        settings.Flush();
        return 0;
    }
    return QApplication::exec();
}

} // namespace Pelorin
