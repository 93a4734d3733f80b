#include "player/embedded/LocalProbe.h"

#include <QFile>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace Pelorin {

bool UnixSocketAnswers(const QString& path) {
    const QByteArray name = QFile::encodeName(path);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (name.isEmpty() || static_cast<size_t>(name.size()) >= sizeof(address.sun_path)) {
        return false;
    }
    std::memcpy(address.sun_path, name.constData(), static_cast<size_t>(name.size()));
    const int fd = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (fd < 0) {
        return false;
    }
    const bool connected =
        ::connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0;
    ::close(fd);
    return connected;
}

bool ProcessIsAlive(qint64 pid) {
    if (pid <= 0 || ::kill(static_cast<pid_t>(pid), 0) != 0) {
        return pid > 0 && errno == EPERM;
    }
    // A zombie still answers kill(); its state letter in /proc is "Z".
    QFile stat(QStringLiteral("/proc/%1/stat").arg(pid));
    if (!stat.open(QIODevice::ReadOnly)) {
        return true;
    }
    const QByteArray text = stat.readAll();
    const qsizetype end = text.lastIndexOf(')');
    return end < 0 || end + 2 >= text.size() || text.at(end + 2) != 'Z';
}

QString ProcessShortName(qint64 pid) {
    QFile comm(QStringLiteral("/proc/%1/comm").arg(pid));
    if (pid <= 0 || !comm.open(QIODevice::ReadOnly)) {
        return QString();
    }
    return QString::fromLocal8Bit(comm.readAll()).trimmed();
}

} // namespace Pelorin
