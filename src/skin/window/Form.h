#pragma once

#include <QString>

class QWidget;

namespace Pelorin {

// Anything that lives in the open-forms registry: skin windows, the hidden menu form, dialogs.
// The registry walks forms by name and tag (single-instance rule, FrmMainCount) and unloads
// them in creation order.
class Form {
public:
    virtual ~Form() = default;

    // The form's kind: "frmMain" for skin windows, "frmMenus", "frmOptions", ...
    virtual QString Name() const = 0;
    // The form's Tag (a skin window's skin name); empty for forms that have none.
    virtual QString Tag() const { return {}; }
    // Runs the form's unload sequence. The form leaves the registry when it is done.
    virtual void Unload() = 0;
    virtual QWidget* Widget() = 0;
};

} // namespace Pelorin
