// The keyboard manager (offscreen) driven through its controls, over real skin files and a real
// personal.ini in a temporary program folder.
#include "dialogs/KeyboardShortcutDialog.h"

#include "app/FormsRegistry.h"
#include "base/TextFile.h"

#include <QCheckBox>
#include <QComboBox>
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

const QByteArray Marker = "'Keyboard Shortcuts below added by Keyboard Manager";

class KeyboardShortcutDialogTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(dir.isValid());
        programFolder = dir.path() + QStringLiteral("/program/");
        skinFolder = programFolder + QStringLiteral("Skins/Keys/");
        ASSERT_TRUE(QDir().mkpath(skinFolder));
        skinFile = skinFolder + QStringLiteral("skin.ini");
    }
    void TearDown() override {
        delete dialog.data();
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
    QString Personal() const { return programFolder + QStringLiteral("personal.ini"); }

    KeyboardShortcutDialog& Open() {
        dialog = new KeyboardShortcutDialog(
            {.programFolder = programFolder, .switchToCurrentSkin = [this] { ++switches; }},
            forms.Access());
        EXPECT_TRUE(dialog->LoadAll(skinFile));
        return *dialog;
    }

    static QStringList Items(const QListWidget* list) {
        QStringList items;
        for (int i = 0; i < list->count(); ++i)
            items.append(list->item(i)->text());
        return items;
    }

    static void Click(QAbstractButton* button) {
        QTest::mouseClick(button, Qt::LeftButton, {}, QPoint(6, button->height() / 2));
    }
    static void Choose(QComboBox* combo, const QString& text) {
        const int index = combo->findText(text);
        ASSERT_GE(index, 0) << text.toStdString();
        combo->setCurrentIndex(index);
        Q_EMIT combo->activated(index);
    }

    QTemporaryDir dir;
    QString programFolder;
    QString skinFolder;
    QString skinFile;
    FormsRegistry forms;
    QPointer<KeyboardShortcutDialog> dialog;
    int switches = 0;
};

TEST_F(KeyboardShortcutDialogTest, LoadingListsTheBindingsOfTheSkinAndOfPersonalIni) {
    Write(skinFile, "width=100\r\nkeyboardshortcut=WIN+P;playpause\r\nKeyboardShortcut=ALT+N;"
                    "nexttrack\r\nheight=40\r\n");
    Write(Personal(), "keyboardshortcut=CONTROL+ALT+S;stop\r\n");
    KeyboardShortcutDialog& keys = Open();
    EXPECT_EQ(keys.windowTitle(), QStringLiteral("Manage Keyboard Shortcuts"));
    EXPECT_TRUE(keys.isVisible());
    EXPECT_EQ(Items(keys.SkinSide().shortcuts),
              QStringList({QStringLiteral("WIN+P;playpause"), QStringLiteral("ALT+N;nexttrack")}));
    EXPECT_EQ(Items(keys.PersonalSide().shortcuts),
              QStringList({QStringLiteral("CONTROL+ALT+S;stop")}));
}

TEST_F(KeyboardShortcutDialogTest, TheKeyListHas66SortedItemsWithoutEnterAndStartsAtZero) {
    Write(skinFile, "width=100\r\n");
    KeyboardShortcutDialog& keys = Open();
    for (auto* side : {&keys.SkinSide(), &keys.PersonalSide()}) {
        EXPECT_EQ(side->key->count(), 66);
        EXPECT_EQ(side->key->currentText(), QStringLiteral("0"));
        EXPECT_EQ(side->key->findText(QStringLiteral("Enter")), -1);
        EXPECT_EQ(side->runCode->count(), 32);
        EXPECT_EQ(side->runCode->itemText(0), QStringLiteral("1star"));
        EXPECT_EQ(side->runCode->itemText(31), QStringLiteral("volumeup"));
    }
    EXPECT_EQ(keys.SkinSide().key->itemText(10), QStringLiteral("A"));
}

TEST_F(KeyboardShortcutDialogTest, TickingWinAndShiftWithKeyPGivesShiftWinP) {
    Write(skinFile, "width=100\r\n");
    KeyboardShortcutDialog& keys = Open();
    Choose(keys.SkinSide().key, QStringLiteral("P"));
    Click(keys.SkinSide().win);
    Click(keys.SkinSide().shift);
    EXPECT_EQ(keys.SkinSide().keys->text(), QStringLiteral("Shift+Win+P"));
    Click(keys.SkinSide().ctrl);
    Click(keys.SkinSide().alt);
    EXPECT_EQ(keys.SkinSide().keys->text(), QStringLiteral("Shift+Control+Alt+Win+P"));
}

TEST_F(KeyboardShortcutDialogTest, AddNewWithNothingSelectedAndEmptyBoxesAddsWinPPlayPause) {
    Write(skinFile, "width=100\r\n");
    KeyboardShortcutDialog& keys = Open();
    Click(keys.PersonalSide().add);
    EXPECT_EQ(Items(keys.PersonalSide().shortcuts),
              QStringList({QStringLiteral("WIN+P;PlayPause")}));
    EXPECT_EQ(keys.PersonalSide().shortcuts->currentRow(), 0) << "the new item is selected";
    EXPECT_EQ(keys.PersonalSide().keys->text(), QStringLiteral("WIN+P"));
}

TEST_F(KeyboardShortcutDialogTest, AddNewCopiesTheSelectedItemOrAddsTheBoxesWithPlayPause) {
    Write(skinFile, "keyboardshortcut=ALT+A;stop\r\n");
    KeyboardShortcutDialog& keys = Open();
    keys.SkinSide().shortcuts->setCurrentRow(0);
    Click(keys.SkinSide().add);
    EXPECT_EQ(Items(keys.SkinSide().shortcuts),
              QStringList({QStringLiteral("ALT+A;stop"), QStringLiteral("ALT+A;stop")}));
    keys.SkinSide().shortcuts->setCurrentRow(-1);
    keys.SkinSide().keys->setText(QStringLiteral("ALT+B"));
    keys.SkinSide().code->clear();
    Click(keys.SkinSide().add);
    EXPECT_EQ(Items(keys.SkinSide().shortcuts).last(), QStringLiteral("ALT+B;PlayPause"));
}

TEST_F(KeyboardShortcutDialogTest, SelectingAnItemFillsTheBoxesAndEditingThemChangesTheItem) {
    Write(skinFile, "keyboardshortcut=WIN+SHIFT+P;playpause\r\n");
    KeyboardShortcutDialog& keys = Open();
    KeyboardShortcutDialog::Side& side = keys.SkinSide();
    side.shortcuts->setCurrentRow(0);
    EXPECT_EQ(side.keys->text(), QStringLiteral("WIN+SHIFT+P"));
    EXPECT_EQ(side.code->text(), QStringLiteral("playpause"));
    EXPECT_TRUE(side.win->isChecked());
    EXPECT_TRUE(side.shift->isChecked());
    EXPECT_FALSE(side.alt->isChecked());
    EXPECT_EQ(side.key->currentText(), QStringLiteral("P"));
    QTest::keyClicks(side.code, QStringLiteral("x"));
    EXPECT_EQ(side.shortcuts->item(0)->text(), QStringLiteral("WIN+SHIFT+P;playpausex"));
    Choose(side.runCode, QStringLiteral("nexttrack"));
    EXPECT_EQ(side.shortcuts->item(0)->text(), QStringLiteral("WIN+SHIFT+P;nexttrack"));
}

TEST_F(KeyboardShortcutDialogTest, SendToPersonalMovesTheSelectedItemAndDeleteRemovesOne) {
    Write(skinFile, "keyboardshortcut=ALT+A;stop\r\nkeyboardshortcut=ALT+B;play\r\n");
    KeyboardShortcutDialog& keys = Open();
    keys.SkinSide().shortcuts->setCurrentRow(0);
    Click(keys.SkinSide().send);
    EXPECT_EQ(Items(keys.PersonalSide().shortcuts), QStringList({QStringLiteral("ALT+A;stop")}));
    EXPECT_EQ(Items(keys.SkinSide().shortcuts), QStringList({QStringLiteral("ALT+B;play")}));
    keys.PersonalSide().shortcuts->setCurrentRow(0);
    Click(keys.PersonalSide().send);
    EXPECT_EQ(keys.SkinSide().shortcuts->count(), 2);
    keys.SkinSide().shortcuts->setCurrentRow(1);
    Click(keys.SkinSide().remove);
    EXPECT_EQ(Items(keys.SkinSide().shortcuts), QStringList({QStringLiteral("ALT+B;play")}));
}

TEST_F(KeyboardShortcutDialogTest, BindingsMoveToTheEndAfterSavingAndOtherLinesKeepTheirOrder) {
    Write(skinFile, "width=100\r\nkeyboardshortcut=WIN+P;playpause\r\nheight=40\r\n// note\r\n");
    Write(Personal(), "keyboardshortcut=ALT+S;stop\r\nrememberpos=True\r\n");
    Click(Open().cmdSave());
    EXPECT_EQ(Read(skinFile), "width=100\r\nheight=40\r\n// note\r\n" + Marker +
                                  "\r\nkeyboardshortcut=WIN+P;playpause\r\n");
    EXPECT_EQ(Read(Personal()),
              "rememberpos=True\r\n" + Marker + "\r\nkeyboardshortcut=ALT+S;stop\r\n");
    EXPECT_EQ(switches, 1) << "the current skin is reopened";
    EXPECT_TRUE(dialog.isNull() || !dialog->isVisible());
}

TEST_F(KeyboardShortcutDialogTest, SavingTwiceLeavesOneMarkerLineAndTheSameBindings) {
    Write(skinFile, "width=100\r\nkeyboardshortcut=WIN+P;playpause\r\n");
    Click(Open().cmdSave());
    const QByteArray once = Read(skinFile);
    const QByteArray personalOnce = Read(Personal());
    delete dialog.data();
    Click(Open().cmdSave());
    EXPECT_EQ(Read(skinFile), once);
    EXPECT_EQ(Read(Personal()), personalOnce);
    EXPECT_EQ(once.count(Marker), 1);
    EXPECT_EQ(personalOnce, "\r\n" + Marker + "\r\n") << "an empty file keeps its empty line";
}

TEST_F(KeyboardShortcutDialogTest, CancelWritesNothing) {
    const QByteArray original = "keyboardshortcut=WIN+P;playpause\r\nwidth=1\r\n";
    Write(skinFile, original);
    Click(Open().SkinSide().add);
    Click(dialog->cmdCancel());
    EXPECT_EQ(Read(skinFile), original);
    EXPECT_EQ(Read(Personal()), "(missing)");
    EXPECT_EQ(switches, 0);
}

TEST_F(KeyboardShortcutDialogTest, ReloadShortcutsReadsBothFilesAgain) {
    Write(skinFile, "keyboardshortcut=WIN+P;playpause\r\n");
    KeyboardShortcutDialog& keys = Open();
    Click(keys.SkinSide().add);
    ASSERT_EQ(keys.SkinSide().shortcuts->count(), 2);
    Click(keys.cmdReload());
    EXPECT_EQ(Items(keys.SkinSide().shortcuts), QStringList({QStringLiteral("WIN+P;playpause")}));
}

TEST_F(KeyboardShortcutDialogTest, APersonalIniThatIsAFolderIsReportedAndTheDialogStaysClosed) {
    Write(skinFile, "width=1\r\n");
    ASSERT_TRUE(QDir().mkpath(Personal()));
    dialog = new KeyboardShortcutDialog({.programFolder = programFolder, .switchToCurrentSkin = {}},
                                        forms.Access());
    testing::internal::CaptureStderr();
    EXPECT_FALSE(dialog->LoadAll(skinFile));
    const std::string err = testing::internal::GetCapturedStderr();
    EXPECT_NE(err.find("personal.ini cannot be read"), std::string::npos) << err;
    EXPECT_FALSE(dialog->isVisible());
}

TEST_F(KeyboardShortcutDialogTest, ASkinFileThatIsALinkIsNotWrittenAndTheEditsStay) {
    const QString real = dir.path() + QStringLiteral("/elsewhere.ini");
    Write(real, "keyboardshortcut=WIN+P;playpause\r\n");
    Write(skinFolder + QStringLiteral("target.ini"), "keyboardshortcut=WIN+P;playpause\r\n");
    ASSERT_TRUE(QFile::link(skinFolder + QStringLiteral("target.ini"), skinFile));
    KeyboardShortcutDialog& keys = Open();
    Click(keys.SkinSide().add);
    testing::internal::CaptureStderr();
    Click(keys.cmdSave());
    const std::string err = testing::internal::GetCapturedStderr();
    EXPECT_NE(err.find("could not be saved"), std::string::npos) << err;
    EXPECT_EQ(Read(skinFolder + QStringLiteral("target.ini")),
              "keyboardshortcut=WIN+P;playpause\r\n");
    ASSERT_FALSE(dialog.isNull());
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_EQ(keys.SkinSide().shortcuts->count(), 2) << "the user's edits are kept";
    EXPECT_EQ(switches, 0);
}

TEST_F(KeyboardShortcutDialogTest, TheBundledSkinsComeBackWithTheirBindingsUnderTheMarker) {
    for (const char* skin : {"Default", "Mini"}) {
        QFile source(QStringLiteral(PELORIN_SOURCE_DIR "/data/Skins/") + QLatin1String(skin) +
                     QStringLiteral("/skin.ini"));
        ASSERT_TRUE(source.open(QIODevice::ReadOnly));
        const QByteArray original = source.readAll();
        Write(skinFile, original);
        QFile::remove(Personal());
        Click(Open().cmdSave());
        // What the manager writes: every other line in order, then the marker and the bindings.
        QByteArray expected;
        QByteArray bindings;
        for (const QByteArray& line : original.split('\n')) {
            if (line.isEmpty())
                continue;
            if (line.toLower().startsWith("keyboardshortcut"))
                bindings += line + '\n';
            else
                expected += line + '\n';
        }
        expected += Marker + "\r\n" + bindings;
        EXPECT_EQ(Read(skinFile), expected) << skin;
        delete dialog.data();
    }
}

} // namespace
