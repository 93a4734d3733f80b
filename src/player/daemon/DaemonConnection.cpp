#include "player/daemon/DaemonConnection.h"

#include "base/VbError.h"

#include <mpd/client.h>

namespace Pelorin {

void DaemonConnectionFree::operator()(mpd_connection* connection) const {
    mpd_connection_free(connection);
}

namespace {

QString ErrorText(mpd_connection* connection) {
    const char* message = mpd_connection_get_error_message(connection);
    return message ? QString::fromUtf8(message) : QStringLiteral("Unknown player error");
}

} // namespace

DaemonConnectionPtr ConnectToDaemon(const DaemonAddress& address, int timeoutMs, bool* timedOut) {
    if (timedOut)
        *timedOut = false;
    const QByteArray host = address.host.toUtf8();
    DaemonConnectionPtr connection(mpd_connection_new(host.isEmpty() ? nullptr : host.constData(),
                                                      address.port,
                                                      static_cast<unsigned>(timeoutMs)));
    if (!connection) {
        throw VbError::Player(QStringLiteral("Out of memory"));
    }
    if (mpd_connection_get_error(connection.get()) != MPD_ERROR_SUCCESS) {
        if (timedOut)
            *timedOut = mpd_connection_get_error(connection.get()) == MPD_ERROR_TIMEOUT;
        throw VbError::Player(QStringLiteral("Cannot reach the player at %1: %2")
                                  .arg(address.Describe(), ErrorText(connection.get())));
    }
    if (!address.password.isEmpty() &&
        !mpd_run_password(connection.get(), address.password.toUtf8().constData())) {
        if (timedOut)
            *timedOut = mpd_connection_get_error(connection.get()) == MPD_ERROR_TIMEOUT;
        throw VbError::Player(QStringLiteral("The player at %1 refused the password: %2")
                                  .arg(address.Describe(), ErrorText(connection.get())));
    }
    return connection;
}

DaemonFault TakeDaemonFault(mpd_connection* connection, QString* description) {
    const mpd_error error = mpd_connection_get_error(connection);
    if (error == MPD_ERROR_SUCCESS) {
        return DaemonFault::None;
    }
    if (description) {
        *description = ErrorText(connection);
    }
    switch (error) {
    case MPD_ERROR_SERVER:
    case MPD_ERROR_ARGUMENT:
    case MPD_ERROR_STATE:
        if (mpd_connection_clear_error(connection)) {
            return DaemonFault::Recoverable;
        }
        return DaemonFault::Broken;
    case MPD_ERROR_CLOSED:
        return DaemonFault::ClosedBeforeCommand;
    default:
        return DaemonFault::Broken;
    }
}

} // namespace Pelorin
