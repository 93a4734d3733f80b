#include "MenusForm.h"

#include "FormsRegistry.h"

namespace Pelorin {

MenusForm::MenusForm(FormsRegistry& forms) : m_forms(forms) {
    setObjectName(QStringLiteral("frmMenus"));
    m_forms.Add(this);
}

MenusForm::~MenusForm() {
    m_forms.Remove(this);
}

void MenusForm::Unload() {
    hide();
    m_forms.Remove(this);
    deleteLater();
}

} // namespace Pelorin
