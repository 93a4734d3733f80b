#pragma once

#include "skin/window/Form.h"
#include "skin/window/SkinWindowServices.h"

#include <QList>

namespace Pelorin {

// The process-wide collection of loaded forms, in creation order. One owner (the shell) creates
// it and passes it to whoever walks it.
class FormsRegistry {
public:
    void Add(Form* form);
    // Takes the form out; a form that is not registered is ignored.
    void Remove(Form* form);
    bool Contains(const Form* form) const;

    // A snapshot: unloading forms while walking it is safe.
    QList<Form*> Forms() const { return m_forms; }
    int Count() const { return static_cast<int>(m_forms.size()); }
    // Forms whose Name() equals the given kind (case-sensitive, as form names are).
    int CountNamed(const QString& name) const;
    // The registry as a form that registers itself uses it.
    OpenFormsAccess Access();

private:
    QList<Form*> m_forms;
};

} // namespace Pelorin
