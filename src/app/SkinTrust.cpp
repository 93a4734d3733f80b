#include "SkinTrust.h"

#include "base/Settings.h"
#include "platform/MessageBox.h"

namespace Pelorin {

namespace {

QStringList TrustedNames(const Settings& settings) {
    return settings.GetSetting(Settings::TrustedSkins).split(u'|', Qt::SkipEmptyParts);
}

} // namespace

SkinTrust::SkinTrust(Settings& settings) : m_settings(settings) {}

QString SkinTrust::QuestionText(const QString& skinName, const QString& command) {
    return QStringLiteral("The skin \"") + skinName +
           QStringLiteral("\" wants to change your music library (\"") + command +
           QStringLiteral("\"). Allow this skin to change tags, playlists and files?");
}

bool SkinTrust::Allowed(const QString& skinName) const {
    return ShippedSkins().contains(skinName) || TrustedNames(m_settings).contains(skinName);
}

bool SkinTrust::MayChangeLibrary(const QString& skinName, const QString& command) {
    if (Allowed(skinName))
        return true;
    if (m_denied.contains(skinName) || skinName.isEmpty() || skinName.contains(u'|'))
        return false;
    if (!MessageBox::Ask(QuestionText(skinName, command), QStringLiteral("Pelorin"),
                         QStringLiteral("Allow"), QStringLiteral("Deny"))) {
        m_denied.insert(skinName);
        return false;
    }
    QStringList trusted = TrustedNames(m_settings);
    trusted.append(skinName);
    m_settings.SaveSetting(Settings::TrustedSkins, trusted.join(u'|'));
    return true;
}

} // namespace Pelorin
