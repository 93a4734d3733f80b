#include "ConfigValue.h"

namespace Pelorin {

QString QuotedConfigValue(const QString& value) {
    QString escaped = value;
    escaped.replace(u'\\', QStringLiteral("\\\\"));
    escaped.replace(u'"', QStringLiteral("\\\""));
    return u'"' + escaped + u'"';
}

} // namespace Pelorin
