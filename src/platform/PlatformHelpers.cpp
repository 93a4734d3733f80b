#include "PlatformHelpers.h"

#include "base/ProgramPaths.h"

#include <QCursor>

namespace Pelorin {

QPoint CursorPosition() {
    return QCursor::pos();
}

QString TemporaryFolder() {
    return ProgramPaths::TemporaryFolder();
}

} // namespace Pelorin
