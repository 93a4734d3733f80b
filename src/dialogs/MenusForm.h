#pragma once

#include "skin/window/Form.h"
#include "skin/window/SkinWindowServices.h"
#include "skin/window/frmMain.h"

#include <QList>
#include <QPointer>
#include <QString>
#include <QWidget>
#include <functional>

class QAction;
class QMenu;
class QSystemTrayIcon;

namespace Pelorin {

// What the menus ask of the program around them. Start-up fills it; tests fill it by hand.
struct MenusProgram {
    // The program folder, ending with "/".
    QString programFolder;
    // No skin list and no tray icon (a deskband process).
    bool deskbandMode = false;
    // Remembers the skin as the current one, closes every form and opens it.
    std::function<void(const QString& skinName)> switchSkin;
    // Unloads every open form (and so ends the program).
    std::function<void()> closeAllWindows;
    // Opens a document with the desktop's handler; false when that failed (it says why).
    std::function<bool(const QString& file, const QString& parameters)> shellOpen;
    // The setting "CurrentSkin" ("Default" when missing).
    std::function<QString()> currentSkin;
    // The program's default skin window instance, made on first use: the tray menu's caller.
    std::function<frmMain*()> defaultSkinWindow;
    // Shows the options dialog.
    std::function<void()> showOptions;
    // The keyboard manager and the skin editor, each given a skin file. Unset: not available,
    // and their entries are greyed out.
    std::function<void(const QString& skinFile)> manageKeyboardShortcuts;
    std::function<void(const QString& skinFile)> editSkin;
};

// frmMenus: the hidden form that lives once per process beside the skin windows. It owns the tray
// icon, the pop-up menu that a right click on the icon or on a skin window opens, and the menu's
// list of installed skins. Every command acts on the window that opened the menu (the caller) or
// on the whole program.
class MenusForm : public QWidget, public Form {
    Q_OBJECT
public:
    // Registers itself and runs its load (skin list and tray icon, outside deskband mode).
    MenusForm(OpenFormsAccess forms, MenusProgram program);
    ~MenusForm() override;

    QString Name() const override { return QStringLiteral("frmMenus"); }
    void Unload() override;
    QWidget* Widget() override { return this; }

    // Remembers the caller and pops the menu up at the pointer. `menus` is not used.
    void ShowMenu(const QString& menus, frmMain* caller);
    frmMain* Caller() const { return m_caller; }
    // The text after the last "\" or "/" (all of it when there is none).
    static QString GetFile(const QString& text);
    // Adds the tray icon (again, under the same id, when it is there already).
    void LoadSysTray();
    // A mouse message of the tray icon: 515 (double-click) and 517 (right button up) do
    // something, any other value nothing.
    void PicSysTray_MouseMove(int message);
    static constexpr int DoubleClickMessage = 515;
    static constexpr int RightButtonUpMessage = 517;

    // The menu and its entries, by their control names.
    QMenu* mnuRightClick() const { return m_mnuRightClick; }
    QMenu* mnuLoadSkin() const { return m_mnuLoadSkin; }
    QAction* Entry(const QString& controlName) const;
    // The skin list's entries: mnuSKin(0) exists from the start.
    int mnuSKinCount() const { return static_cast<int>(m_mnuSKin.size()); }
    QAction* mnuSKin(int index) const;
    QSystemTrayIcon* TrayIcon() const { return m_tray; }
    // How many times the icon was added.
    int TrayIconAdds() const { return m_trayIconAdds; }

    // The commands.
    void mnuDocHelp_Click();
    void mnuDocChanges_Click();
    void mnuSKinCreate_Click();
    void mnuReload_Click();
    void mnuSKin_Click(int index);
    void mnuRefreshList_Click();
    void mnuMoveSkin_Click();
    void mnuKeyboard_Click();
    void mnuEditSkin_Click();
    void mnuOptions_Click();
    void mnuCloseSkin_Click();
    void mnuQuit_Click();

    // The documents, in the program folder.
    static QString HelpDocument() { return QStringLiteral("Pelorin Help.html"); }
    static QString ChangesDocument() { return QStringLiteral("Pelorin Changes.html"); }
    static QString CreationDocument() { return QStringLiteral("Pelorin Creation.html"); }

private:
    void BuildMenu();
    void FormLoad();
    // mnuSKin(next index): its caption, and the skin it switches to; inserted before `before`
    // (at the end when null).
    void AddSkinEntry(const QString& skinName, QAction* before);
    QAction* AddCommand(QMenu* menu, const QString& controlName, const QString& caption,
                        void (MenusForm::*command)());
    void OpenDocument(const QString& name);
    QString CallerSkinFile() const;

    OpenFormsAccess m_forms;
    MenusProgram m_program;
    QPointer<frmMain> m_caller;
    QMenu* m_mnuRightClick = nullptr;
    QMenu* m_mnuLoadSkin = nullptr;
    QAction* m_mnuRefreshList = nullptr;
    QList<QAction*> m_mnuSKin;
    QSystemTrayIcon* m_tray = nullptr;
    int m_trayIconAdds = 0;
    bool m_unloaded = false;
};

} // namespace Pelorin
