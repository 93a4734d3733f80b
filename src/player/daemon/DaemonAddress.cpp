#include "player/daemon/DaemonAddress.h"

#include <QByteArray>
#include <memory>
#include <mpd/settings.h>

namespace Pelorin {

namespace {

struct SettingsFree {
    void operator()(mpd_settings* settings) const { mpd_settings_free(settings); }
};

} // namespace

bool DaemonAddress::EnvironmentNamesAPlayer() {
    return !qEnvironmentVariableIsEmpty("MPD_HOST");
}

DaemonAddress DaemonAddress::FromEnvironment(const QString& fallbackSocket) {
    DaemonAddress address;
    if (!EnvironmentNamesAPlayer()) {
        address.host = fallbackSocket;
        return address;
    }
    // The client library's own parser, so "password@host", sockets and ports mean what they mean
    // to mpc.
    const std::unique_ptr<mpd_settings, SettingsFree> settings(
        mpd_settings_new(nullptr, 0, 0, nullptr, nullptr));
    if (!settings) {
        address.host = qEnvironmentVariable("MPD_HOST");
        return address;
    }
    if (const char* host = mpd_settings_get_host(settings.get())) {
        address.host = QString::fromUtf8(host);
    }
    address.port = mpd_settings_get_port(settings.get());
    if (const char* password = mpd_settings_get_password(settings.get())) {
        address.password = QString::fromUtf8(password);
    }
    return address;
}

bool DaemonAddress::IsLocal() const {
    return host.isEmpty() || host.startsWith(u'/') || host.startsWith(u'@') ||
           host == QLatin1String("localhost") || host == QLatin1String("127.0.0.1") ||
           host == QLatin1String("::1");
}

QString DaemonAddress::Describe() const {
    if (host.startsWith(u'/') || host.startsWith(u'@')) {
        return host;
    }
    return QStringLiteral("%1:%2").arg(host.isEmpty() ? QStringLiteral("localhost") : host,
                                       QString::number(port == 0 ? 6600 : port));
}

} // namespace Pelorin
