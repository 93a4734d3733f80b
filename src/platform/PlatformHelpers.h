#pragma once

#include <QPoint>
#include <QString>

namespace Pelorin {

// The pointer's position on the screen, in (logical) pixels.
QPoint CursorPosition();

// The per-user private temporary folder, ending in "/" (the artwork file lives there); empty
// when no private folder can be made.
QString TemporaryFolder();

} // namespace Pelorin
