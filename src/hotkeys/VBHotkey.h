#pragma once

#include "hotkeys/ApiHotkey.h"

#include <QObject>
#include <QPointer>
#include <QString>
#include <QVariant>
#include <memory>
#include <utility>

class QWidget;

namespace Pelorin {

// A hotkey control on a skin window: the combination wanted, its start (conflict check,
// registration, the window's procedure) and the event a press raises.
class VBHotkey : public QObject {
    Q_OBJECT
public:
    // The saved properties, in the order they are read and written.
    struct Properties {
        bool AltKey = false;
        bool ShiftKey = false;
        bool CtrlKey = false;
        int VKey = 65;
        bool WinKey = true;
    };
    using PropertyBag = QList<std::pair<QString, QVariant>>;

    // `form`: the window that holds the control; its native window receives the hotkey. A new
    // control wants Win and the key with code 65.
    explicit VBHotkey(QWidget* form, QObject* parent = nullptr);
    ~VBHotkey() override;
    VBHotkey(const VBHotkey&) = delete;
    VBHotkey& operator=(const VBHotkey&) = delete;

    bool AltKey() const { return m_props.AltKey; }
    void SetAltKey(bool on);
    bool ShiftKey() const { return m_props.ShiftKey; }
    void SetShiftKey(bool on);
    bool CtrlKey() const { return m_props.CtrlKey; }
    void SetCtrlKey(bool on);
    bool WinKey() const { return m_props.WinKey; }
    void SetWinKey(bool on);
    int VKey() const { return m_props.VKey; }
    void SetVKey(int vKey);

    // Forwarded to the hotkey object; VbError 91 once StopHotkey released it.
    quint16 hAtom() const;
    int hKey() const;
    QString UniqueKey() const;
    // The window the control registered for; 0 when it was never started.
    WindowHandle OwnerHandle() const { return m_ownerHandle; }
    // Null once stopped.
    const ApiHotkey* Hotkey() const { return m_hotkey.get(); }

    // Property bag: every name with its default when the bag lacks it.
    void ReadProperties(const PropertyBag& bag);
    PropertyBag WriteProperties() const;

    // A control in a design environment registers nothing when started.
    void SetUserMode(bool userMode) { m_userMode = userMode; }

    // Starts the hotkey: a combination started before in this process shows the conflict message
    // and stays silent; otherwise it is registered for the owning window, the window's procedure
    // is replaced and the control is listed for dispatch.
    void InitTheThing();
    // Restores the window's procedure, unregisters and releases the hotkey object for good.
    void StopHotkey();
    // Raises ErrorOccured (a failed registration).
    void RaiseError(const QString& source, const QString& description);
    // Raises HotkeyPressed when the combination is this control's.
    void CheckHotkey(int vk, int modifiers);
    // The control goes away with its window: every started combination is forgotten.
    void Terminate();

Q_SIGNALS:
    void HotkeyPressed();
    void ErrorOccured(const QString& source, const QString& description);
    void propertyChanged(const QString& name);

private:
    void Change(bool& member, bool value, const char* name);

    QPointer<QWidget> m_form;
    Properties m_props;
    WindowHandle m_ownerHandle = 0;
    std::unique_ptr<ApiHotkey> m_hotkey;
    bool m_userMode = true;
    bool m_terminated = false;
};

} // namespace Pelorin
