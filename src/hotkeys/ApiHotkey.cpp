#include "hotkeys/ApiHotkey.h"

#include "base/TextRules.h"
#include "hotkeys/GlobalAtoms.h"
#include "hotkeys/HotkeySubclass.h"
#include "hotkeys/HotkeySystem.h"
#include "hotkeys/VBHotkey.h"

namespace Pelorin {

bool ApiHotkey::MatchedKey(const ApiHotkey& testKey) const {
    return AltKey() == testKey.AltKey() && ControlKey() == testKey.ControlKey() &&
           ShiftKey() == testKey.ShiftKey() && VKey() == testKey.VKey() &&
           WinKey() == testKey.WinKey();
}

QString ApiHotkey::UniqueKey() const {
    return QStringLiteral("hwnd:%1VK:%2Mod:%3").arg(m_hwnd).arg(m_vKey).arg(m_modifier);
}

QString ApiHotkey::UniqueAtomName() const {
    QString name;
    if (WinKey())
        name += QLatin1String("WIN+");
    if (ShiftKey())
        name += QLatin1String("SHIFT+");
    if (ControlKey())
        name += QLatin1String("CONTROL+");
    if (AltKey())
        name += QLatin1String("ALT+");
    // The "000" pattern: at least three digits, a sign before them.
    const QString digits =
        QString::number(qAbs(static_cast<qint64>(m_vKey))).rightJustified(3, u'0');
    return name + (m_vKey < 0 ? QLatin1String("-") : QLatin1String("")) + digits;
}

void ApiHotkey::ReadFromAtom(quint16 atom) {
    QString name = GlobalAtoms::Name(atom);
    // The name is read into a buffer of 255 characters.
    name.truncate(GlobalAtoms::MaxNameLength - 1);
    if (Rules::ContainsIgnoringCase(name, u"WIN+"))
        SetWinKey(true);
    if (Rules::ContainsIgnoringCase(name, u"SHIFT+"))
        SetShiftKey(true);
    if (Rules::ContainsIgnoringCase(name, u"CONTROL+"))
        SetControlKey(true);
    if (Rules::ContainsIgnoringCase(name, u"ALT+"))
        SetAltKey(true);
    const QString tail = QLatin1String("0") + name.right(3);
    if (Rules::IsWholeNumberText(tail))
        m_vKey = static_cast<int>(Rules::LeadingNumber(tail));
}

void ApiHotkey::Register() {
    if (m_hAtom != 0)
        GlobalAtoms::Delete(m_hAtom);
    m_hAtom = GlobalAtoms::Add(UniqueAtomName());
    HotkeySystem& system = HotkeySystem::Current();
    m_hKey = system.RegisterHotKey(m_hwnd, m_hAtom, m_modifier, m_vKey) ? 1 : 0;
    if (m_hKey < 1) {
        const QString description = HotkeySubclass::LastDllErrorText();
        if (VBHotkey* control = HotkeySubclass::ActiveHotkey(UniqueKey()))
            control->RaiseError(QStringLiteral("ApiHotkey:Register"), description);
    }
}

void ApiHotkey::Unregister() {
    if (m_hAtom == 0)
        return;
    HotkeySystem::Current().UnregisterHotKey(m_hwnd, m_hAtom);
    GlobalAtoms::Delete(m_hAtom);
}

} // namespace Pelorin
