#include "FormsRegistry.h"

namespace Pelorin {

void FormsRegistry::Add(Form* form) {
    if (form != nullptr && !m_forms.contains(form))
        m_forms.append(form);
}

void FormsRegistry::Remove(Form* form) {
    m_forms.removeAll(form);
}

bool FormsRegistry::Contains(const Form* form) const {
    for (const Form* f : m_forms) {
        if (f == form)
            return true;
    }
    return false;
}

int FormsRegistry::CountNamed(const QString& name) const {
    int count = 0;
    for (const Form* f : m_forms) {
        if (f->Name() == name)
            ++count;
    }
    return count;
}

OpenFormsAccess FormsRegistry::Access() {
    return {
        .Forms = [this] { return Forms(); },
        .Add = [this](Form* form) { Add(form); },
        .Remove = [this](Form* form) { Remove(form); },
    };
}

} // namespace Pelorin
