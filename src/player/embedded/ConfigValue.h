#pragma once

#include <QString>

namespace Pelorin {

// A value as the player daemon's configuration file writes it: in double quotes, with "\" and
// '"' escaped by a backslash. Pelorin's private player and the test fixture write their
// configurations with it.
QString QuotedConfigValue(const QString& value);

} // namespace Pelorin
