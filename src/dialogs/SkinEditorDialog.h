#pragma once

#include "base/TextFile.h"
#include "dialogs/DialogForm.h"

#include <QString>
#include <functional>

class QLineEdit;
class QListWidget;
class QPushButton;

namespace Pelorin {

// frmSkinEditor ("Skin Configuration Editor"): a skin file as two parallel lists, parameter names
// and values, edited one line at a time and written back whole. Comment lines and empty lines are
// not kept by the editor, and a line without "=" is dropped; an empty value is shown and saved
// as "NONE".
class SkinEditorDialog : public DialogForm {
    Q_OBJECT
public:
    struct Program {
        // Closes every form and reopens the current skin.
        std::function<void()> switchToCurrentSkin;
    };

    SkinEditorDialog(Program program, OpenFormsAccess forms, QWidget* parent = nullptr);
    ~SkinEditorDialog() override;

    QString Name() const override { return QStringLiteral("frmSkinEditor"); }

    // Loads the file into the lists (afresh) and shows the editor; false, with a message, when
    // the file cannot be read.
    bool LoadSkin(const QString& skinFile);
    // One file line as a pair of list items.
    void ProcessLine(const QString& line);
    // "Save and Reload Skin": the file written whole, then the current skin reopened. False,
    // with a message, when the file could not be written; the lists stay as they are.
    bool cmdReload_Click();
    void cmdAdd_Click();
    void cmdRemvoe_Click();

    QListWidget* lstCommands() const { return m_lstCommands; }
    QListWidget* lstParams() const { return m_lstParams; }
    QLineEdit* txtLine() const { return m_txtLine; }
    QPushButton* cmdAdd() const { return m_cmdAdd; }
    QPushButton* cmdRemvoe() const { return m_cmdRemvoe; }
    QPushButton* cmdReload() const { return m_cmdReload; }

    static QString CommentItem() { return QStringLiteral("  comment"); }
    static QString EmptyValue() { return QStringLiteral("NONE"); }

private:
    // The pair a line gives ("NONE" for an empty value); false for a line that loading drops:
    // no "=", or an empty name, and no comment.
    static bool Split(const QString& line, QString& command, QString& param);
    static bool IsComment(const QString& line);
    void Select(int row);
    void txtLine_Change();

    Program m_program;
    QString m_skinFile;
    TextEncoding m_encoding = TextEncoding::Utf8;
    bool m_hadBom = false;
    bool m_updating = false;
    QListWidget* m_lstCommands = nullptr;
    QListWidget* m_lstParams = nullptr;
    QLineEdit* m_txtLine = nullptr;
    QPushButton* m_cmdAdd = nullptr;
    QPushButton* m_cmdRemvoe = nullptr;
    QPushButton* m_cmdReload = nullptr;
};

} // namespace Pelorin
