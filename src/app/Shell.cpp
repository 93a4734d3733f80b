#include "Shell.h"

#include "InstanceLock.h"
#include "base/ProgramPaths.h"
#include "base/Settings.h"
#include "base/TextRules.h"
#include "base/VbError.h"
#include "platform/MessageBox.h"
#include "player/link/PlayerControl.h"

#include <QDir>

namespace Pelorin {

namespace {

// Skin folders always end with a separator; folders from Windows command lines use "\".
QString NormalizeFolder(QString folder) {
    folder.replace(QLatin1Char('\\'), QLatin1Char('/'));
    if (!folder.isEmpty() && !folder.endsWith(QLatin1Char('/')))
        folder.append(QLatin1Char('/'));
    return folder;
}

} // namespace

Shell::Shell(Services services) : m_services(std::move(services)) {}

void Shell::Main(const QString& commandLine) {
    if (commandLine.contains(QLatin1String("Deskband"), Qt::CaseSensitive)) {
        m_deskbandMode = true;
        // Every process holds the lock when it can, so a later normal start stays single; a
        // deskband start itself never asks.
        m_services.instanceLock.TryAcquire();
        const double handle = Rules::LeadingNumber(QStringView(commandLine).mid(9));
        OpenDeskbandSkin(handle >= 0 && handle <= 4294967295.0 ? static_cast<quint64>(handle) : 0);
        return;
    }

    if (!m_services.instanceLock.TryAcquire()) {
        // Another Pelorin runs: this start ends quietly. Anything else is said.
        const QString problem = m_services.instanceLock.Problem();
        if (!problem.isEmpty())
            MessageBox::Show(QStringLiteral("Pelorin cannot start: ") + problem,
                             QStringLiteral("Pelorin"), MessageBox::Icon::Critical);
        return;
    }

    LoadMenus();
    CountRun(m_services.settings);

    QString skinName;
    if (!Rules::ContainsIgnoringCase(commandLine, u"default"))
        skinName = m_services.settings.GetSetting(Settings::CurrentSkin, QStringLiteral("Default"));
    else if (Rules::IsLeft(commandLine, u"empty", 1))
        skinName = QStringLiteral("Empty");
    else
        skinName = QStringLiteral("Default");

    // A command line that begins with "empty" is never exactly "default", so the "Empty" choice
    // above never takes effect; the order of these tests is kept as it always was.
    if (!commandLine.isEmpty() && Rules::LowerCase(commandLine) != QLatin1String("default")) {
        OpenSkinFromCommandLine(commandLine);
        return;
    }

    if (!IsPlayerRunning())
        ShellOpen(QStringLiteral("iTunes"), QStringLiteral("1"));

    m_services.processEvents();

    if (QDir(m_services.paths.SkinFolder(skinName)).entryList(QDir::Files).isEmpty())
        skinName = QStringLiteral("Default");

    OpenSkinWindow(m_services.paths.SkinFolder(skinName), NotGiven, NotGiven, false);
}

SkinWindow* Shell::OpenSkinWindow(const QString& curPath, std::int16_t left, std::int16_t top,
                                  bool isDeskbar) {
    SkinWindow* window = m_services.skinWindows.CreateSkinWindow();
    window->SetIsDeskbar(isDeskbar);
    ++m_loading;
    window->LoadSkin(curPath + QLatin1String("skin.ini"), curPath);
    --m_loading;
    if (left != NotGiven)
        window->SetLeftTwips(left);
    if (top != NotGiven)
        window->SetTopTwips(top);
    window->RunAfter();
    OpenRequestedWindows();
    return window;
}

void Shell::ShowSkinWindow(const QString& curPath, std::int16_t left, std::int16_t top) {
    m_requested.append({curPath, left, top});
    OpenRequestedWindows();
}

void Shell::OpenRequestedWindows() {
    // One loop at the outermost level opens the requests in turn, also those that the windows it
    // opens make while they load.
    if (m_loading > 0 || m_openingRequested)
        return;
    m_openingRequested = true;
    while (!m_requested.isEmpty()) {
        const WindowRequest request = m_requested.takeFirst();
        if (FrmMainCount() >= MaxSkinWindows) {
            // A skin that asks again and again (a fast timer) gets one box at a time, not a
            // pile of nested ones.
            if (!m_refusing) {
                m_refusing = true;
                MessageBox::Show(TooManyWindowsText(), QString(), MessageBox::Icon::Exclamation);
                m_refusing = false;
            }
            continue;
        }
        OpenSkinWindow(request.curPath, request.left, request.top, false);
    }
    m_openingRequested = false;
}

void Shell::SwitchSkin(const QString& skinName) {
    m_switchingSkin = true;
    m_services.settings.SaveSetting(Settings::CurrentSkin, skinName);
    UnloadAllForms();
    m_menus = nullptr;
    m_switchingSkin = false;
    LoadMenus();
    OpenSkinWindow(m_services.paths.SkinFolder(skinName), NotGiven, NotGiven, false);
}

void Shell::CloseAllWindows() {
    UnloadAllForms();
    m_menus = nullptr;
}

Form* Shell::LoadedMenus() {
    if (m_menus == nullptr || !m_services.forms.Contains(m_menus))
        LoadMenus();
    return m_menus;
}

SkinWindow* Shell::DefaultSkinWindow() {
    if (m_defaultWindow == nullptr || !m_services.forms.Contains(m_defaultWindow))
        m_defaultWindow = m_services.skinWindows.CreateSkinWindow();
    return m_defaultWindow;
}

int Shell::FrmMainCount() const {
    return m_services.forms.CountNamed(QStringLiteral("frmMain"));
}

void Shell::OpenSkinFromCommandLine(const QString& commandLine) {
    try {
        const QStringList fields = Rules::SplitFields(commandLine, QLatin1Char('|'));
        const QString folder = NormalizeFolder(Rules::Field(fields, 0));
        const std::int16_t left = Rules::Int16Of(Rules::Field(fields, 1));
        const std::int16_t top = Rules::Int16Of(Rules::Field(fields, 2));
        OpenSkinWindow(folder, left, top, false);
    } catch (const VbError&) {
        // A command line that names no usable folder and position opens nothing.
    }
}

void Shell::OpenDeskbandSkin(quint64 ownerHwnd) {
    SkinWindow* window = OpenSkinWindow(m_services.paths.DeskbandFolder(), 0, 0, true);
    if (ownerHwnd != 0 && m_services.forms.Contains(window))
        window->EmbedInto(ownerHwnd);
}

bool Shell::ShellOpen(const QString& fileName, const QString& command) {
    if (fileName == QLatin1String("iTunes")) {
        m_services.player.StartPlayer();
        return true;
    }
    return m_services.openExternal(fileName, command);
}

bool Shell::IsPlayerRunning() const {
    return false;
}

void Shell::SkinWindowUnloading(SkinWindow& window) {
    Q_UNUSED(window);
    if (FrmMainCount() != 1)
        return;
    if (m_menus != nullptr && m_services.forms.Contains(m_menus))
        m_menus->Unload();
    m_menus = nullptr;
    if (m_switchingSkin)
        return; // a switch reopens a skin at once; it never quits the player or the program
    if (ShouldCloseiTunesOnExit(m_services.settings))
        m_services.player.QuitPlayer();
    m_services.endProgram();
}

void Shell::UnloadAllForms() {
    for (Form* form : m_services.forms.Forms()) {
        if (m_services.forms.Contains(form))
            form->Unload();
    }
}

void Shell::LoadMenus() {
    m_menus = m_services.loadMenus();
}

} // namespace Pelorin
