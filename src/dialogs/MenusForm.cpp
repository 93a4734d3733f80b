#include "dialogs/MenusForm.h"

#include "base/TextRules.h"
#include "platform/MessageBox.h"
#include "platform/PlatformHelpers.h"
#include "skin/window/frmMain.h"

#include <QAction>
#include <QDir>
#include <QIcon>
#include <QMenu>
#include <QSystemTrayIcon>
#include <QTimer>

// The tray icon is compiled into this library; a static library's resources must be named once.
static void InitDialogResources() {
    Q_INIT_RESOURCE(dialogs);
}

namespace Pelorin {

namespace {

// A skin folder's name as a menu shows it: "&" is not a mnemonic, control characters are
// spelt out.
QString MenuText(const QString& name) {
    QString text = Rules::Printable(name);
    text.replace(QLatin1Char('&'), QLatin1String("&&"));
    return text;
}

// The entry's own text, which the switch uses (the caption may be escaped for the menu).
const char* const SkinNameProperty = "skinName";

} // namespace

MenusForm::MenusForm(OpenFormsAccess forms, MenusProgram program)
    : m_forms(std::move(forms)), m_program(std::move(program)) {
    InitDialogResources();
    setObjectName(QStringLiteral("frmMenus"));
    if (m_forms.Add)
        m_forms.Add(this);
    BuildMenu();
    if (!m_program.deskbandMode)
        FormLoad();
}

MenusForm::~MenusForm() {
    if (m_tray != nullptr)
        m_tray->hide();
    if (m_forms.Remove)
        m_forms.Remove(this);
}

void MenusForm::Unload() {
    if (m_unloaded)
        return;
    m_unloaded = true;
    // The icon goes with the form.
    if (m_tray != nullptr)
        m_tray->hide();
    m_mnuRightClick->close();
    hide();
    if (m_forms.Remove)
        m_forms.Remove(this);
    deleteLater();
}

QAction* MenusForm::AddCommand(QMenu* menu, const QString& controlName, const QString& caption,
                               void (MenusForm::*command)()) {
    QAction* action = menu->addAction(caption);
    action->setObjectName(controlName);
    // A command runs once the menu has closed: several of them close the caller, or every form
    // and with them this menu.
    connect(action, &QAction::triggered, this, [this, command] {
        QTimer::singleShot(0, this, [this, command] { (this->*command)(); });
    });
    return action;
}

void MenusForm::BuildMenu() {
    m_mnuRightClick = new QMenu(QStringLiteral("Right Menu"), this);
    m_mnuRightClick->setObjectName(QStringLiteral("mnuRightClick"));

    QMenu* help = m_mnuRightClick->addMenu(QStringLiteral("Help Documents"));
    help->setObjectName(QStringLiteral("mnuHelp"));
    help->menuAction()->setObjectName(QStringLiteral("mnuHelp"));
    AddCommand(help, QStringLiteral("mnuDocHelp"), QStringLiteral("Pelorin Help"),
               &MenusForm::mnuDocHelp_Click);
    AddCommand(help, QStringLiteral("mnuDocChanges"), QStringLiteral("Pelorin Changes"),
               &MenusForm::mnuDocChanges_Click);
    AddCommand(help, QStringLiteral("mnuSKinCreate"), QStringLiteral("Skin Creation Guide"),
               &MenusForm::mnuSKinCreate_Click);

    AddCommand(m_mnuRightClick, QStringLiteral("mnuReload"), QStringLiteral("Reload"),
               &MenusForm::mnuReload_Click);

    m_mnuLoadSkin = m_mnuRightClick->addMenu(QStringLiteral("Load Skin"));
    m_mnuLoadSkin->setObjectName(QStringLiteral("mnuLoadSkin"));
    m_mnuLoadSkin->menuAction()->setObjectName(QStringLiteral("mnuLoadSkin"));
    AddSkinEntry(QStringLiteral("Default"), nullptr);
    m_mnuRefreshList =
        AddCommand(m_mnuLoadSkin, QStringLiteral("mnuRefreshList"),
                   QStringLiteral("Refresh Skin List"), &MenusForm::mnuRefreshList_Click);

    AddCommand(m_mnuRightClick, QStringLiteral("mnuMoveSkin"), QStringLiteral("Move Skin"),
               &MenusForm::mnuMoveSkin_Click);
    QAction* keyboard =
        AddCommand(m_mnuRightClick, QStringLiteral("mnuKeyboard"),
                   QStringLiteral("Manage Keyboard Shortcuts"), &MenusForm::mnuKeyboard_Click);
    keyboard->setEnabled(static_cast<bool>(m_program.manageKeyboardShortcuts));
    QAction* editSkin =
        AddCommand(m_mnuRightClick, QStringLiteral("mnuEditSkin"),
                   QStringLiteral("Skin Configuration"), &MenusForm::mnuEditSkin_Click);
    editSkin->setEnabled(static_cast<bool>(m_program.editSkin));
    AddCommand(m_mnuRightClick, QStringLiteral("mnuOptions"), QStringLiteral("Options"),
               &MenusForm::mnuOptions_Click);
    AddCommand(m_mnuRightClick, QStringLiteral("mnuCloseSkin"), QStringLiteral("Close Skin"),
               &MenusForm::mnuCloseSkin_Click);
    AddCommand(m_mnuRightClick, QStringLiteral("mnuQuit"), QStringLiteral("Quit"),
               &MenusForm::mnuQuit_Click);
}

void MenusForm::AddSkinEntry(const QString& skinName, QAction* before) {
    auto* entry = new QAction(MenuText(skinName), m_mnuLoadSkin);
    entry->setObjectName(QStringLiteral("mnuSKin"));
    entry->setProperty(SkinNameProperty, skinName);
    const int index = static_cast<int>(m_mnuSKin.size());
    connect(entry, &QAction::triggered, this, [this, index] {
        QTimer::singleShot(0, this, [this, index] { mnuSKin_Click(index); });
    });
    m_mnuLoadSkin->insertAction(before, entry);
    m_mnuSKin.append(entry);
}

void MenusForm::FormLoad() {
    // The skins folder's sub-folders, as a folder list shows them: by name, letter case aside.
    const QDir skins(m_program.programFolder + QLatin1String("Skins/"));
    const QStringList entries =
        skins.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name | QDir::IgnoreCase);
    QAction* first = m_mnuSKin.first();
    if (entries.isEmpty()) {
        // No folder to name: the entry says so and switches to nothing.
        first->setText(QStringLiteral("(no skins in %1)").arg(MenuText(skins.path())));
        first->setProperty(SkinNameProperty, QString());
        first->setEnabled(false);
    } else {
        first->setText(MenuText(GetFile(entries.first())));
        first->setProperty(SkinNameProperty, GetFile(entries.first()));
        first->setEnabled(true);
    }
    for (qsizetype i = 1; i < entries.size(); ++i)
        AddSkinEntry(GetFile(entries.at(i)), m_mnuRefreshList);
    LoadSysTray();
}

void MenusForm::LoadSysTray() {
    if (m_tray == nullptr) {
        m_tray = new QSystemTrayIcon(QIcon(QStringLiteral(":/pelorin/pelorin.svg")), this);
        m_tray->setToolTip(QStringLiteral("Pelorin"));
        connect(m_tray, &QSystemTrayIcon::activated, this,
                [this](QSystemTrayIcon::ActivationReason reason) {
                    if (reason == QSystemTrayIcon::DoubleClick)
                        PicSysTray_MouseMove(DoubleClickMessage);
                    else if (reason == QSystemTrayIcon::Context)
                        PicSysTray_MouseMove(RightButtonUpMessage);
                });
    }
    ++m_trayIconAdds;
    m_tray->show();
}

void MenusForm::PicSysTray_MouseMove(int message) {
    if (message == DoubleClickMessage) {
        MessageBox::Show(QStringLiteral("show pelorin prefs?"));
    } else if (message == RightButtonUpMessage) {
        frmMain* caller = m_program.defaultSkinWindow ? m_program.defaultSkinWindow() : nullptr;
        ShowMenu(QString(), caller);
    }
}

void MenusForm::ShowMenu(const QString& menus, frmMain* caller) {
    Q_UNUSED(menus);
    m_caller = caller;
    m_mnuRightClick->popup(CursorPosition());
}

QString MenusForm::GetFile(const QString& text) {
    const qsizetype slash = std::max(text.lastIndexOf(u'\\'), text.lastIndexOf(u'/'));
    return slash < 0 ? text : text.mid(slash + 1);
}

QAction* MenusForm::Entry(const QString& controlName) const {
    return m_mnuRightClick->findChild<QAction*>(controlName);
}

QAction* MenusForm::mnuSKin(int index) const {
    if (index < 0 || index >= m_mnuSKin.size())
        return nullptr;
    return m_mnuSKin.at(index);
}

void MenusForm::OpenDocument(const QString& name) {
    const QString path = m_program.programFolder + name;
    // The desktop reports nothing when it cannot open a document: say so rather than do nothing.
    if (m_program.shellOpen && !m_program.shellOpen(path, QStringLiteral("1")))
        MessageBox::Show(QStringLiteral("Pelorin cannot open \"%1\": the file is missing or no "
                                        "program on this desktop opens it.")
                             .arg(QDir::toNativeSeparators(path)),
                         QString(), MessageBox::Icon::Exclamation);
}

void MenusForm::mnuDocHelp_Click() {
    OpenDocument(HelpDocument());
}

void MenusForm::mnuDocChanges_Click() {
    OpenDocument(ChangesDocument());
}

void MenusForm::mnuSKinCreate_Click() {
    OpenDocument(CreationDocument());
}

void MenusForm::mnuReload_Click() {
    if (m_program.switchSkin && m_program.currentSkin)
        m_program.switchSkin(m_program.currentSkin());
}

void MenusForm::mnuSKin_Click(int index) {
    const QAction* entry = mnuSKin(index);
    if (entry == nullptr || !m_program.switchSkin)
        return;
    const QString name = entry->property(SkinNameProperty).toString();
    if (!name.isEmpty())
        m_program.switchSkin(name);
}

void MenusForm::mnuRefreshList_Click() {
    while (m_mnuSKin.size() > 1)
        delete m_mnuSKin.takeLast();
    FormLoad();
}

void MenusForm::mnuMoveSkin_Click() {
    if (m_caller)
        m_caller->StartMoveWindow();
}

QString MenusForm::CallerSkinFile() const {
    return (m_caller ? m_caller->SkinFolder() : QString()) + QLatin1String("skin.ini");
}

void MenusForm::mnuKeyboard_Click() {
    if (m_program.manageKeyboardShortcuts)
        m_program.manageKeyboardShortcuts(CallerSkinFile());
}

void MenusForm::mnuEditSkin_Click() {
    if (m_program.editSkin)
        m_program.editSkin(CallerSkinFile());
}

void MenusForm::mnuOptions_Click() {
    if (m_program.showOptions)
        m_program.showOptions();
}

void MenusForm::mnuCloseSkin_Click() {
    if (m_caller)
        m_caller->Unload();
}

void MenusForm::mnuQuit_Click() {
    if (m_program.closeAllWindows)
        m_program.closeAllWindows();
}

} // namespace Pelorin
