#pragma once

#include <QByteArray>
#include <QString>

namespace Pelorin {

// Tells whether a process runs whose executable path contains a name, without talking to that
// process: the player link asks it before connecting, because connecting can start the player.
class ProcessChecker {
public:
    // procRoot is the process file system to walk; tests pass a fake tree.
    explicit ProcessChecker(const QString& procRoot = QStringLiteral("/proc"));

    // True when some process's executable path (the exe link, or the first field of its command
    // line when the link cannot be read) contains `name` anywhere, ignoring case. Processes with
    // neither are skipped; failures to read are never reported. The process that matched last
    // time is asked first: while it lives, the answer is known without a walk of the process
    // list; once it has gone (or its id now belongs to another program) the list is walked again.
    bool IsProcessRunning(const QString& name) const;

private:
    bool Matches(int procFd, const char* pid, const QString& name) const;

    QByteArray m_procRoot;
    mutable QString m_lastName;
    mutable QByteArray m_lastPid;
};

} // namespace Pelorin
