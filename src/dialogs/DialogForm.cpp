#include "dialogs/DialogForm.h"

#include <QCloseEvent>

namespace Pelorin {

DialogForm::DialogForm(OpenFormsAccess forms, QWidget* parent)
    : QDialog(parent), m_forms(std::move(forms)) {}

DialogForm::~DialogForm() {
    if (m_forms.Remove)
        m_forms.Remove(this);
}

void DialogForm::Register() {
    if (m_forms.Add)
        m_forms.Add(this);
}

void DialogForm::Unload() {
    if (m_unloaded)
        return;
    m_unloaded = true;
    hide();
    if (m_forms.Remove)
        m_forms.Remove(this);
    deleteLater();
}

void DialogForm::closeEvent(QCloseEvent* event) {
    // Closing it any other way than its own buttons: nothing is saved.
    event->accept();
    Unload();
}

} // namespace Pelorin
