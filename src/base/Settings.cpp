#include "Settings.h"

#include "base/Log.h"
#include "base/TextRules.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace Pelorin {

namespace {

const QString OptionsGroup = QStringLiteral("Options");

void Warn(const QString& text) {
    qCWarning(lcSettings).noquote() << text;
}

QString Qualified(const QString& key) {
    return OptionsGroup + QLatin1Char('/') + key;
}

// A name beside `fileName` that does not exist yet.
QString CorruptCopyName(const QString& fileName) {
    const QString stamp = QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss"));
    QString candidate = fileName + QStringLiteral(".corrupt-") + stamp;
    for (int n = 1; QFileInfo::exists(candidate); ++n)
        candidate =
            fileName + QStringLiteral(".corrupt-") + stamp + QLatin1Char('-') + QString::number(n);
    return candidate;
}

} // namespace

QString Settings::DefaultFileName() {
    QString configHome = qEnvironmentVariable("XDG_CONFIG_HOME");
    // Only an absolute path is a valid XDG base directory.
    if (configHome.isEmpty() || QDir::isRelativePath(configHome))
        configHome = QDir::homePath() + QStringLiteral("/.config");
    return QDir::cleanPath(configHome) + QStringLiteral("/Pelorin/Pelorin.conf");
}

Settings::Settings() : Settings(DefaultFileName()) {}

Settings::Settings(const QString& fileName) : m_fileName(fileName) {
    Open();
}

Settings::~Settings() {
    Flush();
}

void Settings::Open() {
    m_store = std::make_unique<QSettings>(m_fileName, QSettings::IniFormat);
    if (m_store->status() == QSettings::FormatError) {
        // Writing now would replace the user's file with whatever part of it was understood.
        m_store.reset();
        const QString copy = CorruptCopyName(m_fileName);
        if (QFile::rename(m_fileName, copy)) {
            m_corruptCopy = copy;
            Warn(QStringLiteral("Pelorin: the settings file %1 could not be read; it was kept as "
                                "%2 and the settings start from their defaults.")
                     .arg(QDir::toNativeSeparators(m_fileName), QDir::toNativeSeparators(copy)));
            m_store = std::make_unique<QSettings>(m_fileName, QSettings::IniFormat);
        } else {
            Warn(QStringLiteral("Pelorin: the settings file %1 could not be read and could not be "
                                "moved aside; the settings start from their defaults and changes "
                                "are kept only until the program ends.")
                     .arg(QDir::toNativeSeparators(m_fileName)));
            m_memoryOnly = true;
        }
    } else if (m_store->status() == QSettings::AccessError) {
        Warn(QStringLiteral("Pelorin: the settings file %1 cannot be read.")
                 .arg(QDir::toNativeSeparators(m_fileName)));
    }
}

QString Settings::GetSetting(const QString& key, const QString& defaultValue) const {
    if (m_memoryOnly) {
        const auto it = m_memory.constFind(key);
        return it == m_memory.cend() ? defaultValue : *it;
    }
    const QVariant value = m_store->value(Qualified(key));
    if (!value.isValid())
        return defaultValue;
    return value.toString();
}

QString Settings::DefaultFor(QStringView key) {
    if (key == RunCount)
        return QStringLiteral("0");
    if (key == CurrentSkin)
        return QStringLiteral("Default");
    if (key == CantomPath)
        return QStringLiteral("APPPATH\\Lyrics\\");
    if (key == OpenPelorinWithiTunes)
        return QStringLiteral("1");
    if (key == PelorinTray || key == PelorinTrayIcon)
        return QStringLiteral("0");
    return {};
}

QString Settings::GetSetting(const QString& key) const {
    return GetSetting(key, DefaultFor(key));
}

double Settings::GetNumber(const QString& key) const {
    return Rules::LeadingNumber(GetSetting(key));
}

void Settings::SaveSetting(const QString& key, const QString& text) {
    if (m_memoryOnly) {
        m_memory.insert(key, text);
        return;
    }
    m_store->setValue(Qualified(key), text);
    Flush();
}

bool Settings::Flush() {
    if (m_memoryOnly)
        return false;
    m_store->sync();
    if (m_store->status() != QSettings::NoError) {
        Warn(QStringLiteral("Pelorin: the settings could not be written to %1.")
                 .arg(QDir::toNativeSeparators(m_fileName)));
        return false;
    }
    return true;
}

double CountRun(Settings& settings) {
    const double count = settings.GetNumber(Settings::RunCount) + 1;
    // Saved the way a number converts to text: no leading blank.
    settings.SaveSetting(Settings::RunCount, Rules::FormatNumber(count).trimmed());
    return count;
}

bool ShouldCloseiTunesOnExit(const Settings& settings) {
    return settings.GetNumber(Settings::CloseiTunesOnExit) == 1;
}

QString GetLyricsPath(const Settings& settings) {
    return settings.GetSetting(Settings::CantomPath);
}

} // namespace Pelorin
