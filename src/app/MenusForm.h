#pragma once

#include "skin/window/Form.h"

#include <QWidget>

namespace Pelorin {

class FormsRegistry;

// The hidden form that lives beside the skin windows for the whole run. The tray icon and the
// pop-up menu hang off it.
class MenusForm : public QWidget, public Form {
    Q_OBJECT
public:
    explicit MenusForm(FormsRegistry& forms);
    ~MenusForm() override;

    QString Name() const override { return QStringLiteral("frmMenus"); }
    void Unload() override;
    QWidget* Widget() override { return this; }

private:
    FormsRegistry& m_forms;
};

} // namespace Pelorin
