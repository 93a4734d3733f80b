#pragma once

#include <QString>
#include <exception>

namespace Pelorin {

// The runtime errors that skin loading, the command language and the player link raise and report.
// Numbers and descriptions keep the original runtime's wording because skin authors see them in
// message boxes ("Unknown Error: Type mismatch").
class VbError : public std::exception {
public:
    enum Number : int {
        CannotLoadFileNumber = 5,
        OverflowNumber = 6,
        SubscriptOutOfRangeNumber = 9,
        FileNotFoundNumber = 53,
        InputPastEndOfFileNumber = 62,
        PathFileAccessErrorNumber = 75,
        TypeMismatchNumber = 13,
        ObjectNotSetNumber = 91,
        ControlArrayElementMissingNumber = 340,
        // A failed player operation; its description is the player's own text.
        PlayerErrorNumber = 1000,
    };

    VbError(int number, QString description);

    int number() const noexcept { return m_number; }
    const QString& description() const noexcept { return m_description; }
    const char* what() const noexcept override { return m_what.constData(); }

    static VbError TypeMismatch();
    static VbError Overflow();
    static VbError SubscriptOutOfRange();
    static VbError FileNotFound();
    static VbError InputPastEndOfFile();
    static VbError PathFileAccessError();
    static VbError ControlArrayElementMissing(int index);
    static VbError ObjectNotSet();
    static VbError CannotLoadFile();
    static VbError Player(const QString& description);

private:
    int m_number;
    QString m_description;
    QByteArray m_what;
};

} // namespace Pelorin
