#pragma once

#include <QString>

namespace Pelorin {

// Looks at local processes and sockets without changing them.

// True when a Unix socket at `path` accepts a connection (the connection is closed at once).
bool UnixSocketAnswers(const QString& path);

// True when process `pid` exists and is not a zombie waiting to be collected.
bool ProcessIsAlive(qint64 pid);

// The kernel's short name of process `pid` (at most 15 characters); empty when unknown.
QString ProcessShortName(qint64 pid);

} // namespace Pelorin
