// The options dialog (offscreen) driven through its controls, over a real settings file and a
// real program folder in a temporary folder.
#include "dialogs/OptionsDialog.h"

#include "app/FormsRegistry.h"
#include "base/Settings.h"
#include "base/TextFile.h"

#include <QCheckBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>
#include <memory>

using namespace Pelorin;

namespace {

class OptionsDialogTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(dir.isValid());
        programFolder = dir.path() + QStringLiteral("/program/");
        ASSERT_TRUE(QDir().mkpath(programFolder));
        settings = std::make_unique<Settings>(dir.path() + QStringLiteral("/Pelorin.conf"));
    }
    void TearDown() override {
        delete dialog.data();
        for (int i = 0; i < 3; ++i)
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    OptionsDialog& Open() {
        delete dialog.data();
        dialog = new OptionsDialog(*settings, programFolder, forms.Access());
        dialog->show();
        return *dialog;
    }

    // A click on the box itself (a check box in a layout is wider than its box and text).
    static void Click(QAbstractButton* button) {
        QTest::mouseClick(button, Qt::LeftButton, {}, QPoint(6, button->height() / 2));
        QCoreApplication::processEvents();
    }

    QString OptFile() const {
        TextFileContent content;
        if (!TextFile::Read(programFolder + QStringLiteral("openwithitunes.opt"), content))
            return QStringLiteral("(missing)");
        return content.Lines.join(u'|');
    }

    QTemporaryDir dir;
    QString programFolder;
    std::unique_ptr<Settings> settings;
    FormsRegistry forms;
    QPointer<OptionsDialog> dialog;
};

TEST_F(OptionsDialogTest, WithNoStoredSettingsBothPlayerBoxesAreTickedAndTheTrayBoxIsNot) {
    OptionsDialog& options = Open();
    EXPECT_TRUE(options.chkCloseiTunes()->isChecked());
    EXPECT_TRUE(options.chkOpenWithItunes()->isChecked());
    EXPECT_FALSE(options.chkPelorinIcon()->isChecked());
}

TEST_F(OptionsDialogTest, TheCaptionsNameThePlayer) {
    OptionsDialog& options = Open();
    EXPECT_EQ(options.windowTitle(), QStringLiteral("Options"));
    EXPECT_EQ(options.chkCloseiTunes()->text(), QStringLiteral("Close Player On Exit"));
    EXPECT_EQ(options.chkOpenWithItunes()->text(), QStringLiteral("Open Pelorin with Player"));
    EXPECT_EQ(options.chkPelorinIcon()->text(), QStringLiteral("Pelorin Tray Icon"));
    EXPECT_EQ(options.Label1()->text(),
              QStringLiteral("For this feature, Pelorin must be installed (see Pelorin Help)."));
    EXPECT_EQ(options.cmdSave()->text(), QStringLiteral("Save Settings"));
    EXPECT_EQ(options.txtLyrics()->text(),
              QDir::toNativeSeparators(programFolder + QStringLiteral("Lyrics/")));
}

TEST_F(OptionsDialogTest, TickingTheTrayBoxAndSavingThenReopeningShowsItUntickedAgain) {
    Click(Open().chkPelorinIcon());
    ASSERT_TRUE(dialog->chkPelorinIcon()->isChecked());
    Click(dialog->cmdSave());
    EXPECT_EQ(settings->GetSetting(Settings::PelorinTray, QString()), QStringLiteral("1"));
    EXPECT_FALSE(Open().chkPelorinIcon()->isChecked()) << "read back from PelorinTrayIcon";
}

TEST_F(OptionsDialogTest, TheTrayBoxOpensTickedWhenPelorinTrayIconHoldsOne) {
    settings->SaveSetting(Settings::PelorinTrayIcon, QStringLiteral("1"));
    EXPECT_TRUE(Open().chkPelorinIcon()->isChecked());
}

TEST_F(OptionsDialogTest, SavingWithOpenWithPlayerUntickedWritesZeroToTheOptFile) {
    Click(Open().chkOpenWithItunes());
    Click(dialog->cmdSave());
    EXPECT_EQ(OptFile(), QStringLiteral("0"));
    EXPECT_EQ(settings->GetSetting(Settings::OpenPelorinWithiTunes, QString()),
              QStringLiteral("0"));
}

TEST_F(OptionsDialogTest, SavingWritesTheThreeSwitchesAndTheOptFileAndClosesTheDialog) {
    Click(Open().chkCloseiTunes());
    Click(dialog->cmdSave());
    EXPECT_EQ(settings->GetSetting(Settings::CloseiTunesOnExit, QString()), QStringLiteral("0"));
    EXPECT_EQ(settings->GetSetting(Settings::OpenPelorinWithiTunes, QString()),
              QStringLiteral("1"));
    EXPECT_EQ(settings->GetSetting(Settings::PelorinTray, QString()), QStringLiteral("0"));
    EXPECT_EQ(OptFile(), QStringLiteral("1"));
    EXPECT_TRUE(dialog.isNull() || dialog->isHidden());
    EXPECT_EQ(forms.CountNamed(QStringLiteral("frmOptions")), 0);
}

TEST_F(OptionsDialogTest, ClosingTheDialogAnyOtherWaySavesNothing) {
    Click(Open().chkCloseiTunes());
    dialog->close();
    EXPECT_EQ(settings->GetSetting(Settings::CloseiTunesOnExit, QStringLiteral("unset")),
              QStringLiteral("unset"));
    EXPECT_EQ(OptFile(), QStringLiteral("(missing)"));
    EXPECT_EQ(forms.CountNamed(QStringLiteral("frmOptions")), 0);
}

TEST_F(OptionsDialogTest, TheDialogIsAFormThatQuitUnloads) {
    Open();
    EXPECT_EQ(forms.CountNamed(QStringLiteral("frmOptions")), 1);
    for (Form* form : forms.Forms())
        form->Unload();
    EXPECT_EQ(forms.Count(), 0);
}

TEST_F(OptionsDialogTest, AnOptFileThatCannotBeWrittenIsReportedAndTheDialogKeepsTheChoices) {
    // The program folder is a file: nothing can be written inside it.
    QFile blocker(dir.path() + QStringLiteral("/blocked"));
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    blocker.close();
    programFolder = dir.path() + QStringLiteral("/blocked/");
    Click(Open().chkOpenWithItunes());
    testing::internal::CaptureStderr();
    Click(dialog->cmdSave());
    const std::string err = testing::internal::GetCapturedStderr();
    EXPECT_NE(err.find("openwithitunes.opt could not be written"), std::string::npos) << err;
    ASSERT_FALSE(dialog.isNull());
    EXPECT_TRUE(dialog->isVisible()) << "the dialog stays open";
    EXPECT_FALSE(dialog->chkOpenWithItunes()->isChecked()) << "with the user's choice";
}

TEST_F(OptionsDialogTest, ASettingsFileThatCannotBeWrittenIsReported) {
    QFile blocker(dir.path() + QStringLiteral("/notafolder"));
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    blocker.close();
    settings = std::make_unique<Settings>(dir.path() + QStringLiteral("/notafolder/Pelorin.conf"));
    Open();
    testing::internal::CaptureStderr();
    Click(dialog->cmdSave());
    const std::string err = testing::internal::GetCapturedStderr();
    EXPECT_NE(err.find("The settings could not be written"), std::string::npos) << err;
    ASSERT_FALSE(dialog.isNull());
    EXPECT_TRUE(dialog->isVisible());
}

} // namespace
