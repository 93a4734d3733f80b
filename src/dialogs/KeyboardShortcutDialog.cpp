#include "dialogs/KeyboardShortcutDialog.h"

#include "base/TextFile.h"
#include "base/TextRules.h"
#include "hotkeys/KeyboardShortcuts.h"
#include "platform/MessageBox.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>

namespace Pelorin {

namespace {

struct Names {
    const char* shortcuts;
    const char* keys;
    const char* code;
    const char* win;
    const char* alt;
    const char* ctrl;
    const char* shift;
    const char* key;
    const char* runCode;
    const char* add;
    const char* remove;
    const char* send;
};
constexpr Names SkinNames{"lstSShortcuts", "txtSKeys", "txtSCode",   "chkWinS",
                          "chkAltS",       "chkCtrlS", "chkShiftS",  "cmbKeyS",
                          "cmbRunCodeS",   "cmdsAdd",  "cmdSDelete", "cmdSendToP"};
constexpr Names PersonalNames{"lstPShortcuts", "txtPKeys", "txtPCode",   "chkWinP",
                              "chkAltP",       "chkCtrlP", "chkShiftP",  "cmbkeyP",
                              "cmbRunCodeP",   "cmdpAdd",  "cmdPDelete", "cmdSendToSkin"};

// A sorted list box sorts by text, letter case aside.
QStringList Sorted(QStringList items) {
    std::stable_sort(items.begin(), items.end(), [](const QString& a, const QString& b) {
        return QString::compare(a, b, Qt::CaseInsensitive) < 0;
    });
    return items;
}

QStringList KeyItems() {
    QStringList items;
    for (char c = '0'; c <= '9'; ++c)
        items.append(QString(QLatin1Char(c)));
    for (char c = 'A'; c <= 'Z'; ++c)
        items.append(QString(QLatin1Char(c)));
    for (int i = 1; i <= 12; ++i)
        items.append(QStringLiteral("F%1").arg(i));
    for (int i = 0; i <= 9; ++i)
        items.append(QStringLiteral("Numpad%1").arg(i));
    // "Enter" is left out, as it always was, although typed it works.
    items << QStringLiteral("Backspace") << QStringLiteral("DownArrow")
          << QStringLiteral("LeftArrow") << QStringLiteral("PageDown") << QStringLiteral("PageUp")
          << QStringLiteral("RightArrow") << QStringLiteral("Tab") << QStringLiteral("UpArrow");
    return Sorted(items);
}

QStringList CommandItems() {
    return Sorted({QStringLiteral("1star"),
                   QStringLiteral("2star"),
                   QStringLiteral("3star"),
                   QStringLiteral("4star"),
                   QStringLiteral("5star"),
                   QStringLiteral("addtoplaylist="),
                   QStringLiteral("addtovolume="),
                   QStringLiteral("closeskin"),
                   QStringLiteral("ejectipod"),
                   QStringLiteral("fadeclose"),
                   QStringLiteral("nexttrack"),
                   QStringLiteral("pause"),
                   QStringLiteral("play"),
                   QStringLiteral("playpause"),
                   QStringLiteral("playplaylist="),
                   QStringLiteral("previoustrack"),
                   QStringLiteral("quit"),
                   QStringLiteral("reloadtimer="),
                   QStringLiteral("repeat="),
                   QStringLiteral("setasend"),
                   QStringLiteral("setasstart"),
                   QStringLiteral("show"),
                   QStringLiteral("showitunes"),
                   QStringLiteral("showskin="),
                   QStringLiteral("shuffle="),
                   QStringLiteral("skip="),
                   QStringLiteral("stop"),
                   QStringLiteral("swapartistandalbum"),
                   QStringLiteral("swapartistandtitle"),
                   QStringLiteral("updateipod"),
                   QStringLiteral("volumedown"),
                   QStringLiteral("volumeup")});
}

bool IsBinding(const QString& line) {
    return Rules::IsLeft(line, u"keyboardshortcut", 1);
}

// The text after the first "=" (the whole line when it has none).
QString AfterEquals(const QString& line) {
    return line.mid(line.indexOf(u'=') + 1);
}

} // namespace

KeyboardShortcutDialog::KeyboardShortcutDialog(Program program, OpenFormsAccess forms,
                                               QWidget* parent)
    : DialogForm(std::move(forms), parent), m_program(std::move(program)) {
    setObjectName(QStringLiteral("frmKeyboardShortcut"));
    setWindowTitle(QStringLiteral("Manage Keyboard Shortcuts"));

    auto* intro = new QLabel(
        QStringLiteral("You may configure all the shortcuts for Pelorin here. Please remember that "
                       "shortcuts for Pelorin are global so they will be accessible anywhere. You "
                       "must make sure shortcuts always have a key such as Win or Shift, and also "
                       "make sure that the shortcuts do not interfere with other programs."),
        this);
    intro->setWordWrap(true);
    m_skin = BuildSide(QStringLiteral("Skin Shortcuts"),
                       QStringLiteral("These shortcuts are defined in the skin and they are skin "
                                      "dependant."),
                       QStringLiteral("Send To Personal"));
    m_skin.frame->setObjectName(QStringLiteral("Frame1"));
    m_personal = BuildSide(QStringLiteral("Personal Shortcuts"),
                           QStringLiteral("These shortcuts do not depend on which skin you have "
                                          "loaded, so every skin will have these shortcuts "
                                          "automatically."),
                           QStringLiteral("Send To Skin"));
    m_personal.frame->setObjectName(QStringLiteral("Frame2"));
    const auto name = [](Side& side, const Names& names) {
        side.shortcuts->setObjectName(QLatin1String(names.shortcuts));
        side.keys->setObjectName(QLatin1String(names.keys));
        side.code->setObjectName(QLatin1String(names.code));
        side.win->setObjectName(QLatin1String(names.win));
        side.alt->setObjectName(QLatin1String(names.alt));
        side.ctrl->setObjectName(QLatin1String(names.ctrl));
        side.shift->setObjectName(QLatin1String(names.shift));
        side.key->setObjectName(QLatin1String(names.key));
        side.runCode->setObjectName(QLatin1String(names.runCode));
        side.add->setObjectName(QLatin1String(names.add));
        side.remove->setObjectName(QLatin1String(names.remove));
        side.send->setObjectName(QLatin1String(names.send));
    };
    name(m_skin, SkinNames);
    name(m_personal, PersonalNames);

    // Form load: the skin side's lists, copied to the personal side; both keys start at "0".
    m_skin.key->addItems(KeyItems());
    m_skin.runCode->addItems(CommandItems());
    for (int i = 0; i < m_skin.key->count(); ++i)
        m_personal.key->addItem(m_skin.key->itemText(i));
    for (int i = 0; i < m_skin.runCode->count(); ++i)
        m_personal.runCode->addItem(m_skin.runCode->itemText(i));
    m_skin.key->setCurrentIndex(0);
    m_personal.key->setCurrentIndex(0);

    ConnectSide(m_skin, m_personal);
    ConnectSide(m_personal, m_skin);

    m_cmdSave = new QPushButton(QStringLiteral("Save and Reload"), this);
    m_cmdSave->setObjectName(QStringLiteral("cmdSave"));
    m_cmdSave->setDefault(true);
    m_cmdReload = new QPushButton(QStringLiteral("Reload Shortcuts"), this);
    m_cmdReload->setObjectName(QStringLiteral("cmdReload"));
    m_cmdCancel = new QPushButton(QStringLiteral("Cancel"), this);
    m_cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    connect(m_cmdSave, &QPushButton::clicked, this, &KeyboardShortcutDialog::cmdSave_Click);
    connect(m_cmdReload, &QPushButton::clicked, this, &KeyboardShortcutDialog::cmdReload_Click);
    connect(m_cmdCancel, &QPushButton::clicked, this, &KeyboardShortcutDialog::Unload);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(intro);
    auto* frames = new QHBoxLayout;
    frames->addWidget(m_skin.frame);
    frames->addWidget(m_personal.frame);
    layout->addLayout(frames, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(m_cmdReload);
    buttons->addStretch(1);
    buttons->addWidget(m_cmdSave);
    buttons->addWidget(m_cmdCancel);
    layout->addLayout(buttons);

    Register();
}

KeyboardShortcutDialog::~KeyboardShortcutDialog() = default;

KeyboardShortcutDialog::Side KeyboardShortcutDialog::BuildSide(const QString& title,
                                                               const QString& text,
                                                               const QString& sendCaption) {
    Side side;
    side.frame = new QGroupBox(title, this);
    auto* about = new QLabel(text, side.frame);
    about->setWordWrap(true);
    side.shortcuts = new QListWidget(side.frame);
    side.keys = new QLineEdit(side.frame);
    side.code = new QLineEdit(side.frame);
    side.win = new QCheckBox(QStringLiteral("Win"), side.frame);
    side.alt = new QCheckBox(QStringLiteral("Alt"), side.frame);
    side.ctrl = new QCheckBox(QStringLiteral("Ctrl"), side.frame);
    side.shift = new QCheckBox(QStringLiteral("Shift"), side.frame);
    side.key = new QComboBox(side.frame);
    side.runCode = new QComboBox(side.frame);
    side.add = new QPushButton(QStringLiteral("Add New"), side.frame);
    side.remove = new QPushButton(QStringLiteral("Delete"), side.frame);
    side.send = new QPushButton(sendCaption, side.frame);

    auto* layout = new QVBoxLayout(side.frame);
    layout->addWidget(about);
    layout->addWidget(side.shortcuts, 1);
    auto* fields = new QFormLayout;
    fields->addRow(QStringLiteral("Keys:"), side.keys);
    fields->addRow(QStringLiteral("Code:"), side.code);
    layout->addLayout(fields);
    auto* modifiers = new QHBoxLayout;
    for (QWidget* w : {static_cast<QWidget*>(side.win), static_cast<QWidget*>(side.alt),
                       static_cast<QWidget*>(side.ctrl), static_cast<QWidget*>(side.shift),
                       static_cast<QWidget*>(side.key)})
        modifiers->addWidget(w);
    layout->addLayout(modifiers);
    layout->addWidget(side.runCode);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(side.add);
    buttons->addWidget(side.remove);
    buttons->addWidget(side.send);
    layout->addLayout(buttons);
    return side;
}

void KeyboardShortcutDialog::ConnectSide(Side& side, Side& other) {
    connect(side.shortcuts, &QListWidget::currentRowChanged, this,
            [this, &side] { ItemSelected(side); });
    connect(side.shortcuts, &QListWidget::itemClicked, this, [this, &side] { ItemSelected(side); });
    for (QCheckBox* box : {side.win, side.alt, side.ctrl, side.shift})
        connect(box, &QCheckBox::clicked, this, [this, &side] { ModifierOrKeyClicked(side); });
    connect(side.key, &QComboBox::activated, this, [this, &side] { ModifierOrKeyClicked(side); });
    connect(side.runCode, &QComboBox::activated, this,
            [&side] { side.code->setText(side.runCode->currentText()); });
    connect(side.keys, &QLineEdit::textChanged, this, [this, &side] { TextChanged(side, true); });
    connect(side.code, &QLineEdit::textChanged, this, [this, &side] { TextChanged(side, false); });
    connect(side.add, &QPushButton::clicked, this, [this, &side] { AddNew(side); });
    connect(side.remove, &QPushButton::clicked, this, [this, &side] { DeleteSelected(side); });
    connect(side.send, &QPushButton::clicked, this, [this, &side, &other] { SendTo(side, other); });
}

void KeyboardShortcutDialog::ItemSelected(Side& side) {
    if (m_updating || side.shortcuts->currentItem() == nullptr)
        return;
    const QStringList parts = side.shortcuts->currentItem()->text().split(u';');
    side.keys->setText(parts.value(0));
    side.code->setText(parts.value(1));
}

void KeyboardShortcutDialog::ModifierOrKeyClicked(Side& side) {
    if (m_updating)
        return;
    QString keys = side.key->currentText();
    if (side.win->isChecked())
        keys = QStringLiteral("Win+") + keys;
    if (side.alt->isChecked())
        keys = QStringLiteral("Alt+") + keys;
    if (side.ctrl->isChecked())
        keys = QStringLiteral("Control+") + keys;
    if (side.shift->isChecked())
        keys = QStringLiteral("Shift+") + keys;
    side.keys->setText(keys);
}

void KeyboardShortcutDialog::TextChanged(Side& side, bool keysBox) {
    QListWidgetItem* item = side.shortcuts->currentItem();
    if (m_updating || item == nullptr)
        return;
    if (keysBox)
        ProcessAllKey(side);
    item->setText(side.keys->text() + u';' + side.code->text());
}

void KeyboardShortcutDialog::ProcessAllKey(Side& side) {
    // The dialog sets its own controls here: their handlers stay quiet meanwhile.
    const bool wasUpdating = m_updating;
    m_updating = true;
    for (QCheckBox* box : {side.win, side.alt, side.ctrl, side.shift})
        box->setChecked(false);
    side.key->setCurrentIndex(-1);
    for (const QString& part : side.keys->text().split(u'+')) {
        const QString upper = part.toUpper();
        if (upper == QLatin1String("WIN"))
            side.win->setChecked(true);
        else if (upper == QLatin1String("ALT"))
            side.alt->setChecked(true);
        else if (upper == QLatin1String("CONTROL"))
            side.ctrl->setChecked(true);
        else if (upper == QLatin1String("SHIFT"))
            side.shift->setChecked(true);
        else
            side.key->setCurrentIndex(side.key->findText(part, Qt::MatchFixedString));
    }
    m_updating = wasUpdating;
}

void KeyboardShortcutDialog::AddNew(Side& side) {
    QListWidget* list = side.shortcuts;
    if (list->currentItem() != nullptr) {
        list->addItem(list->currentItem()->text());
    } else if (!side.keys->text().isEmpty() && side.keys->text() != QLatin1String("0")) {
        if (side.code->text().isEmpty())
            side.code->setText(QStringLiteral("PlayPause"));
        list->addItem(side.keys->text() + u';' + side.code->text());
    } else {
        list->addItem(QStringLiteral("WIN+P;PlayPause"));
    }
    list->setCurrentRow(list->count() - 1);
}

void KeyboardShortcutDialog::DeleteSelected(Side& side) {
    const int row = side.shortcuts->currentRow();
    if (row >= 0 && side.shortcuts->currentItem() != nullptr)
        delete side.shortcuts->takeItem(row);
}

void KeyboardShortcutDialog::SendTo(Side& side, Side& other) {
    if (side.shortcuts->currentItem() == nullptr)
        return;
    other.shortcuts->addItem(side.shortcuts->currentItem()->text());
    DeleteSelected(side);
}

bool KeyboardShortcutDialog::ReadFile(const QString& path, bool confined, TextFileContent& content,
                                      QString* error) {
    if (confined)
        return TextFile::ReadConfined(path, QFileInfo(path).absolutePath(),
                                      TextFile::MaxSkinFileBytes, content, error);
    // No personal file yet: no personal shortcuts.
    const QFileInfo info(path);
    if (!info.exists() && !info.isSymLink())
        return true;
    return TextFile::ReadRegular(path, TextFile::MaxSkinFileBytes, content, error);
}

bool KeyboardShortcutDialog::ReadShortcuts(const QString& path, bool confined, QListWidget* list) {
    TextFileContent content;
    QString error;
    const bool read = ReadFile(path, confined, content, &error);
    if (!read) {
        MessageBox::Show(QStringLiteral("%1 cannot be read: %2")
                             .arg(QDir::toNativeSeparators(path),
                                  error.isEmpty() ? QStringLiteral("unknown error") : error),
                         QStringLiteral("Manage Keyboard Shortcuts"), MessageBox::Icon::Critical);
        return false;
    }
    for (const QString& line : std::as_const(content.Lines)) {
        if (IsBinding(line))
            list->addItem(AfterEquals(line));
    }
    return true;
}

QString KeyboardShortcutDialog::PersonalFile() const {
    return m_program.programFolder + PersonalFileName();
}

bool KeyboardShortcutDialog::LoadAll(const QString& skinFile) {
    m_skinFile = skinFile;
    m_updating = true;
    m_skin.shortcuts->clear();
    m_personal.shortcuts->clear();
    m_updating = false;
    if (!ReadShortcuts(skinFile, true, m_skin.shortcuts) ||
        !ReadShortcuts(PersonalFile(), false, m_personal.shortcuts))
        return false;
    show();
    raise();
    activateWindow();
    return true;
}

bool KeyboardShortcutDialog::Rewrite(const QString& path, bool confined, const QListWidget* list) {
    // Neither file is ever written through a link or onto anything but a regular file.
    TextFileContent content;
    QString error;
    bool ok = ReadFile(path, confined, content, &error);
    if (ok) {
        QStringList lines;
        for (const QString& line : std::as_const(content.Lines)) {
            if (!IsBinding(line) && line != MarkerLine())
                lines.append(line);
        }
        // The kept text and the block after one line break: an empty file keeps an empty line.
        if (lines.isEmpty())
            lines.append(QString());
        lines.append(MarkerLine());
        for (int i = 0; i < list->count(); ++i)
            lines.append(QStringLiteral("keyboardshortcut=") + list->item(i)->text());
        content.Lines = lines;
        ok = TextFile::WriteConfined(path, content, &error);
    }
    if (!ok)
        MessageBox::Show(QStringLiteral("%1 could not be saved: %2. Your shortcuts are still in "
                                        "the dialog.")
                             .arg(QDir::toNativeSeparators(path), error),
                         QStringLiteral("Manage Keyboard Shortcuts"), MessageBox::Icon::Critical);
    return ok;
}

bool KeyboardShortcutDialog::SaveAll() {
    return Rewrite(m_skinFile, true, m_skin.shortcuts) &&
           Rewrite(PersonalFile(), false, m_personal.shortcuts);
}

void KeyboardShortcutDialog::cmdSave_Click() {
    if (!SaveAll())
        return;
    if (m_program.switchToCurrentSkin)
        m_program.switchToCurrentSkin();
    Unload();
}

void KeyboardShortcutDialog::cmdReload_Click() {
    LoadAll(m_skinFile);
}

} // namespace Pelorin
