#pragma once

#include "skin/SkinModel.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>
#include <functional>

class QWidget;

namespace Pelorin {

class VBHotkey;

// A skin window's keyboard shortcuts: one hotkey control per binding of its KeyShortcuts,
// configured from the key specification, started after the skin has loaded, running the
// binding's code when pressed and stopped when the window closes.
class KeyboardShortcuts final : public QObject {
    Q_OBJECT
public:
    // What a press runs: binding `index`'s code on the window, as the window's variable.
    using RunBinding = std::function<void(int index)>;

    // `form` is the skin window; element 0 exists from the start, with no modifier and the key
    // with code 37 (the left arrow).
    KeyboardShortcuts(QWidget& form, RunBinding runBinding);
    ~KeyboardShortcuts() override;

    // Applies one upper-cased key name to element `controlNum`: a modifier name switches that
    // modifier on; a key name, "NUMPAD<n>", "F<n>", a number or a single character sets the key.
    // A name that is none of these changes nothing. May throw VbError (Overflow) for numbers
    // beyond a key code.
    void AddKey(int controlNum, const QString& keyName);
    // One hotkey per binding (the spare record at the end excluded), started in order; each
    // may show the conflict message. May throw VbError.
    void ProcessKeyShortcuts(const QList<KeyShortcut>& shortcuts);
    // Element `index` was pressed.
    void VBHotkey_HotkeyPressed(int index);
    // Stops every element, lets the event loop run four times (stopping early when `alive`
    // turns false) and lets the controls go.
    void CloseAllHotkeys(const std::function<bool()>& alive);

    // The control array: element 0 and one more per binding after the first.
    int Count() const { return static_cast<int>(m_controls.size()); }
    VBHotkey* Control(int index) const;

private:
    VBHotkey* Load(int index);

    QWidget& m_form;
    RunBinding m_runBinding;
    QList<QPointer<VBHotkey>> m_controls;
};

// The user's personal file, "<program folder>/personal.ini": when the window being loaded is the
// only skin window, each of its lines goes to `processLine` as if it were a line of the skin.
// A missing file counts as empty; one that cannot be read is reported to `report` and loading
// goes on.
void CheckStartPersonal(int skinWindowCount, const QString& programFolder,
                        const std::function<void(const QString& line)>& processLine,
                        const std::function<void(const QString& message)>& report);

// The personal file's name in the program folder.
QString PersonalFileName();

} // namespace Pelorin
