#include "player/ProcessChecker.h"

#include "base/TextRules.h"

#include <QFile>
#include <cstdio>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <limits.h>
#include <memory>
#include <unistd.h>

namespace Pelorin {

namespace {

struct DirCloser {
    void operator()(DIR* dir) const { closedir(dir); }
};

bool IsProcessId(const char* entryName) {
    if (*entryName == '\0')
        return false;
    for (const char* c = entryName; *c != '\0'; ++c) {
        if (*c < '0' || *c > '9')
            return false;
    }
    return true;
}

// The executable path of one process into `buffer`; its length, or -1 when the process has
// neither a readable exe link nor a command line (kernel threads, zombies, vanished processes).
ssize_t ExecutablePath(int procFd, const char* pid, char* buffer, size_t size) {
    char relative[sizeof(dirent::d_name) + sizeof("/cmdline")];
    std::snprintf(relative, sizeof relative, "%s/exe", pid);
    const ssize_t linkLength = readlinkat(procFd, relative, buffer, size);
    if (linkLength > 0)
        return linkLength;

    // Another user's process (a system-wide player) hides its exe link but not its command line.
    std::snprintf(relative, sizeof relative, "%s/cmdline", pid);
    const int fd = openat(procFd, relative, O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return -1;
    const ssize_t readLength = read(fd, buffer, size);
    close(fd);
    if (readLength <= 0)
        return -1;
    // The first field ends at the first NUL.
    const void* nul = std::memchr(buffer, '\0', static_cast<size_t>(readLength));
    const ssize_t fieldLength = nul ? static_cast<const char*>(nul) - buffer : readLength;
    return fieldLength > 0 ? fieldLength : -1;
}

} // namespace

ProcessChecker::ProcessChecker(const QString& procRoot) : m_procRoot(QFile::encodeName(procRoot)) {}

bool ProcessChecker::Matches(int procFd, const char* pid, const QString& name) const {
    char path[PATH_MAX];
    const ssize_t length = ExecutablePath(procFd, pid, path, sizeof path);
    if (length < 0)
        return false;
    const QString executable = QFile::decodeName(QByteArray::fromRawData(path, length));
    return Rules::ContainsIgnoringCase(executable, name);
}

bool ProcessChecker::IsProcessRunning(const QString& name) const {
    const std::unique_ptr<DIR, DirCloser> dir(opendir(m_procRoot.constData()));
    if (!dir)
        return false;
    const int procFd = dirfd(dir.get());
    // The guard asks before every player action and every tick: one process to look at instead
    // of every process on the machine.
    if (!m_lastPid.isEmpty() && m_lastName == name && Matches(procFd, m_lastPid.constData(), name))
        return true;
    m_lastPid.clear();
    while (const dirent* entry = readdir(dir.get())) {
        if (!IsProcessId(entry->d_name))
            continue;
        if (Matches(procFd, entry->d_name, name)) {
            m_lastName = name;
            m_lastPid = entry->d_name;
            return true;
        }
    }
    return false;
}

} // namespace Pelorin
