// frmMenus with real skin windows (offscreen) bound to the in-memory player: the menu tree, the
// skin list read from a real Skins folder, the tray icon's messages and every command, with the
// program's operations recorded.
#include "dialogs/MenusForm.h"

#include "app/binding/BoundWindowRig.h"

#include <QAction>
#include <QMenu>
#include <QSystemTrayIcon>
#include <gtest/gtest.h>

using namespace Pelorin;
using namespace Pelorin::Testing;

namespace {

class MenusFormTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(rig.dir.isValid()); }
    void TearDown() override {
        delete menus.data();
        BoundWindowRig::FlushDeletes();
    }

    QString ProgramFolder() const { return rig.dir.path() + u'/'; }

    void MakeSkinFolders(const QStringList& names) {
        for (const QString& name : names)
            ASSERT_TRUE(QDir().mkpath(ProgramFolder() + QStringLiteral("Skins/") + name));
    }

    MenusProgram Program() {
        MenusProgram program;
        program.programFolder = ProgramFolder();
        program.switchSkin = [this](const QString& name) { switched.append(name); };
        program.closeAllWindows = [this] { ++closeAll; };
        program.shellOpen = [this](const QString& file, const QString& parameters) {
            opened.append(file + u'|' + parameters);
            return true;
        };
        program.currentSkin = [] { return QStringLiteral("Remembered"); };
        program.defaultSkinWindow = [this]() -> frmMain* {
            if (defaultWindow.isNull()) {
                defaultWindow = SkinWindowBinding::Create(rig.Links(), rig.Program())->Window();
            }
            return defaultWindow.data();
        };
        program.showOptions = [this] { ++optionsShown; };
        return program;
    }

    MenusForm& Load(MenusProgram program) {
        menus = new MenusForm(rig.forms.Access(), std::move(program));
        return *menus;
    }
    MenusForm& Load() { return Load(Program()); }

    // A menu entry chosen: its command runs once the menu has closed.
    static void Choose(QAction* action) {
        ASSERT_NE(action, nullptr);
        ASSERT_TRUE(action->isEnabled()) << action->text().toStdString();
        action->trigger();
        for (int i = 0; i < 3; ++i)
            QCoreApplication::processEvents();
    }

    static QStringList Texts(const QMenu* menu) {
        QStringList texts;
        for (const QAction* action : menu->actions())
            texts.append(action->text());
        return texts;
    }

    BoundWindowRig rig;
    QPointer<MenusForm> menus;
    QPointer<frmMain> defaultWindow;
    QStringList switched;
    QStringList opened;
    int closeAll = 0;
    int optionsShown = 0;
};

TEST_F(MenusFormTest, TheMenuHoldsEveryEntryInItsOrder) {
    MakeSkinFolders({QStringLiteral("Default")});
    MenusForm& form = Load();
    EXPECT_EQ(form.mnuRightClick()->objectName(), QStringLiteral("mnuRightClick"));
    EXPECT_EQ(form.mnuRightClick()->title(), QStringLiteral("Right Menu"));
    EXPECT_EQ(Texts(form.mnuRightClick()),
              QStringList({QStringLiteral("Help Documents"), QStringLiteral("Reload"),
                           QStringLiteral("Load Skin"), QStringLiteral("Move Skin"),
                           QStringLiteral("Manage Keyboard Shortcuts"),
                           QStringLiteral("Skin Configuration"), QStringLiteral("Options"),
                           QStringLiteral("Close Skin"), QStringLiteral("Quit")}));
    const QMenu* help = form.mnuRightClick()->actions().at(0)->menu();
    ASSERT_NE(help, nullptr);
    EXPECT_EQ(Texts(help),
              QStringList({QStringLiteral("Pelorin Help"), QStringLiteral("Pelorin Changes"),
                           QStringLiteral("Skin Creation Guide")}));
    for (const char* name :
         {"mnuDocHelp", "mnuDocChanges", "mnuSKinCreate", "mnuReload", "mnuRefreshList",
          "mnuMoveSkin", "mnuKeyboard", "mnuEditSkin", "mnuOptions", "mnuCloseSkin", "mnuQuit"})
        EXPECT_NE(form.Entry(QLatin1String(name)), nullptr) << name;
}

TEST_F(MenusFormTest, ThreeSkinFoldersGiveLoadSkinThreeEntriesInFolderListOrderThenRefresh) {
    MakeSkinFolders({QStringLiteral("beta"), QStringLiteral("Alpha"), QStringLiteral("gamma")});
    MenusForm& form = Load();
    EXPECT_EQ(form.mnuSKinCount(), 3);
    EXPECT_EQ(Texts(form.mnuLoadSkin()),
              QStringList({QStringLiteral("Alpha"), QStringLiteral("beta"), QStringLiteral("gamma"),
                           QStringLiteral("Refresh Skin List")}));
}

TEST_F(MenusFormTest, RefreshSkinListShowsAFolderAddedSinceAndAddsTheIconAgainUnderItsId) {
    MakeSkinFolders({QStringLiteral("Default")});
    MenusForm& form = Load();
    ASSERT_EQ(form.TrayIconAdds(), 1);
    QSystemTrayIcon* icon = form.TrayIcon();
    MakeSkinFolders({QStringLiteral("Newer")});
    Choose(form.Entry(QStringLiteral("mnuRefreshList")));
    EXPECT_EQ(Texts(form.mnuLoadSkin()),
              QStringList({QStringLiteral("Default"), QStringLiteral("Newer"),
                           QStringLiteral("Refresh Skin List")}));
    EXPECT_EQ(form.TrayIconAdds(), 2);
    EXPECT_EQ(form.TrayIcon(), icon) << "the same icon, added once more";
}

TEST_F(MenusFormTest, TheTrayIconSaysPelorin) {
    MakeSkinFolders({QStringLiteral("Default")});
    MenusForm& form = Load();
    ASSERT_NE(form.TrayIcon(), nullptr);
    EXPECT_EQ(form.TrayIcon()->toolTip(), QStringLiteral("Pelorin"));
    EXPECT_FALSE(form.TrayIcon()->icon().isNull()) << "the icon is compiled in";
    EXPECT_FALSE(form.TrayIcon()->icon().pixmap(16, 16).isNull());
    EXPECT_FALSE(form.TrayIcon()->icon().pixmap(48, 48).isNull());
}

TEST_F(MenusFormTest, ADoubleClickOnTheTrayIconOnlyShowsShowPelorinPrefs) {
    MakeSkinFolders({QStringLiteral("Default")});
    MenusForm& form = Load();
    testing::internal::CaptureStderr();
    Q_EMIT form.TrayIcon()->activated(QSystemTrayIcon::DoubleClick);
    const std::string err = testing::internal::GetCapturedStderr();
    EXPECT_NE(err.find("Pelorin: show pelorin prefs?"), std::string::npos) << err;
    EXPECT_TRUE(switched.isEmpty());
    EXPECT_EQ(closeAll, 0);
    EXPECT_EQ(optionsShown, 0);
    EXPECT_TRUE(defaultWindow.isNull()) << "no menu, no caller";
    EXPECT_FALSE(form.mnuRightClick()->isVisible());
}

TEST_F(MenusFormTest, OtherTrayMessagesDoNothing) {
    MakeSkinFolders({QStringLiteral("Default")});
    MenusForm& form = Load();
    testing::internal::CaptureStderr();
    form.PicSysTray_MouseMove(512);
    form.PicSysTray_MouseMove(514);
    EXPECT_EQ(testing::internal::GetCapturedStderr().find("prefs"), std::string::npos);
    EXPECT_FALSE(form.mnuRightClick()->isVisible());
    EXPECT_TRUE(defaultWindow.isNull());
}

TEST_F(MenusFormTest, ARightClickOnTheTrayIconOpensTheMenuForTheDefaultSkinWindowInstance) {
    MakeSkinFolders({QStringLiteral("Default")});
    MenusForm& form = Load();
    Q_EMIT form.TrayIcon()->activated(QSystemTrayIcon::Context);
    ASSERT_FALSE(defaultWindow.isNull());
    EXPECT_EQ(form.Caller(), defaultWindow.data());
    EXPECT_TRUE(form.mnuRightClick()->isVisible());
    EXPECT_TRUE(defaultWindow->isHidden()) << "the instance stays hidden";
    EXPECT_EQ(defaultWindow->Tag(), QString());
    EXPECT_EQ(rig.forms.CountNamed(QStringLiteral("frmMain")), 1) << "and is counted";
}

TEST_F(MenusFormTest, CloseSkinFromTheTrayMenuClosesTheDefaultInstanceNotTheWindowUnderThePointer) {
    MakeSkinFolders({QStringLiteral("Default")});
    rig.Player();
    SkinWindowBinding* visible = rig.OpenSkin(
        QStringLiteral("Shown"), {QStringLiteral("width=100"), QStringLiteral("height=40")});
    QPointer<frmMain> shown = visible->Window();
    MenusForm& form = Load();
    form.PicSysTray_MouseMove(MenusForm::RightButtonUpMessage);
    ASSERT_FALSE(defaultWindow.isNull());
    Choose(form.Entry(QStringLiteral("mnuCloseSkin")));
    EXPECT_TRUE(defaultWindow.isNull() || defaultWindow->IsUnloaded());
    ASSERT_FALSE(shown.isNull());
    EXPECT_FALSE(shown->IsUnloaded());
}

TEST_F(MenusFormTest, ARightReleaseOnASkinWindowOpensTheSameMenuWithThatWindowAsCaller) {
    MakeSkinFolders({QStringLiteral("Default")});
    rig.Player();
    QPointer<frmMain> window = rig.OpenSkin(QStringLiteral("Shown"), {QStringLiteral("width=100"),
                                                                      QStringLiteral("height=40")})
                                   ->Window();
    MenusForm& form = Load();
    form.ShowMenu(QStringLiteral("ignored"), window);
    EXPECT_EQ(form.Caller(), window);
    EXPECT_TRUE(form.mnuRightClick()->isVisible());
    Choose(form.Entry(QStringLiteral("mnuMoveSkin")));
    EXPECT_TRUE(window->lblMove()->isVisible()) << "Move Skin moves the caller";
    form.ShowMenu(QString(), window);
    Choose(form.Entry(QStringLiteral("mnuCloseSkin")));
    EXPECT_TRUE(window.isNull() || window->IsUnloaded());
}

TEST_F(MenusFormTest, TheDocumentEntriesOpenTheDocumentsOfTheProgramFolderWithParameterOne) {
    MakeSkinFolders({QStringLiteral("Default")});
    MenusForm& form = Load();
    Choose(form.Entry(QStringLiteral("mnuDocHelp")));
    Choose(form.Entry(QStringLiteral("mnuDocChanges")));
    Choose(form.Entry(QStringLiteral("mnuSKinCreate")));
    EXPECT_EQ(opened, QStringList({ProgramFolder() + QStringLiteral("Pelorin Help.html|1"),
                                   ProgramFolder() + QStringLiteral("Pelorin Changes.html|1"),
                                   ProgramFolder() + QStringLiteral("Pelorin Creation.html|1")}));
}

TEST_F(MenusFormTest, ADocumentThatCannotBeOpenedIsReported) {
    MakeSkinFolders({QStringLiteral("Default")});
    MenusProgram program = Program();
    program.shellOpen = [](const QString&, const QString&) { return false; };
    MenusForm& form = Load(program);
    testing::internal::CaptureStderr();
    Choose(form.Entry(QStringLiteral("mnuDocHelp")));
    const std::string err = testing::internal::GetCapturedStderr();
    EXPECT_NE(err.find("Pelorin cannot open"), std::string::npos) << err;
    EXPECT_NE(err.find("Pelorin Help.html"), std::string::npos) << err;
}

TEST_F(MenusFormTest, ReloadSwitchesToTheRememberedSkinAndASkinEntryToItsSkin) {
    MakeSkinFolders({QStringLiteral("Alpha"), QStringLiteral("Beta")});
    MenusForm& form = Load();
    Choose(form.Entry(QStringLiteral("mnuReload")));
    Choose(form.mnuSKin(1));
    Choose(form.mnuSKin(0));
    EXPECT_EQ(switched, QStringList({QStringLiteral("Remembered"), QStringLiteral("Beta"),
                                     QStringLiteral("Alpha")}));
}

TEST_F(MenusFormTest, OptionsShowsTheOptionsAndQuitClosesEveryForm) {
    MakeSkinFolders({QStringLiteral("Default")});
    MenusForm& form = Load();
    Choose(form.Entry(QStringLiteral("mnuOptions")));
    EXPECT_EQ(optionsShown, 1);
    Choose(form.Entry(QStringLiteral("mnuQuit")));
    EXPECT_EQ(closeAll, 1);
}

TEST_F(MenusFormTest, TheEditorEntriesAreGreyedOutWhenTheProgramHasNoEditors) {
    MakeSkinFolders({QStringLiteral("Default")});
    MenusForm& form = Load();
    EXPECT_FALSE(form.Entry(QStringLiteral("mnuKeyboard"))->isEnabled());
    EXPECT_FALSE(form.Entry(QStringLiteral("mnuEditSkin"))->isEnabled());
}

TEST_F(MenusFormTest, TheEditorEntriesGetTheCallersSkinFile) {
    MakeSkinFolders({QStringLiteral("Default")});
    rig.Player();
    frmMain* window = rig.OpenSkin(QStringLiteral("Shown"),
                                   {QStringLiteral("width=100"), QStringLiteral("height=40")})
                          ->Window();
    QStringList asked;
    MenusProgram program = Program();
    program.manageKeyboardShortcuts = [&](const QString& file) { asked.append(u'K' + file); };
    program.editSkin = [&](const QString& file) { asked.append(u'E' + file); };
    MenusForm& form = Load(program);
    form.ShowMenu(QString(), window);
    Choose(form.Entry(QStringLiteral("mnuKeyboard")));
    Choose(form.Entry(QStringLiteral("mnuEditSkin")));
    const QString file = window->SkinFolder() + QStringLiteral("skin.ini");
    EXPECT_EQ(asked, QStringList({u'K' + file, u'E' + file}));
}

TEST_F(MenusFormTest, AnEmptySkinsFolderGivesOneGreyedEntryThatSwitchesToNothing) {
    ASSERT_TRUE(QDir().mkpath(ProgramFolder() + QStringLiteral("Skins")));
    MenusForm& form = Load();
    ASSERT_EQ(form.mnuSKinCount(), 1);
    EXPECT_FALSE(form.mnuSKin(0)->isEnabled());
    EXPECT_TRUE(form.mnuSKin(0)->text().startsWith(QStringLiteral("(no skins in ")));
    form.mnuSKin_Click(0);
    EXPECT_TRUE(switched.isEmpty());
}

TEST_F(MenusFormTest, AMissingSkinsFolderIsAnEmptyList) {
    MenusForm& form = Load();
    EXPECT_EQ(form.mnuSKinCount(), 1);
    EXPECT_FALSE(form.mnuSKin(0)->isEnabled());
}

TEST_F(MenusFormTest, FilesInTheSkinsFolderAreNotSkins) {
    MakeSkinFolders({QStringLiteral("Real")});
    QFile file(ProgramFolder() + QStringLiteral("Skins/NotAFolder"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();
    MenusForm& form = Load();
    EXPECT_EQ(Texts(form.mnuLoadSkin()),
              QStringList({QStringLiteral("Real"), QStringLiteral("Refresh Skin List")}));
}

TEST_F(MenusFormTest, FiveHundredSkinsAreAllListed) {
    QStringList names;
    for (int i = 0; i < 500; ++i)
        names.append(QStringLiteral("Skin%1").arg(i, 3, 10, QLatin1Char('0')));
    MakeSkinFolders(names);
    MenusForm& form = Load();
    EXPECT_EQ(form.mnuSKinCount(), 500);
    Choose(form.mnuSKin(499));
    EXPECT_EQ(switched, QStringList({QStringLiteral("Skin499")}));
}

TEST_F(MenusFormTest, NamesWithOddCharactersShowAsTheyAreAndSwitchToTheirFolder) {
    const QString ampersand = QStringLiteral("Rock & Roll");
    const QString control = QStringLiteral("Esc\x1b"
                                           "ape");
    MakeSkinFolders({ampersand, control});
    MenusForm& form = Load();
    ASSERT_EQ(form.mnuSKinCount(), 2);
    EXPECT_EQ(form.mnuSKin(0)->text(), QStringLiteral("Esc\\x1bape"));
    EXPECT_EQ(form.mnuSKin(1)->text(), QStringLiteral("Rock && Roll")) << "no mnemonic";
    Choose(form.mnuSKin(1));
    Choose(form.mnuSKin(0));
    EXPECT_EQ(switched, QStringList({ampersand, control}));
}

TEST_F(MenusFormTest, InDeskbandModeThereIsNeitherSkinListNorTrayIcon) {
    MakeSkinFolders({QStringLiteral("Alpha"), QStringLiteral("Beta")});
    MenusProgram program = Program();
    program.deskbandMode = true;
    MenusForm& form = Load(program);
    EXPECT_EQ(form.TrayIcon(), nullptr);
    EXPECT_EQ(form.TrayIconAdds(), 0);
    EXPECT_EQ(Texts(form.mnuLoadSkin()),
              QStringList({QStringLiteral("Default"), QStringLiteral("Refresh Skin List")}));
}

TEST_F(MenusFormTest, UnloadingTheFormHidesTheIconAndLeavesTheRegistry) {
    MakeSkinFolders({QStringLiteral("Default")});
    MenusForm& form = Load();
    EXPECT_TRUE(rig.forms.Contains(&form));
    form.Unload();
    EXPECT_FALSE(rig.forms.Contains(&form));
    EXPECT_FALSE(form.TrayIcon()->isVisible());
}

TEST_F(MenusFormTest, GetFileIsTheTextAfterTheLastSeparator) {
    EXPECT_EQ(MenusForm::GetFile(QStringLiteral("C:\\Skins\\Blue")), QStringLiteral("Blue"));
    EXPECT_EQ(MenusForm::GetFile(QStringLiteral("/home/u/Skins/Blue")), QStringLiteral("Blue"));
    EXPECT_EQ(MenusForm::GetFile(QStringLiteral("Blue")), QStringLiteral("Blue"));
}

} // namespace
