#pragma once

#include "base/VbError.h"

#include <QString>

// The player link's own error texts, so every backend words them alike.
namespace Pelorin::PlayerError {

// "The player does not support <operation>": the backend cannot perform the operation.
VbError NotSupported(const QString& operation);

// A late-bound property name the track does not have or cannot write; worded as the original
// automation layer worded it.
VbError NoSuchProperty();

} // namespace Pelorin::PlayerError
