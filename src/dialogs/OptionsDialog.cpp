#include "dialogs/OptionsDialog.h"

#include "base/Settings.h"
#include "base/TextFile.h"
#include "base/TextRules.h"
#include "platform/MessageBox.h"

#include <QCheckBox>
#include <QDir>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace Pelorin {

namespace {

// A check box's value as the store keeps it: "1" ticked, "0" not.
QString Value(const QCheckBox* box) {
    return box->isChecked() ? QStringLiteral("1") : QStringLiteral("0");
}

// A stored switch: its leading number, anything but 0 ticks the box.
bool Ticked(const Settings& settings, const QString& key, const QString& fallback) {
    return Rules::LeadingNumber(settings.GetSetting(key, fallback)) != 0;
}

} // namespace

OptionsDialog::OptionsDialog(Settings& settings, QString programFolder, OpenFormsAccess forms,
                             QWidget* parent)
    : DialogForm(std::move(forms), parent), m_settings(settings),
      m_programFolder(std::move(programFolder)) {
    setObjectName(QStringLiteral("frmOptions"));
    setWindowTitle(QStringLiteral("Options"));
    setAttribute(Qt::WA_DeleteOnClose, false);

    m_chkCloseiTunes = new QCheckBox(QStringLiteral("Close Player On Exit"), this);
    m_chkCloseiTunes->setObjectName(QStringLiteral("chkCloseiTunes"));
    m_chkOpenWithItunes = new QCheckBox(QStringLiteral("Open Pelorin with Player"), this);
    m_chkOpenWithItunes->setObjectName(QStringLiteral("chkOpenWithItunes"));
    m_chkPelorinIcon = new QCheckBox(QStringLiteral("Pelorin Tray Icon"), this);
    m_chkPelorinIcon->setObjectName(QStringLiteral("chkPelorinIcon"));
    auto* label2 = new QLabel(QStringLiteral("Lyrics Path:"), this);
    label2->setObjectName(QStringLiteral("Label2"));
    // Where lyrics files are looked for; shown, never saved.
    m_txtLyrics =
        new QLineEdit(QDir::toNativeSeparators(m_programFolder + QLatin1String("Lyrics/")), this);
    m_txtLyrics->setObjectName(QStringLiteral("txtLyrics"));
    label2->setBuddy(m_txtLyrics);
    m_label1 = new QLabel(
        QStringLiteral("For this feature, Pelorin must be installed (see Pelorin Help)."), this);
    m_label1->setObjectName(QStringLiteral("Label1"));
    m_label1->setWordWrap(true);
    m_cmdSave = new QPushButton(QStringLiteral("Save Settings"), this);
    m_cmdSave->setObjectName(QStringLiteral("cmdSave"));
    m_cmdSave->setDefault(true);
    connect(m_cmdSave, &QPushButton::clicked, this, &OptionsDialog::cmdSave_Click);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_chkCloseiTunes);
    layout->addWidget(m_chkOpenWithItunes);
    layout->addWidget(m_label1);
    layout->addWidget(m_chkPelorinIcon);
    auto* lyrics = new QFormLayout;
    lyrics->addRow(label2, m_txtLyrics);
    layout->addLayout(lyrics);
    layout->addStretch(1);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(m_cmdSave);
    layout->addLayout(buttons);
    setMinimumWidth(fontMetrics().averageCharWidth() * 48);

    Register();
    FormLoad();
}

OptionsDialog::~OptionsDialog() = default;

void OptionsDialog::FormLoad() {
    m_chkCloseiTunes->setChecked(
        Ticked(m_settings, Settings::CloseiTunesOnExit, Settings::CloseiTunesOnExitDialogDefault));
    m_chkOpenWithItunes->setChecked(
        Ticked(m_settings, Settings::OpenPelorinWithiTunes, QStringLiteral("1")));
    m_chkPelorinIcon->setChecked(
        Ticked(m_settings, Settings::PelorinTrayIcon, QStringLiteral("0")));
}

void OptionsDialog::cmdSave_Click() {
    m_settings.SaveSetting(Settings::CloseiTunesOnExit, Value(m_chkCloseiTunes));
    m_settings.SaveSetting(Settings::OpenPelorinWithiTunes, Value(m_chkOpenWithItunes));
    m_settings.SaveSetting(Settings::PelorinTray, Value(m_chkPelorinIcon));
    QStringList problems;
    if (!m_settings.Flush())
        problems.append(QStringLiteral("The settings could not be written to %1.")
                            .arg(QDir::toNativeSeparators(m_settings.FileName())));
    TextFileContent content;
    content.Lines = {Value(m_chkOpenWithItunes)};
    const QString optFile = m_programFolder + OpenWithPlayerFile();
    QString error;
    if (!TextFile::Write(optFile, content, &error))
        problems.append(QStringLiteral("%1 could not be written: %2")
                            .arg(QDir::toNativeSeparators(optFile), error));
    if (!problems.isEmpty()) {
        MessageBox::Show(problems.join(QLatin1Char('\n')), QStringLiteral("Options"),
                         MessageBox::Icon::Critical, MessageBox::Buttons::Ok, this);
        return;
    }
    Unload();
}

} // namespace Pelorin
