// Start-up and the skin window operations, in process: real skin windows (offscreen), a real
// settings file, a real instance lock and program folder in a temporary folder. The player is a
// recording PlayerControl, since starting and quitting it is all the shell asks of it here.
#include "app/Shell.h"

#include "StderrCapture.h"
#include "app/FormsRegistry.h"
#include "app/InstanceLock.h"
#include "base/ProgramPaths.h"
#include "base/Settings.h"
#include "dialogs/MenusForm.h"
#include "player/link/PlayerControl.h"
#include "skin/window/frmMain.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <functional>
#include <gtest/gtest.h>
#include <memory>

using namespace Pelorin;

namespace {

class RecordingPlayer final : public PlayerControl {
public:
    void StartPlayer() override { ++starts; }
    void QuitPlayer() override { ++quits; }
    int starts = 0;
    int quits = 0;
};

void WriteSkin(const QString& folder, const QByteArray& body) {
    QDir().mkpath(folder);
    QFile f(folder + QLatin1String("skin.ini"));
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(body);
}

class ShellTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(dir.isValid());
        programFolder = dir.path() + QLatin1String("/program/");
        WriteSkin(programFolder + QLatin1String("Skins/Default/"),
                  "skinname=Default\r\nwidth=200\r\nheight=50\r\n");
        WriteSkin(programFolder + QLatin1String("Skins/Other/"),
                  "skinname=Other\r\nwidth=100\r\nheight=40\r\n");
        WriteSkin(programFolder + QLatin1String("Deskband/Default/"),
                  "skinname=Band\r\nwidth=150\r\nheight=30\r\n");
        settings = std::make_unique<Settings>(dir.path() + QLatin1String("/Pelorin.conf"));
        paths = std::make_unique<ProgramPaths>(programFolder);
        lock = std::make_unique<InstanceLock>(dir.path() + QLatin1String("/instance.lock"));
        shell = std::make_unique<Shell>(Shell::Services{
            .settings = *settings,
            .forms = forms,
            .instanceLock = *lock,
            .skinWindows = factory,
            .player = player,
            .paths = *paths,
            .loadMenus = [this]() -> Form* {
                MenusProgram program;
                program.programFolder = programFolder;
                return new MenusForm(forms.Access(), program);
            },
            .processEvents = [] { QCoreApplication::processEvents(); },
            .endProgram = [this] { ++programEnds; },
            .openExternal = [](const QString&, const QString&) { return false; },
        });
        factory.shell = shell.get();
        factory.forms = &forms;
        factory.programFolder = programFolder;
    }

    void TearDown() override {
        for (Form* form : forms.Forms())
            delete dynamic_cast<QObject*>(form);
    }

    QList<frmMain*> SkinWindows() const {
        QList<frmMain*> windows;
        for (Form* form : forms.Forms()) {
            if (auto* w = dynamic_cast<frmMain*>(form))
                windows.append(w);
        }
        return windows;
    }

    struct Factory final : SkinWindowFactory {
        SkinWindow* CreateSkinWindow() override {
            frmMain::Links links;
            links.forms.Forms = [this] { return forms->Forms(); };
            links.forms.Add = [this](Form* form) { forms->Add(form); };
            links.forms.Remove = [this](Form* form) { forms->Remove(form); };
            links.onUnloading = [this](SkinWindow& w) { shell->SkinWindowUnloading(w); };
            // "showskin=Name" as the command language hands it to the shell.
            links.services.RunCode = [this](frmMain&, QString& code) {
                if (code.startsWith(QLatin1String("showskin="))) {
                    shell->ShowSkinWindow(programFolder + QLatin1String("Skins/") + code.mid(9) +
                                              u'/',
                                          Shell::NotGiven, Shell::NotGiven);
                }
            };
            ++created;
            if (onCreate)
                onCreate();
            return new frmMain(std::move(links));
        }
        Shell* shell = nullptr;
        FormsRegistry* forms = nullptr;
        QString programFolder;
        int created = 0;
        std::function<void()> onCreate;
    };

    QTemporaryDir dir;
    QString programFolder;
    FormsRegistry forms;
    Factory factory;
    RecordingPlayer player;
    int programEnds = 0;
    std::unique_ptr<Settings> settings;
    std::unique_ptr<ProgramPaths> paths;
    std::unique_ptr<InstanceLock> lock;
    std::unique_ptr<Shell> shell;
};

} // namespace

TEST_F(ShellTest, FirstStartOpensDefaultCountsTheRunAndStartsThePlayer) {
    shell->Main(QString());
    ASSERT_EQ(SkinWindows().size(), 1);
    EXPECT_EQ(SkinWindows().first()->Tag(), QStringLiteral("Default"));
    EXPECT_TRUE(SkinWindows().first()->isVisible());
    EXPECT_EQ(settings->GetSetting(Settings::RunCount), QStringLiteral("1"));
    EXPECT_EQ(player.starts, 1);
    EXPECT_EQ(forms.CountNamed(QStringLiteral("frmMenus")), 1);
    EXPECT_FALSE(shell->DeskbandMode());
}

TEST_F(ShellTest, RemembersTheCurrentSkin) {
    settings->SaveSetting(Settings::CurrentSkin, QStringLiteral("Other"));
    shell->Main(QString());
    ASSERT_EQ(SkinWindows().size(), 1);
    EXPECT_EQ(SkinWindows().first()->Tag(), QStringLiteral("Other"));
}

TEST_F(ShellTest, DeskbandCommandLineOpensTheDeskbandSkinWithoutCountingOrStartingThePlayer) {
    settings->SaveSetting(Settings::RunCount, QStringLiteral("4"));
    shell->Main(QStringLiteral("Deskband 1234"));
    EXPECT_TRUE(shell->DeskbandMode());
    ASSERT_EQ(SkinWindows().size(), 1);
    EXPECT_EQ(SkinWindows().first()->Tag(), QStringLiteral("Band"));
    EXPECT_TRUE(SkinWindows().first()->IsDeskbar());
    EXPECT_EQ(SkinWindows().first()->pos(), QPoint(0, 0));
    EXPECT_EQ(settings->GetSetting(Settings::RunCount), QStringLiteral("4"));
    EXPECT_EQ(player.starts, 0);
    EXPECT_EQ(forms.CountNamed(QStringLiteral("frmMenus")), 0);
}

TEST_F(ShellTest, DeskbandWithoutANumberStaysATopLevelWindowAtTheOrigin) {
    shell->Main(QStringLiteral("Deskband"));
    ASSERT_EQ(SkinWindows().size(), 1);
    EXPECT_TRUE(SkinWindows().first()->isWindow());
    EXPECT_EQ(SkinWindows().first()->pos(), QPoint(0, 0));
}

TEST_F(ShellTest, DefaultCommandLineOpensDefaultWhateverTheCurrentSkin) {
    settings->SaveSetting(Settings::CurrentSkin, QStringLiteral("Other"));
    shell->Main(QStringLiteral("default"));
    ASSERT_EQ(SkinWindows().size(), 1);
    EXPECT_EQ(SkinWindows().first()->Tag(), QStringLiteral("Default"));
    EXPECT_EQ(player.starts, 1);
}

TEST_F(ShellTest, UpperCaseDefaultIsTreatedAsDefault) {
    settings->SaveSetting(Settings::CurrentSkin, QStringLiteral("Other"));
    shell->Main(QStringLiteral("DEFAULT"));
    ASSERT_EQ(SkinWindows().size(), 1);
    EXPECT_EQ(SkinWindows().first()->Tag(), QStringLiteral("Default"));
}

TEST_F(ShellTest, LowerCaseDeskbandIsNotRecognised) {
    shell->Main(QStringLiteral("deskband 1234"));
    EXPECT_FALSE(shell->DeskbandMode());
    // Taken as a skin folder with too few fields: nothing opens, but the run was counted.
    EXPECT_TRUE(SkinWindows().isEmpty());
    EXPECT_EQ(settings->GetSetting(Settings::RunCount), QStringLiteral("1"));
    EXPECT_EQ(player.starts, 0);
}

TEST_F(ShellTest, EmptyCommandLineWordNeverOpensTheEmptySkin) {
    WriteSkin(programFolder + QLatin1String("Skins/Empty/"), "skinname=Empty\r\n");
    shell->Main(QStringLiteral("emptydefault"));
    // It begins with "empty" but is not exactly "default": read as a folder, which fails.
    EXPECT_TRUE(SkinWindows().isEmpty());
}

TEST_F(ShellTest, FolderCommandLineOpensThatSkinAtTheGivenTwips) {
    settings->SaveSetting(Settings::RunCount, QStringLiteral("2"));
    const QString folder = programFolder + QLatin1String("Skins/Other/");
    shell->Main(folder + QLatin1String("|300|450"));
    ASSERT_EQ(SkinWindows().size(), 1);
    EXPECT_EQ(SkinWindows().first()->Tag(), QStringLiteral("Other"));
    EXPECT_EQ(SkinWindows().first()->pos(), QPoint(20, 30));
    EXPECT_EQ(player.starts, 0);
    EXPECT_EQ(settings->GetSetting(Settings::RunCount), QStringLiteral("3"));
}

TEST_F(ShellTest, FolderCommandLineWithBackslashesAndNoTrailingSeparatorStillOpens) {
    QString folder = programFolder + QLatin1String("Skins/Other");
    folder.replace(QLatin1Char('/'), QLatin1Char('\\'));
    // Only the relative part can use backslashes on Linux; the root stays absolute.
    folder = QLatin1Char('/') + folder.mid(1);
    shell->Main(folder + QLatin1String("|15|15"));
    ASSERT_EQ(SkinWindows().size(), 1);
    EXPECT_EQ(SkinWindows().first()->pos(), QPoint(1, 1));
}

TEST_F(ShellTest, FolderCommandLineWithTooFewFieldsOpensNothing) {
    shell->Main(programFolder + QLatin1String("Skins/Other/|300"));
    EXPECT_TRUE(SkinWindows().isEmpty());
}

TEST_F(ShellTest, FolderCommandLinePositionOutsideSixteenBitsOpensNothing) {
    shell->Main(programFolder + QLatin1String("Skins/Other/|40000|0"));
    EXPECT_TRUE(SkinWindows().isEmpty());
}

TEST_F(ShellTest, RememberedSkinWhoseFolderWasDeletedFallsBackToDefault) {
    settings->SaveSetting(Settings::CurrentSkin, QStringLiteral("Gone"));
    shell->Main(QString());
    ASSERT_EQ(SkinWindows().size(), 1);
    EXPECT_EQ(SkinWindows().first()->Tag(), QStringLiteral("Default"));
}

TEST_F(ShellTest, RememberedSkinWithAnEmptyFolderFallsBackToDefault) {
    QDir().mkpath(programFolder + QLatin1String("Skins/Hollow/sub"));
    settings->SaveSetting(Settings::CurrentSkin, QStringLiteral("Hollow"));
    shell->Main(QString());
    ASSERT_EQ(SkinWindows().size(), 1);
    EXPECT_EQ(SkinWindows().first()->Tag(), QStringLiteral("Default"));
}

TEST_F(ShellTest, SecondInstanceEndsSilentlyWithoutCountingOrOpening) {
    InstanceLock first(dir.path() + QLatin1String("/instance.lock"));
    ASSERT_TRUE(first.TryAcquire());
    shell->Main(QString());
    EXPECT_TRUE(forms.Forms().isEmpty());
    EXPECT_EQ(settings->GetSetting(Settings::RunCount, QStringLiteral("none")),
              QStringLiteral("none"));
    EXPECT_EQ(player.starts, 0);
}

TEST_F(ShellTest, DeskbandStartRunsBesideANormalInstance) {
    InstanceLock first(dir.path() + QLatin1String("/instance.lock"));
    ASSERT_TRUE(first.TryAcquire());
    shell->Main(QStringLiteral("Deskband 0"));
    EXPECT_EQ(SkinWindows().size(), 1);
}

TEST_F(ShellTest, FrmMainCountCountsOnlySkinWindows) {
    shell->Main(QString());
    shell->OpenSkinWindow(paths->SkinFolder(QStringLiteral("Other")), Shell::NotGiven,
                          Shell::NotGiven, false);
    EXPECT_EQ(shell->FrmMainCount(), 2);
    EXPECT_EQ(forms.Count(), 3); // with frmMenus
}

TEST_F(ShellTest, OpenSkinWindowPositionWinsOverTheSkinsOwnLines) {
    WriteSkin(programFolder + QLatin1String("Skins/Placed/"),
              "left=100\r\ntop=100\r\nwidth=50\r\nheight=50\r\n");
    SkinWindow* w = shell->OpenSkinWindow(paths->SkinFolder(QStringLiteral("Placed")), 150,
                                          Shell::NotGiven, false);
    EXPECT_EQ(w->Widget()->pos(), QPoint(10, 100));
}

TEST_F(ShellTest, ClosingTheLastOfTwoWindowsQuitsThePlayerWhenAsked) {
    settings->SaveSetting(Settings::CloseiTunesOnExit, QStringLiteral("1"));
    shell->Main(QString());
    shell->OpenSkinWindow(paths->SkinFolder(QStringLiteral("Other")), Shell::NotGiven,
                          Shell::NotGiven, false);
    QList<frmMain*> windows = SkinWindows();
    ASSERT_EQ(windows.size(), 2);
    windows[0]->Unload();
    EXPECT_EQ(player.quits, 0);
    EXPECT_EQ(programEnds, 0);
    EXPECT_EQ(forms.CountNamed(QStringLiteral("frmMenus")), 1);
    windows[1]->Unload();
    EXPECT_EQ(player.quits, 1);
    EXPECT_EQ(programEnds, 1);
    EXPECT_EQ(forms.CountNamed(QStringLiteral("frmMenus")), 0);
}

TEST_F(ShellTest, ClosingTheLastWindowLeavesThePlayerWhenNotAsked) {
    settings->SaveSetting(Settings::CloseiTunesOnExit, QStringLiteral("yes"));
    shell->Main(QString());
    SkinWindows().first()->Unload();
    EXPECT_EQ(player.quits, 0);
    EXPECT_EQ(programEnds, 1);
}

TEST_F(ShellTest, SkinSwitchNeverQuitsThePlayerNorEndsTheProgram) {
    settings->SaveSetting(Settings::CloseiTunesOnExit, QStringLiteral("1"));
    shell->Main(QString());
    shell->SwitchSkin(QStringLiteral("Other"));
    EXPECT_EQ(player.quits, 0);
    EXPECT_EQ(programEnds, 0);
    EXPECT_FALSE(shell->SwitchingSkin());
    ASSERT_EQ(SkinWindows().size(), 1);
    EXPECT_EQ(SkinWindows().first()->Tag(), QStringLiteral("Other"));
    EXPECT_EQ(settings->GetSetting(Settings::CurrentSkin), QStringLiteral("Other"));
    EXPECT_EQ(forms.CountNamed(QStringLiteral("frmMenus")), 1);
}

TEST_F(ShellTest, CloseAllWindowsUnloadsEveryFormAndEndsTheProgram) {
    shell->Main(QString());
    shell->OpenSkinWindow(paths->SkinFolder(QStringLiteral("Other")), Shell::NotGiven,
                          Shell::NotGiven, false);
    shell->CloseAllWindows();
    EXPECT_TRUE(forms.Forms().isEmpty());
    EXPECT_EQ(programEnds, 1);
    EXPECT_EQ(shell->Menus(), nullptr);
}

TEST_F(ShellTest, RememberPosWindowWritesItsPositionOnClose) {
    WriteSkin(programFolder + QLatin1String("Skins/Memo/"),
              "rememberpos=True\r\nleft=10\r\ntop=20\r\n");
    SkinWindow* w = shell->OpenSkinWindow(paths->SkinFolder(QStringLiteral("Memo")),
                                          Shell::NotGiven, Shell::NotGiven, false);
    w->SetLeftTwips(1200);
    w->SetTopTwips(450);
    w->Unload();
    QFile f(programFolder + QLatin1String("Skins/Memo/position.ini"));
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    EXPECT_EQ(f.readAll(), QByteArray(" 1200\r\n 450\r\n"));
}

TEST_F(ShellTest, RememberedPositionIsAppliedOnLoad) {
    WriteSkin(programFolder + QLatin1String("Skins/Memo/"),
              "rememberpos=True\r\nleft=10\r\ntop=20\r\n");
    QFile f(programFolder + QLatin1String("Skins/Memo/position.ini"));
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(" 1500\r\n 750\r\n");
    f.close();
    SkinWindow* w = shell->OpenSkinWindow(paths->SkinFolder(QStringLiteral("Memo")),
                                          Shell::NotGiven, Shell::NotGiven, false);
    EXPECT_EQ(w->Widget()->pos(), QPoint(100, 50));
}

TEST_F(ShellTest, RememberPosSkinWithoutPositionFileKeepsItsLeftAndTopLines) {
    WriteSkin(programFolder + QLatin1String("Skins/Memo/"),
              "rememberpos=True\r\nleft=10\r\ntop=20\r\n");
    SkinWindow* w = shell->OpenSkinWindow(paths->SkinFolder(QStringLiteral("Memo")),
                                          Shell::NotGiven, Shell::NotGiven, false);
    EXPECT_EQ(w->Widget()->pos(), QPoint(10, 20));
}

TEST_F(ShellTest, OneLinePositionFileKeepsTheLeftJustRead) {
    WriteSkin(programFolder + QLatin1String("Skins/Memo/"),
              "rememberpos=True\r\nleft=10\r\ntop=20\r\n");
    QFile f(programFolder + QLatin1String("Skins/Memo/position.ini"));
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(" 1500\r\n");
    f.close();
    SkinWindow* w = shell->OpenSkinWindow(paths->SkinFolder(QStringLiteral("Memo")),
                                          Shell::NotGiven, Shell::NotGiven, false);
    EXPECT_EQ(w->Widget()->pos(), QPoint(100, 20));
}

TEST_F(ShellTest, MissingSkinFileStillShowsAnEmptyWindow) {
    QDir().mkpath(programFolder + QLatin1String("Skins/NoFile"));
    SkinWindow* w = shell->OpenSkinWindow(paths->SkinFolder(QStringLiteral("NoFile")),
                                          Shell::NotGiven, Shell::NotGiven, false);
    EXPECT_TRUE(w->Widget()->isVisible());
    EXPECT_EQ(w->Tag(), QStringLiteral("loadedbyskin"));
}

TEST_F(ShellTest, ShellOpenOfTheWordITunesStartsThePlayer) {
    EXPECT_TRUE(shell->ShellOpen(QStringLiteral("iTunes"), QStringLiteral("1")));
    EXPECT_EQ(player.starts, 1);
    EXPECT_FALSE(shell->IsPlayerRunning());
}

TEST_F(ShellTest, ASkinThatShowsItselfWhileLoadingOpensOneWindowAfterAnotherUpToTheLimit) {
    WriteSkin(programFolder + QLatin1String("Skins/Self/"),
              "skinname=Self\r\nwidth=50\r\nheight=20\r\nruncode=showskin=Self\r\n");
    Testing::StderrCapture errors;
    shell->OpenSkinWindow(programFolder + QLatin1String("Skins/Self/"), Shell::NotGiven,
                          Shell::NotGiven, false);
    EXPECT_EQ(shell->FrmMainCount(), Shell::MaxSkinWindows);
    EXPECT_EQ(factory.created, Shell::MaxSkinWindows);
    EXPECT_EQ(errors.Messages(QStringLiteral("Pelorin")), QStringList{Shell::TooManyWindowsText()});
}

TEST_F(ShellTest, AWindowAskedForWhileASkinLoadsOpensOnceThatLoadHasEnded) {
    WriteSkin(programFolder + QLatin1String("Skins/Asker/"),
              "skinname=Asker\r\nruncode=showskin=Other\r\nwidth=123\r\n");
    QList<int> askerWidthWhenOtherWasMade;
    factory.onCreate = [this, &askerWidthWhenOtherWasMade] {
        const QList<frmMain*> windows = SkinWindows();
        if (!windows.isEmpty() && windows.first()->Tag() == QLatin1String("Asker"))
            askerWidthWhenOtherWasMade.append(windows.first()->width());
    };
    shell->OpenSkinWindow(programFolder + QLatin1String("Skins/Asker/"), Shell::NotGiven,
                          Shell::NotGiven, false);
    ASSERT_EQ(shell->FrmMainCount(), 2);
    EXPECT_EQ(SkinWindows().last()->Tag(), QStringLiteral("Other"));
    EXPECT_EQ(askerWidthWhenOtherWasMade, QList<int>{123}) << "the whole skin file was read first";
}

TEST(ShellWithoutALock, AStartThatCannotTakeItsLockSaysWhyInsteadOfEndingSilently) {
    QTemporaryDir dir;
    Settings settings(dir.path() + QLatin1String("/Pelorin.conf"));
    ProgramPaths paths(dir.path() + QLatin1String("/program/"));
    InstanceLock lock(QString(), QStringLiteral("the runtime folder /run/user/0 is refused"));
    FormsRegistry forms;
    RecordingPlayer player;
    struct NoWindows final : SkinWindowFactory {
        SkinWindow* CreateSkinWindow() override {
            ++made;
            return nullptr;
        }
        int made = 0;
    } factory;
    Shell shell(Shell::Services{
        .settings = settings,
        .forms = forms,
        .instanceLock = lock,
        .skinWindows = factory,
        .player = player,
        .paths = paths,
        .loadMenus = []() -> Form* { return nullptr; },
        .processEvents = [] {},
        .endProgram = [] {},
        .openExternal = [](const QString&, const QString&) { return false; },
    });
    Testing::StderrCapture errors;
    shell.Main(QString());
    EXPECT_EQ(errors.Messages(QStringLiteral("Pelorin")),
              QStringList{QStringLiteral(
                  "Pelorin cannot start: the runtime folder /run/user/0 is refused")});
    EXPECT_EQ(factory.made, 0);
}
