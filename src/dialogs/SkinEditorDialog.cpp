#include "dialogs/SkinEditorDialog.h"

#include "base/TextFile.h"
#include "platform/MessageBox.h"

#include <QDir>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QScrollBar>
#include <QVBoxLayout>

namespace Pelorin {

SkinEditorDialog::SkinEditorDialog(Program program, OpenFormsAccess forms, QWidget* parent)
    : DialogForm(std::move(forms), parent), m_program(std::move(program)) {
    setObjectName(QStringLiteral("frmSkinEditor"));
    setWindowTitle(QStringLiteral("Skin Configuration Editor"));
    m_lstCommands = new QListWidget(this);
    m_lstCommands->setObjectName(QStringLiteral("lstCommands"));
    m_lstParams = new QListWidget(this);
    m_lstParams->setObjectName(QStringLiteral("lstParams"));
    m_txtLine = new QLineEdit(this);
    m_txtLine->setObjectName(QStringLiteral("txtLine"));
    m_cmdAdd = new QPushButton(QStringLiteral("Add Command"), this);
    m_cmdAdd->setObjectName(QStringLiteral("cmdAdd"));
    m_cmdRemvoe = new QPushButton(QStringLiteral("Remove Command"), this);
    m_cmdRemvoe->setObjectName(QStringLiteral("cmdRemvoe"));
    m_cmdReload = new QPushButton(QStringLiteral("Save and Reload Skin"), this);
    m_cmdReload->setObjectName(QStringLiteral("cmdReload"));
    m_cmdReload->setDefault(true);

    // The two lists select and scroll together.
    connect(m_lstCommands, &QListWidget::currentRowChanged, this, &SkinEditorDialog::Select);
    connect(m_lstParams, &QListWidget::currentRowChanged, this, &SkinEditorDialog::Select);
    connect(m_lstCommands->verticalScrollBar(), &QScrollBar::valueChanged,
            m_lstParams->verticalScrollBar(), &QScrollBar::setValue);
    connect(m_lstParams->verticalScrollBar(), &QScrollBar::valueChanged,
            m_lstCommands->verticalScrollBar(), &QScrollBar::setValue);
    connect(m_txtLine, &QLineEdit::textChanged, this, &SkinEditorDialog::txtLine_Change);
    connect(m_cmdAdd, &QPushButton::clicked, this, &SkinEditorDialog::cmdAdd_Click);
    connect(m_cmdRemvoe, &QPushButton::clicked, this, &SkinEditorDialog::cmdRemvoe_Click);
    connect(m_cmdReload, &QPushButton::clicked, this, [this] { cmdReload_Click(); });

    auto* layout = new QVBoxLayout(this);
    auto* lists = new QHBoxLayout;
    lists->addWidget(m_lstCommands, 1);
    lists->addWidget(m_lstParams, 2);
    layout->addLayout(lists, 1);
    layout->addWidget(m_txtLine);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(m_cmdAdd);
    buttons->addWidget(m_cmdRemvoe);
    buttons->addStretch(1);
    buttons->addWidget(m_cmdReload);
    layout->addLayout(buttons);
    resize(fontMetrics().averageCharWidth() * 80, fontMetrics().height() * 30);

    Register();
}

SkinEditorDialog::~SkinEditorDialog() = default;

bool SkinEditorDialog::IsComment(const QString& line) {
    return line.isEmpty() || line.startsWith(QLatin1String("//")) ||
           line.startsWith(QLatin1String("\\\\")) || line.startsWith(u'\'');
}

bool SkinEditorDialog::Split(const QString& line, QString& command, QString& param) {
    if (IsComment(line)) {
        command = CommentItem();
        param = line;
        return true;
    }
    const qsizetype equals = line.indexOf(u'=');
    command = equals < 0 ? line : line.left(equals);
    param = equals < 0 ? QString() : line.mid(equals + 1);
    if (param.isEmpty())
        param = EmptyValue();
    return equals >= 0 && !command.isEmpty();
}

void SkinEditorDialog::ProcessLine(const QString& line) {
    QString command;
    QString param;
    if (!Split(line, command, param))
        return; // a line without "=" is dropped
    if (command == CommentItem()) {
        // A comment takes the place of the selected pair. While a file loads nothing is
        // selected, so comments and empty lines are not kept.
        const int row = m_lstCommands->currentRow();
        if (row < 0 || row >= m_lstCommands->count())
            return;
        m_updating = true;
        m_lstCommands->item(row)->setText(command);
        m_lstParams->item(row)->setText(param);
        m_updating = false;
        return;
    }
    m_lstCommands->addItem(command);
    m_lstParams->addItem(param);
}

bool SkinEditorDialog::LoadSkin(const QString& skinFile) {
    m_skinFile = skinFile;
    TextFileContent content;
    QString error;
    if (!TextFile::ReadConfined(skinFile, QFileInfo(skinFile).absolutePath(),
                                TextFile::MaxSkinFileBytes, content, &error)) {
        MessageBox::Show(QStringLiteral("%1 cannot be read: %2")
                             .arg(QDir::toNativeSeparators(skinFile),
                                  error.isEmpty() ? QStringLiteral("unknown error") : error),
                         QStringLiteral("Skin Configuration Editor"), MessageBox::Icon::Critical);
        return false;
    }
    // Opened again, the editor shows the file afresh.
    m_updating = true;
    m_lstCommands->clear();
    m_lstParams->clear();
    m_txtLine->clear();
    m_updating = false;
    for (const QString& line : std::as_const(content.Lines))
        ProcessLine(line);
    // Written back in the encoding it came in.
    m_encoding = content.Encoding;
    m_hadBom = content.HadBom;
    show();
    raise();
    activateWindow();
    return true;
}

void SkinEditorDialog::Select(int row) {
    if (m_updating)
        return;
    m_updating = true;
    m_lstCommands->setCurrentRow(row);
    m_lstParams->setCurrentRow(row);
    m_lstParams->verticalScrollBar()->setValue(m_lstCommands->verticalScrollBar()->value());
    if (row >= 0 && row < m_lstCommands->count()) {
        const QString command = m_lstCommands->item(row)->text();
        const QString param = m_lstParams->item(row)->text();
        m_txtLine->setText(command == CommentItem() ? param : command + u'=' + param);
    }
    m_updating = false;
}

void SkinEditorDialog::txtLine_Change() {
    if (m_updating)
        return;
    const int row = m_lstCommands->currentRow();
    if (row < 0 || row >= m_lstCommands->count())
        return;
    // An edited line without "=" stays as typed, with an empty value.
    QString command;
    QString param;
    Split(m_txtLine->text(), command, param);
    m_updating = true;
    m_lstCommands->item(row)->setText(command);
    m_lstParams->item(row)->setText(param);
    m_updating = false;
}

void SkinEditorDialog::cmdAdd_Click() {
    m_lstCommands->addItem(QStringLiteral("new command"));
    m_lstParams->addItem(QStringLiteral("new param"));
    Select(m_lstCommands->count() - 1);
}

void SkinEditorDialog::cmdRemvoe_Click() {
    const int row = m_lstCommands->currentRow();
    if (row < 0 || row >= m_lstCommands->count())
        return;
    m_updating = true;
    delete m_lstCommands->takeItem(row);
    delete m_lstParams->takeItem(row);
    m_updating = false;
    Select(m_lstCommands->currentRow());
}

bool SkinEditorDialog::cmdReload_Click() {
    TextFileContent content;
    content.Encoding = m_encoding;
    content.HadBom = m_hadBom;
    QString error;
    QStringList lines;
    for (int i = 0; i < m_lstCommands->count(); ++i) {
        const QString command = m_lstCommands->item(i)->text();
        if (command == CommentItem())
            lines.append(m_lstParams->item(i)->text());
        else if (!command.isEmpty())
            lines.append(command + u'=' + m_lstParams->item(i)->text());
    }
    content.Lines = lines;
    if (!TextFile::WriteConfined(m_skinFile, content, &error)) {
        MessageBox::Show(QStringLiteral("%1 could not be saved: %2. Your changes are still in the "
                                        "editor.")
                             .arg(QDir::toNativeSeparators(m_skinFile), error),
                         QStringLiteral("Skin Configuration Editor"), MessageBox::Icon::Critical);
        return false;
    }
    if (m_program.switchToCurrentSkin)
        m_program.switchToCurrentSkin();
    return true;
}

} // namespace Pelorin
