#pragma once

#include "dialogs/DialogForm.h"

#include <QString>
#include <functional>

class QCheckBox;
class QComboBox;
class QGroupBox;
class QLineEdit;
class QListWidget;
class QPushButton;

namespace Pelorin {

struct TextFileContent;

// frmKeyboardShortcut ("Manage Keyboard Shortcuts"): the skin's own keyboard shortcuts (kept in
// its skin.ini) and the personal ones (personal.ini in the program folder), side by side. Saving
// writes both files, the bindings last under the marker line, and reopens the current skin so
// that they are registered afresh.
class KeyboardShortcutDialog : public DialogForm {
    Q_OBJECT
public:
    struct Program {
        // The program folder, ending with "/".
        QString programFolder;
        // Closes every form and reopens the current skin.
        std::function<void()> switchToCurrentSkin;
    };

    KeyboardShortcutDialog(Program program, OpenFormsAccess forms, QWidget* parent = nullptr);
    ~KeyboardShortcutDialog() override;

    QString Name() const override { return QStringLiteral("frmKeyboardShortcut"); }

    // Fills both lists from the skin file and personal.ini and shows the dialog. False (with a
    // message) when a file cannot be read; the dialog then stays hidden.
    bool LoadAll(const QString& skinFile);
    // Writes both files. False (with a message) when one cannot be written; nothing the user
    // typed is lost then.
    bool SaveAll();

    static QString MarkerLine() {
        return QStringLiteral("'Keyboard Shortcuts below added by Keyboard Manager");
    }

    // One side of the dialog: the skin's or the personal shortcuts.
    struct Side {
        QGroupBox* frame = nullptr;
        QListWidget* shortcuts = nullptr;
        QLineEdit* keys = nullptr;
        QLineEdit* code = nullptr;
        QCheckBox* win = nullptr;
        QCheckBox* alt = nullptr;
        QCheckBox* ctrl = nullptr;
        QCheckBox* shift = nullptr;
        QComboBox* key = nullptr;
        QComboBox* runCode = nullptr;
        QPushButton* add = nullptr;
        QPushButton* remove = nullptr;
        QPushButton* send = nullptr;
    };
    Side& SkinSide() { return m_skin; }
    Side& PersonalSide() { return m_personal; }
    QPushButton* cmdSave() const { return m_cmdSave; }
    QPushButton* cmdReload() const { return m_cmdReload; }
    QPushButton* cmdCancel() const { return m_cmdCancel; }

private:
    Side BuildSide(const QString& title, const QString& text, const QString& sendCaption);
    void ConnectSide(Side& side, Side& other);
    // A file of the dialog: the skin's confined to its folder, personal.ini (missing: empty)
    // through any link; only a regular file of sane size.
    static bool ReadFile(const QString& path, bool confined, TextFileContent& content,
                         QString* error);
    QString PersonalFile() const;
    bool ReadShortcuts(const QString& path, bool confined, QListWidget* list);
    bool Rewrite(const QString& path, bool confined, const QListWidget* list);
    void ItemSelected(Side& side);
    void ModifierOrKeyClicked(Side& side);
    void TextChanged(Side& side, bool keysBox);
    void ProcessAllKey(Side& side);
    void AddNew(Side& side);
    void DeleteSelected(Side& side);
    void SendTo(Side& side, Side& other);
    void cmdSave_Click();
    void cmdReload_Click();

    Program m_program;
    QString m_skinFile;
    bool m_updating = false;
    Side m_skin;
    Side m_personal;
    QPushButton* m_cmdSave = nullptr;
    QPushButton* m_cmdReload = nullptr;
    QPushButton* m_cmdCancel = nullptr;
};

} // namespace Pelorin
