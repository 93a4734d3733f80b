#include "VbError.h"

namespace Pelorin {

VbError::VbError(int number, QString description)
    : m_number(number), m_description(std::move(description)), m_what(m_description.toUtf8()) {}

VbError VbError::TypeMismatch() {
    return {TypeMismatchNumber, QStringLiteral("Type mismatch")};
}

VbError VbError::Overflow() {
    return {OverflowNumber, QStringLiteral("Overflow")};
}

VbError VbError::SubscriptOutOfRange() {
    return {SubscriptOutOfRangeNumber, QStringLiteral("Subscript out of range")};
}

VbError VbError::FileNotFound() {
    return {FileNotFoundNumber, QStringLiteral("File not found")};
}

VbError VbError::InputPastEndOfFile() {
    return {InputPastEndOfFileNumber, QStringLiteral("Input past end of file")};
}

VbError VbError::PathFileAccessError() {
    return {PathFileAccessErrorNumber, QStringLiteral("Path/File access error")};
}

VbError VbError::ControlArrayElementMissing(int index) {
    return {ControlArrayElementMissingNumber,
            QStringLiteral("Control array element '%1' doesn't exist").arg(index)};
}

VbError VbError::ObjectNotSet() {
    return {ObjectNotSetNumber, QStringLiteral("Object variable or With block variable not set")};
}

VbError VbError::CannotLoadFile() {
    return {CannotLoadFileNumber, QStringLiteral("Cannot load file")};
}

VbError VbError::Player(const QString& description) {
    return {PlayerErrorNumber, description};
}

} // namespace Pelorin
