#pragma once

#include <QString>

namespace Pelorin {

// Moves a file or folder to the user's trash (the freedesktop trash that file managers show).
// False with `error` set when it could not; the file is then where it was.
bool MoveToTrash(const QString& path, QString* error = nullptr);

} // namespace Pelorin
