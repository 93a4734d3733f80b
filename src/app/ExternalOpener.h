#pragma once

#include <QString>

namespace Pelorin {

// Opens a document with the desktop's handler, or starts a program detached with the given
// parameters. False when neither worked.
bool OpenExternal(const QString& file, const QString& parameters);

} // namespace Pelorin
