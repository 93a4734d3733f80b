#include "player/PlayerError.h"

namespace Pelorin::PlayerError {

VbError NotSupported(const QString& operation) {
    return VbError::Player(QStringLiteral("The player does not support ") + operation);
}

VbError NoSuchProperty() {
    return VbError::Player(QStringLiteral("Object doesn't support this property or method"));
}

} // namespace Pelorin::PlayerError
