// The skin editor (offscreen) driven through its controls, over real skin files in a temporary
// folder, the bundled skins among them.
#include "dialogs/SkinEditorDialog.h"

#include "app/FormsRegistry.h"

#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QListWidget>
#include <QPointer>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

using namespace Pelorin;

namespace {

class SkinEditorDialogTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(dir.isValid());
        skinFile = dir.path() + QStringLiteral("/skin.ini");
    }
    void TearDown() override {
        delete editor.data();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    static void Write(const QString& path, const QByteArray& bytes) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }
    static QByteArray Read(const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(missing)");
    }

    SkinEditorDialog& Open(const QByteArray& bytes) {
        Write(skinFile, bytes);
        editor =
            new SkinEditorDialog({.switchToCurrentSkin = [this] { ++switches; }}, forms.Access());
        EXPECT_TRUE(editor->LoadSkin(skinFile));
        return *editor;
    }

    static QStringList Items(const QListWidget* list) {
        QStringList items;
        for (int i = 0; i < list->count(); ++i)
            items.append(list->item(i)->text());
        return items;
    }

    QByteArray Save() {
        QTest::mouseClick(editor->cmdReload(), Qt::LeftButton);
        return Read(skinFile);
    }

    QTemporaryDir dir;
    QString skinFile;
    FormsRegistry forms;
    QPointer<SkinEditorDialog> editor;
    int switches = 0;
};

TEST_F(SkinEditorDialogTest, ALineTitleEqualsLoadsAsTitleNoneAndSavesAsTitleEqualsNone) {
    SkinEditorDialog& e = Open("title=\r\n");
    EXPECT_EQ(e.windowTitle(), QStringLiteral("Skin Configuration Editor"));
    EXPECT_EQ(Items(e.lstCommands()), QStringList({QStringLiteral("title")}));
    EXPECT_EQ(Items(e.lstParams()), QStringList({QStringLiteral("NONE")}));
    EXPECT_EQ(Save(), "title=NONE\r\n");
    EXPECT_EQ(switches, 1) << "the current skin is reopened";
}

TEST_F(SkinEditorDialogTest, ALineWithoutEqualsIsLostOnSaving) {
    Open("width=100\r\nbareword\r\nheight=40\r\n");
    EXPECT_EQ(Items(editor->lstCommands()),
              QStringList({QStringLiteral("width"), QStringLiteral("height")}));
    EXPECT_EQ(Save(), "width=100\r\nheight=40\r\n");
}

TEST_F(SkinEditorDialogTest, AddCommandThenSaveWritesNewCommandEqualsNewParam) {
    Open("width=100\r\n");
    QTest::mouseClick(editor->cmdAdd(), Qt::LeftButton);
    EXPECT_EQ(editor->lstCommands()->currentRow(), 1);
    EXPECT_EQ(editor->lstParams()->currentRow(), 1);
    EXPECT_EQ(editor->txtLine()->text(), QStringLiteral("new command=new param"));
    EXPECT_EQ(Save(), "width=100\r\nnew command=new param\r\n");
}

TEST_F(SkinEditorDialogTest, CommentAndEmptyLinesComeBackWithoutThem) {
    Open("// a comment\r\nwidth=100\r\n\r\n' another\r\n\\\\ and this\r\nheight=40\r\n");
    EXPECT_EQ(Items(editor->lstCommands()),
              QStringList({QStringLiteral("width"), QStringLiteral("height")}));
    EXPECT_EQ(Save(), "width=100\r\nheight=40\r\n");
}

TEST_F(SkinEditorDialogTest, TheValueKeepsEverythingAfterTheFirstEquals) {
    Open("runcode=showskin=Other|1|2\r\n");
    EXPECT_EQ(Items(editor->lstParams()), QStringList({QStringLiteral("showskin=Other|1|2")}));
    EXPECT_EQ(Save(), "runcode=showskin=Other|1|2\r\n");
}

TEST_F(SkinEditorDialogTest, SelectingInEitherListSelectsBothAndShowsTheLine) {
    Open("width=100\r\nheight=40\r\n");
    editor->lstParams()->setCurrentRow(1);
    EXPECT_EQ(editor->lstCommands()->currentRow(), 1);
    EXPECT_EQ(editor->txtLine()->text(), QStringLiteral("height=40"));
    editor->lstCommands()->setCurrentRow(0);
    EXPECT_EQ(editor->lstParams()->currentRow(), 0);
    EXPECT_EQ(editor->txtLine()->text(), QStringLiteral("width=100"));
}

TEST_F(SkinEditorDialogTest, EditingTheLineReplacesTheSelectedPair) {
    Open("width=100\r\nheight=40\r\n");
    editor->lstCommands()->setCurrentRow(1);
    editor->txtLine()->selectAll();
    QTest::keyClicks(editor->txtLine(), QStringLiteral("top=r80"));
    EXPECT_EQ(Items(editor->lstCommands()),
              QStringList({QStringLiteral("width"), QStringLiteral("top")}));
    EXPECT_EQ(Items(editor->lstParams()),
              QStringList({QStringLiteral("100"), QStringLiteral("r80")}));
    editor->txtLine()->setText(QStringLiteral("// now a comment"));
    EXPECT_EQ(editor->lstCommands()->item(1)->text(), QStringLiteral("  comment"));
    EXPECT_EQ(Save(), "width=100\r\n// now a comment\r\n") << "a comment made in the editor stays";
}

TEST_F(SkinEditorDialogTest, RemoveCommandRemovesTheSelectedPairFromBothLists) {
    Open("width=100\r\nheight=40\r\nleft=3\r\n");
    editor->lstCommands()->setCurrentRow(1);
    QTest::mouseClick(editor->cmdRemvoe(), Qt::LeftButton);
    EXPECT_EQ(editor->cmdRemvoe()->objectName(), QStringLiteral("cmdRemvoe"));
    EXPECT_EQ(Items(editor->lstCommands()),
              QStringList({QStringLiteral("width"), QStringLiteral("left")}));
    EXPECT_EQ(Items(editor->lstParams()),
              QStringList({QStringLiteral("100"), QStringLiteral("3")}));
}

TEST_F(SkinEditorDialogTest, OpenedAgainTheEditorShowsTheFileAfresh) {
    Open("width=100\r\n");
    QTest::mouseClick(editor->cmdAdd(), Qt::LeftButton);
    EXPECT_TRUE(editor->LoadSkin(skinFile));
    EXPECT_EQ(Items(editor->lstCommands()), QStringList({QStringLiteral("width")}));
}

TEST_F(SkinEditorDialogTest, WindowsTextAndLfOnlyFilesLoadAndWindowsTextStaysWindowsText) {
    Open("skinname=Caf\xe9\nwidth=1\n");
    EXPECT_EQ(Items(editor->lstParams()).first(), QStringLiteral("Caf\u00e9"));
    EXPECT_EQ(Save(), "skinname=Caf\xe9\r\nwidth=1\r\n");
}

TEST_F(SkinEditorDialogTest, AHundredThousandLineSkinLoadsAndSaves) {
    QByteArray big;
    for (int i = 0; i < 100000; ++i)
        big += "label=1;2;3;4;[Title]\r\n";
    Open(big);
    EXPECT_EQ(editor->lstCommands()->count(), 100000);
    EXPECT_EQ(Save(), big);
}

TEST_F(SkinEditorDialogTest, BinaryContentAndCrOnlyLineEndsLoadAndSaveWithoutACrash) {
    QByteArray bytes = "width=1\rheight=2\r";
    for (int i = 0; i < 2048; ++i)
        bytes += static_cast<char>((i * 37) & 0xFF);
    Open(bytes);
    EXPECT_GE(editor->lstCommands()->count(), 2);
    EXPECT_EQ(editor->lstCommands()->item(0)->text(), QStringLiteral("width"));
    EXPECT_EQ(editor->lstCommands()->item(1)->text(), QStringLiteral("height"));
    const QByteArray saved = Save();
    EXPECT_TRUE(saved.startsWith("width=1\r\nheight=2\r\n"));
}

TEST_F(SkinEditorDialogTest, ASkinFileThatIsALinkIsNotWrittenAndTheEditsStay) {
    const QString target = dir.path() + QStringLiteral("/target.ini");
    Write(target, "width=1\r\n");
    ASSERT_TRUE(QFile::link(target, skinFile));
    editor = new SkinEditorDialog({.switchToCurrentSkin = [this] { ++switches; }}, forms.Access());
    ASSERT_TRUE(editor->LoadSkin(skinFile));
    QTest::mouseClick(editor->cmdAdd(), Qt::LeftButton);
    testing::internal::CaptureStderr();
    EXPECT_FALSE(editor->cmdReload_Click());
    const std::string err = testing::internal::GetCapturedStderr();
    EXPECT_NE(err.find("could not be saved"), std::string::npos) << err;
    EXPECT_EQ(Read(target), "width=1\r\n");
    EXPECT_EQ(editor->lstCommands()->count(), 2);
    EXPECT_EQ(switches, 0);
}

TEST_F(SkinEditorDialogTest, AMissingFileIsReportedAndNothingIsShown) {
    editor = new SkinEditorDialog({.switchToCurrentSkin = {}}, forms.Access());
    testing::internal::CaptureStderr();
    EXPECT_FALSE(editor->LoadSkin(dir.path() + QStringLiteral("/none.ini")));
    EXPECT_NE(testing::internal::GetCapturedStderr().find("cannot be read"), std::string::npos);
    EXPECT_FALSE(editor->isVisible());
}

TEST_F(SkinEditorDialogTest, TheBundledSkinsComeBackWithoutCommentsAndOtherwiseUnchanged) {
    for (const char* skin : {"Default", "Mini"}) {
        QFile source(QStringLiteral(PELORIN_SOURCE_DIR "/data/Skins/") + QLatin1String(skin) +
                     QStringLiteral("/skin.ini"));
        ASSERT_TRUE(source.open(QIODevice::ReadOnly));
        const QByteArray original = source.readAll();
        QByteArray expected;
        for (const QByteArray& raw : original.split('\n')) {
            const QByteArray line = raw.endsWith('\r') ? raw.chopped(1) : raw;
            if (line.isEmpty() || line.startsWith("//") || line.startsWith("'") ||
                line.startsWith("\\\\") || !line.contains('=') || line.startsWith('='))
                continue;
            expected += line + (line.endsWith('=') ? "NONE" : "") + "\r\n";
        }
        Open(original);
        EXPECT_EQ(Save(), expected) << skin;
        delete editor.data();
    }
}

} // namespace
