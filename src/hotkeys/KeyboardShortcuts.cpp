#include "hotkeys/KeyboardShortcuts.h"

#include "base/TextFile.h"
#include "base/TextRules.h"
#include "base/VbError.h"
#include "hotkeys/KeyNames.h"
#include "hotkeys/VBHotkey.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QWidget>

namespace Pelorin {

namespace {

// Element 0's design-time key: the left arrow, no modifier.
constexpr int DesignTimeVKey = 37;

} // namespace

KeyboardShortcuts::KeyboardShortcuts(QWidget& form, RunBinding runBinding)
    : m_form(form), m_runBinding(std::move(runBinding)) {
    Load(0);
}

KeyboardShortcuts::~KeyboardShortcuts() {
    // A window that went without closing (its program ending, say) leaves no key grabbed.
    for (const QPointer<VBHotkey>& control : std::as_const(m_controls)) {
        if (control)
            control->StopHotkey();
    }
    for (const QPointer<VBHotkey>& control : std::as_const(m_controls))
        delete control.data();
}

VBHotkey* KeyboardShortcuts::Load(int index) {
    auto* control = new VBHotkey(&m_form);
    control->SetAltKey(false);
    control->SetShiftKey(false);
    control->SetCtrlKey(false);
    control->SetWinKey(false);
    control->SetVKey(DesignTimeVKey);
    connect(control, &VBHotkey::HotkeyPressed, this,
            [this, index] { VBHotkey_HotkeyPressed(index); });
    m_controls.append(control);
    return control;
}

VBHotkey* KeyboardShortcuts::Control(int index) const {
    if (index < 0 || index >= m_controls.size())
        return nullptr;
    return m_controls.at(index).data();
}

void KeyboardShortcuts::AddKey(int controlNum, const QString& keyName) {
    VBHotkey* control = Control(controlNum);
    if (control == nullptr)
        throw VbError::ControlArrayElementMissing(controlNum);
    KeyCombination keys{control->AltKey(), control->ShiftKey(), control->CtrlKey(),
                        control->WinKey(), control->VKey()};
    const int effect = ApplyKeyName(keys, keyName.toUpper());
    if ((effect & SetsAlt) != 0)
        control->SetAltKey(true);
    if ((effect & SetsShift) != 0)
        control->SetShiftKey(true);
    if ((effect & SetsControl) != 0)
        control->SetCtrlKey(true);
    if ((effect & SetsWin) != 0)
        control->SetWinKey(true);
    if ((effect & SetsKey) != 0)
        control->SetVKey(keys.vKey);
}

void KeyboardShortcuts::ProcessKeyShortcuts(const QList<KeyShortcut>& shortcuts) {
    for (int i = 0; i < shortcuts.size() - 1; ++i) {
        if (i != 0) {
            VBHotkey* control = Load(i);
            control->SetAltKey(false);
            control->SetCtrlKey(false);
        }
        const QStringList parts = Rules::SplitFields(shortcuts.at(i).Keys, QLatin1Char('+'));
        for (const QString& part : parts)
            AddKey(i, part.toUpper());
        if (VBHotkey* control = Control(i))
            control->InitTheThing();
    }
}

void KeyboardShortcuts::VBHotkey_HotkeyPressed(int index) {
    if (m_runBinding)
        m_runBinding(index);
}

void KeyboardShortcuts::CloseAllHotkeys(const std::function<bool()>& alive) {
    for (int i = 0; i < m_controls.size(); ++i) {
        if (VBHotkey* control = Control(i))
            control->StopHotkey();
    }
    // The restored window procedures take effect before the window goes on closing.
    for (int pump = 0; pump < 4; ++pump) {
        QCoreApplication::processEvents();
        if (alive && !alive())
            break;
    }
    // The controls go with the window; a press being handled may still be on the stack.
    for (const QPointer<VBHotkey>& control : std::as_const(m_controls)) {
        if (control) {
            control->Terminate();
            control->deleteLater();
        }
    }
    m_controls.clear();
}

QString PersonalFileName() {
    return QStringLiteral("personal.ini");
}

void CheckStartPersonal(int skinWindowCount, const QString& programFolder,
                        const std::function<void(const QString& line)>& processLine,
                        const std::function<void(const QString& message)>& report) {
    if (skinWindowCount != 1)
        return;
    QString folder = programFolder;
    if (!folder.endsWith(u'/'))
        folder += u'/';
    const QString path = folder + PersonalFileName();
    const QFileInfo info(path);
    if (!info.exists() && !info.isSymLink())
        return; // no personal shortcuts
    // The user's own file, so a link anywhere is fine; but a folder or a pipe of that name must
    // not stop the skin from loading.
    TextFileContent content;
    QString reason;
    if (!TextFile::ReadRegular(path, TextFile::MaxSkinFileBytes, content, &reason)) {
        if (report)
            report(QStringLiteral("Pelorin cannot read your personal shortcuts: %1. The skin "
                                  "loads without them.")
                       .arg(reason));
        return;
    }
    for (const QString& line : std::as_const(content.Lines))
        processLine(line);
}

} // namespace Pelorin
