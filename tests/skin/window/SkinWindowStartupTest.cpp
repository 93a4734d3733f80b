// Start-up and the skin window operations with real skin windows on the X server: the place a
// command line gives, the deskband host, and what closing the last window does.
#include "SkinWindowFixture.h"
#include "app/InstanceLock.h"
#include "app/Shell.h"
#include "base/ProgramPaths.h"
#include "base/Settings.h"
#include "dialogs/MenusForm.h"
#include "player/link/PlayerControl.h"

using namespace Pelorin;
using namespace Pelorin::Testing;

namespace {

class RecordingPlayer final : public PlayerControl {
public:
    void StartPlayer() override { ++starts; }
    void QuitPlayer() override { ++quits; }
    int starts = 0;
    int quits = 0;
};

class SkinWindowStartup : public SkinWindowFixture {
protected:
    struct Factory final : SkinWindowFactory {
        SkinWindow* CreateSkinWindow() override { return fixture->Create(); }
        SkinWindowStartup* fixture = nullptr;
    };

    void SetUp() override {
        SkinWindowFixture::SetUp();
        programFolder = dir.path() + u'/';
        WriteSkin(QStringLiteral("Default"),
                  {QStringLiteral("skinname=Default"), QStringLiteral("width=200"),
                   QStringLiteral("height=50")});
        const QString band = programFolder + QLatin1String("Deskband/Default/");
        QDir().mkpath(band);
        QFile bandSkin(band + QLatin1String("skin.ini"));
        ASSERT_TRUE(bandSkin.open(QIODevice::WriteOnly));
        bandSkin.write("skinname=Band\r\nwidth=150\r\nheight=30\r\n");
        bandSkin.close();
        settings = std::make_unique<Settings>(dir.path() + QLatin1String("/Pelorin.conf"));
        paths = std::make_unique<ProgramPaths>(programFolder);
        lock = std::make_unique<InstanceLock>(dir.path() + QLatin1String("/instance.lock"));
        factory.fixture = this;
        shellUnloading = [this](SkinWindow& window) { shell->SkinWindowUnloading(window); };
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
    }

    void TearDown() override {
        SkinWindowFixture::TearDown();
        shell.reset();
    }

    frmMain* OnlySkinWindow() {
        frmMain* found = nullptr;
        for (Form* form : forms.Forms()) {
            if (auto* window = dynamic_cast<frmMain*>(form))
                found = window;
        }
        return found;
    }

    QString programFolder;
    std::unique_ptr<Settings> settings;
    std::unique_ptr<ProgramPaths> paths;
    std::unique_ptr<InstanceLock> lock;
    RecordingPlayer player;
    Factory factory;
    std::unique_ptr<Shell> shell;
    int programEnds = 0;
};

} // namespace

TEST_F(SkinWindowStartup, AFolderOnTheCommandLineOpensAtItsLeftAndTopInTwips) {
    const QString folder =
        WriteSkin(QStringLiteral("Mine"), {QStringLiteral("left=500"), QStringLiteral("top=500")});
    shell->Main(folder + QLatin1String("|300|450"));
    frmMain* window = OnlySkinWindow();
    ASSERT_NE(window, nullptr);
    ASSERT_TRUE(WaitExposed(window));
    EXPECT_TRUE(QTest::qWaitFor([&] { return window->pos() == QPoint(20, 30); }))
        << window->x() << "," << window->y();
    EXPECT_EQ(player.starts, 0);
}

TEST_F(SkinWindowStartup, TheDeskbandSkinIsPutInsideItsHostWindow) {
    const xcb_window_t host = probe.CreateWindow(400, 40);
    shell->Main(QStringLiteral("Deskband ") + QString::number(host));
    frmMain* window = OnlySkinWindow();
    ASSERT_NE(window, nullptr);
    EXPECT_TRUE(window->IsDeskbar());
    EXPECT_TRUE(QTest::qWaitFor([&] { return probe.Parent(Id(window)) == host; }));
    EXPECT_EQ(window->pos(), QPoint(0, 0));
    window->Unload();
    probe.Destroy(host);
}

TEST_F(SkinWindowStartup, DeskbandWithoutANumberStaysATopLevelWindowAtTheOrigin) {
    shell->Main(QStringLiteral("Deskband"));
    frmMain* window = OnlySkinWindow();
    ASSERT_NE(window, nullptr);
    ASSERT_TRUE(WaitExposed(window));
    EXPECT_TRUE(QTest::qWaitFor([&] { return window->pos() == QPoint(0, 0); }));
    EXPECT_TRUE(window->isWindow());
}

TEST_F(SkinWindowStartup, ClosingTheLastOfTwoWindowsQuitsThePlayerWhenAsked) {
    settings->SaveSetting(Settings::CloseiTunesOnExit, QStringLiteral("1"));
    shell->Main(QString());
    SkinWindow* second = shell->OpenSkinWindow(
        WriteSkin(QStringLiteral("Second"), {QStringLiteral("skinname=Second")}), -99, -99, false);
    frmMain* first = nullptr;
    for (Form* form : forms.Forms()) {
        if (auto* window = dynamic_cast<frmMain*>(form); window != nullptr && window != second)
            first = window;
    }
    ASSERT_NE(first, nullptr);
    first->Unload();
    EXPECT_EQ(player.quits, 0);
    EXPECT_EQ(programEnds, 0);
    second->Unload();
    EXPECT_EQ(player.quits, 1);
    EXPECT_EQ(programEnds, 1);
}

TEST_F(SkinWindowStartup, ASkinSwitchNeverQuitsThePlayerNorEndsTheProgram) {
    settings->SaveSetting(Settings::CloseiTunesOnExit, QStringLiteral("1"));
    shell->Main(QStringLiteral("default"));
    WriteSkin(QStringLiteral("Other"), {QStringLiteral("skinname=Other")});
    shell->SwitchSkin(QStringLiteral("Other"));
    EXPECT_EQ(player.quits, 0);
    EXPECT_EQ(programEnds, 0);
    ASSERT_NE(OnlySkinWindow(), nullptr);
    EXPECT_EQ(OnlySkinWindow()->Tag(), QStringLiteral("Other"));
    EXPECT_EQ(OpenSkinWindows(), 1);
}
