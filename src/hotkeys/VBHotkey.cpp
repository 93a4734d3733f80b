#include "hotkeys/VBHotkey.h"

#include "base/VbError.h"
#include "hotkeys/HotkeySubclass.h"
#include "platform/MessageBox.h"

#include <QWidget>

namespace Pelorin {

namespace {

QString BooleanWord(bool value) {
    return value ? QStringLiteral("True") : QStringLiteral("False");
}

} // namespace

VBHotkey::VBHotkey(QWidget* form, QObject* parent)
    : QObject(parent), m_form(form), m_hotkey(std::make_unique<ApiHotkey>()) {}

VBHotkey::~VBHotkey() {
    Terminate();
}

void VBHotkey::Terminate() {
    if (m_terminated)
        return;
    m_terminated = true;
    // As a whole, not only this control's combination.
    HotkeySubclass::UsedCombinations().clear();
}

void VBHotkey::Change(bool& member, bool value, const char* name) {
    member = value;
    Q_EMIT propertyChanged(QLatin1String(name));
}

void VBHotkey::SetAltKey(bool on) {
    Change(m_props.AltKey, on, "AltKey");
}
void VBHotkey::SetShiftKey(bool on) {
    Change(m_props.ShiftKey, on, "ShiftKey");
}
void VBHotkey::SetCtrlKey(bool on) {
    Change(m_props.CtrlKey, on, "CtrlKey");
}
void VBHotkey::SetWinKey(bool on) {
    Change(m_props.WinKey, on, "WinKey");
}
void VBHotkey::SetVKey(int vKey) {
    m_props.VKey = vKey;
    Q_EMIT propertyChanged(QStringLiteral("VKey"));
}

quint16 VBHotkey::hAtom() const {
    if (!m_hotkey)
        throw VbError::ObjectNotSet();
    return m_hotkey->hAtom();
}

int VBHotkey::hKey() const {
    if (!m_hotkey)
        throw VbError::ObjectNotSet();
    return m_hotkey->hKey();
}

QString VBHotkey::UniqueKey() const {
    if (!m_hotkey)
        throw VbError::ObjectNotSet();
    return m_hotkey->UniqueKey();
}

void VBHotkey::ReadProperties(const PropertyBag& bag) {
    const auto read = [&bag](const char* name, const QVariant& fallback) {
        for (const auto& [key, value] : bag) {
            if (key == QLatin1String(name))
                return value;
        }
        return fallback;
    };
    const Properties defaults;
    m_props.AltKey = read("AltKey", defaults.AltKey).toBool();
    m_props.ShiftKey = read("ShiftKey", defaults.ShiftKey).toBool();
    m_props.CtrlKey = read("CtrlKey", defaults.CtrlKey).toBool();
    m_props.VKey = read("VKey", defaults.VKey).toInt();
    m_props.WinKey = read("WinKey", defaults.WinKey).toBool();
}

VBHotkey::PropertyBag VBHotkey::WriteProperties() const {
    return {
        {QStringLiteral("AltKey"), m_props.AltKey},
        {QStringLiteral("ShiftKey"), m_props.ShiftKey},
        {QStringLiteral("CtrlKey"), m_props.CtrlKey},
        {QStringLiteral("VKey"), m_props.VKey},
        {QStringLiteral("WinKey"), m_props.WinKey},
    };
}

void VBHotkey::InitTheThing() {
    const QString combination = QStringLiteral("{%1;%2;%3;%4;%5}")
                                    .arg(BooleanWord(m_props.AltKey), BooleanWord(m_props.ShiftKey),
                                         BooleanWord(m_props.CtrlKey), BooleanWord(m_props.WinKey))
                                    .arg(m_props.VKey);
    QString& used = HotkeySubclass::UsedCombinations();
    if (used.contains(combination)) {
        MessageBox::Show(QStringLiteral("Error: There was a conflict in key combinations! Please "
                                        "make sure that you fix this. The program will now "
                                        "continue to load...\r\nDebug: ") +
                             used,
                         QStringLiteral("Error!"), MessageBox::Icon::Critical);
        return;
    }
    used += combination;
    if (!m_userMode || m_form == nullptr || !m_hotkey)
        return;
    const WindowHandle handle = m_form->window()->winId();
    if (handle == 0)
        return;
    m_ownerHandle = handle;
    m_hotkey->SetAltKey(m_props.AltKey);
    m_hotkey->SetShiftKey(m_props.ShiftKey);
    m_hotkey->SetControlKey(m_props.CtrlKey);
    m_hotkey->SetWinKey(m_props.WinKey);
    m_hotkey->SetVKey(m_props.VKey);
    m_hotkey->Sethwnd(handle);
    m_hotkey->Register();
    HotkeySubclass::SubclassWindow(handle);
    HotkeySubclass::AddActiveHotkey(m_hotkey->UniqueKey(), this);
}

void VBHotkey::StopHotkey() {
    if (m_ownerHandle != 0)
        HotkeySubclass::UnsubclassWindow(m_ownerHandle);
    if (m_hotkey) {
        m_hotkey->Unregister();
        m_hotkey.reset();
    }
}

void VBHotkey::RaiseError(const QString& source, const QString& description) {
    Q_EMIT ErrorOccured(source, description);
}

void VBHotkey::CheckHotkey(int vk, int modifiers) {
    if (!m_hotkey)
        return;
    ApiHotkey pressed;
    pressed.SetVKey(vk);
    pressed.SetModifier(modifiers);
    if (pressed.MatchedKey(*m_hotkey))
        Q_EMIT HotkeyPressed();
}

} // namespace Pelorin
