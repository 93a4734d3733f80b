#include "player/daemon/DaemonSession.h"

#include "base/VbError.h"

#include <cstring>
#include <mpd/client.h>

namespace Pelorin {

DaemonSession::DaemonSession(DaemonAddress address, int timeoutMs)
    : m_address(std::move(address)), m_timeoutMs(timeoutMs) {}

mpd_connection* DaemonSession::Connection() {
    if (!m_answering)
        throw VbError::Player(NotAnsweringText());
    if (!m_connection) {
        bool timedOut = false;
        try {
            m_connection = ConnectToDaemon(m_address, m_timeoutMs, &timedOut);
        } catch (const VbError&) {
            // A stopped daemon's socket still accepts: the greeting is what times out.
            if (timedOut)
                TimedOut();
            throw;
        }
    }
    return m_connection.get();
}

void DaemonSession::TimedOut() {
    Disconnect();
    if (!m_answering)
        return;
    m_answering = false;
    if (m_onTimeout)
        m_onTimeout();
}

void DaemonSession::Disconnect() {
    m_connection.reset();
    // The daemon may come back with another configuration.
    m_hasStickers.reset();
}

bool DaemonSession::HasStickers() {
    if (!m_hasStickers) {
        m_hasStickers = Run([](mpd_connection* connection) {
            bool found = false;
            if (mpd_send_allowed_commands(connection)) {
                while (mpd_pair* pair = mpd_recv_command_pair(connection)) {
                    found = found || std::strcmp(pair->value, "sticker") == 0;
                    mpd_return_pair(connection, pair);
                }
                mpd_response_finish(connection);
            }
            return found;
        });
    }
    return *m_hasStickers;
}

bool DaemonSession::Settle(mpd_connection* connection, bool firstAttempt) {
    QString description;
    const bool timedOut = mpd_connection_get_error(connection) == MPD_ERROR_TIMEOUT;
    switch (TakeDaemonFault(connection, &description)) {
    case DaemonFault::None:
        return true;
    case DaemonFault::Recoverable:
        throw VbError::Player(description);
    case DaemonFault::ClosedBeforeCommand:
        Disconnect();
        if (firstAttempt) {
            return false;
        }
        throw VbError::Player(description);
    case DaemonFault::Broken:
        break;
    }
    if (timedOut)
        TimedOut();
    else
        Disconnect();
    throw VbError::Player(description);
}

void DaemonSession::SendKill() {
    mpd_connection* connection = Connection();
    if (mpd_send_command(connection, "kill", nullptr)) {
        mpd_response_finish(connection);
    }
    QString description;
    const DaemonFault fault = TakeDaemonFault(connection, &description);
    Disconnect();
    if (fault == DaemonFault::Recoverable) {
        throw VbError::Player(description);
    }
}

DaemonStatus DaemonSession::ReadStatus() {
    const DaemonStatus current = Run([](mpd_connection* connection) {
        DaemonStatus result;
        if (mpd_status* status = mpd_run_status(connection)) {
            result = DaemonStatus::From(status);
            mpd_status_free(status);
        }
        return result;
    });
    m_position.Update(current);
    return current;
}

std::pair<DaemonStatus, std::optional<SongInfo>> DaemonSession::ReadCurrentSong() {
    auto answer = Run([](mpd_connection* connection) {
        std::pair<DaemonStatus, std::optional<SongInfo>> result;
        if (!mpd_command_list_begin(connection, true) || !mpd_send_status(connection) ||
            !mpd_send_current_song(connection) || !mpd_command_list_end(connection)) {
            return result;
        }
        if (mpd_status* status = mpd_recv_status(connection)) {
            result.first = DaemonStatus::From(status);
            mpd_status_free(status);
        } else {
            return result;
        }
        if (!mpd_response_next(connection)) {
            return result;
        }
        if (mpd_song* song = mpd_recv_song(connection)) {
            result.second = SongInfo::From(song);
            mpd_song_free(song);
        }
        mpd_response_finish(connection);
        return result;
    });
    m_position.Update(answer.first);
    if (answer.first.state != DaemonPlayState::Playing &&
        answer.first.state != DaemonPlayState::Paused) {
        answer.second.reset();
    }
    return answer;
}

QString DaemonSession::MusicDirectory() {
    if (m_musicDirectory) {
        return *m_musicDirectory;
    }
    const QString directory = Run([](mpd_connection* connection) {
        QString result;
        if (!mpd_send_command(connection, "config", nullptr)) {
            return result;
        }
        while (mpd_pair* pair = mpd_recv_pair(connection)) {
            if (qstrcmp(pair->name, "music_directory") == 0) {
                result = QString::fromUtf8(pair->value);
            }
            mpd_return_pair(connection, pair);
        }
        mpd_response_finish(connection);
        // Remote clients are refused; they simply do not learn the folder.
        if (mpd_connection_get_error(connection) == MPD_ERROR_SERVER) {
            mpd_connection_clear_error(connection);
        }
        return result;
    });
    m_musicDirectory = directory;
    return directory;
}

QString DaemonSession::FilePath(const QString& uri) {
    if (uri.isEmpty() || uri.contains(QLatin1String("://"))) {
        return QString();
    }
    if (uri.startsWith(u'/')) {
        return uri;
    }
    const QString directory = MusicDirectory();
    if (directory.isEmpty()) {
        return QString();
    }
    QString path = directory;
    if (!path.endsWith(u'/')) {
        path += u'/';
    }
    return path + uri;
}

void DaemonSession::UpdateUri(const QString& uri) {
    const QByteArray name = uri.toUtf8();
    Run([&name](mpd_connection* connection) {
        return mpd_run_update(connection, name.constData());
    });
}

} // namespace Pelorin
