#pragma once

#include "dialogs/DialogForm.h"

#include <QString>

class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace Pelorin {

class Settings;

// frmOptions: three switches of the settings store and the file openwithitunes.opt. The tray
// switch is saved as "PelorinTray" but read from "PelorinTrayIcon", so it opens unticked after
// a save unless something else wrote that key; neither key hides the tray icon.
class OptionsDialog : public DialogForm {
    Q_OBJECT
public:
    // `programFolder` ends with "/". Registers itself and reads the switches.
    OptionsDialog(Settings& settings, QString programFolder, OpenFormsAccess forms,
                  QWidget* parent = nullptr);
    ~OptionsDialog() override;

    QString Name() const override { return QStringLiteral("frmOptions"); }

    // "Save Settings": the three switches, openwithitunes.opt, and the dialog closes. When a
    // write fails the user is told and the dialog stays open with their choices.
    void cmdSave_Click();

    QCheckBox* chkCloseiTunes() const { return m_chkCloseiTunes; }
    QCheckBox* chkOpenWithItunes() const { return m_chkOpenWithItunes; }
    QCheckBox* chkPelorinIcon() const { return m_chkPelorinIcon; }
    QLineEdit* txtLyrics() const { return m_txtLyrics; }
    QLabel* Label1() const { return m_label1; }
    QPushButton* cmdSave() const { return m_cmdSave; }

    static QString OpenWithPlayerFile() { return QStringLiteral("openwithitunes.opt"); }

private:
    void FormLoad();

    Settings& m_settings;
    QString m_programFolder;
    QCheckBox* m_chkCloseiTunes = nullptr;
    QCheckBox* m_chkOpenWithItunes = nullptr;
    QCheckBox* m_chkPelorinIcon = nullptr;
    QLineEdit* m_txtLyrics = nullptr;
    QLabel* m_label1 = nullptr;
    QPushButton* m_cmdSave = nullptr;
};

} // namespace Pelorin
