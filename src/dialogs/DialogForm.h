#pragma once

#include "skin/window/Form.h"
#include "skin/window/SkinWindowServices.h"

#include <QDialog>

namespace Pelorin {

// A dialog that is a form of the open-forms registry: "Quit" and a skin switch unload it with the
// windows. Unloading hides it, takes it out of the registry and deletes it later; closing it from
// the window system unloads it too.
class DialogForm : public QDialog, public Form {
    Q_OBJECT
public:
    ~DialogForm() override;

    void Unload() override;
    QWidget* Widget() override { return this; }

protected:
    DialogForm(OpenFormsAccess forms, QWidget* parent);
    // Called once the derived dialog is complete, so the registry never sees half a form.
    void Register();
    void closeEvent(QCloseEvent* event) override;

private:
    OpenFormsAccess m_forms;
    bool m_unloaded = false;
};

} // namespace Pelorin
