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
    // neither are skipped; failures to read are never reported. One walk of the process list.
    bool IsProcessRunning(const QString& name) const;

private:
    QByteArray m_procRoot;
};

} // namespace Pelorin
