// Feeds arbitrary key specifications, as skins and personal.ini write them, to the key-name
// rules, and the combination's names to the process-wide atom table. Any crash, hang, sanitizer
// report or broken invariant is a finding: the only error a specification may raise is an
// overflow, parsing is deterministic, and an atom gives back the name it was made from.
#include "base/VbError.h"
#include "hotkeys/GlobalAtoms.h"
#include "hotkeys/KeyNames.h"

#include <QCoreApplication>
#include <QString>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

using namespace Pelorin;

void Check(bool condition) {
    if (!condition)
        std::abort();
}

bool Same(const KeyCombination& a, const KeyCombination& b) {
    return a.alt == b.alt && a.shift == b.shift && a.control == b.control && a.win == b.win &&
           a.vKey == b.vKey;
}

// Atom names are compared without regard to the case of ASCII letters (the names the program
// makes are ASCII); other letters' case mappings need not round-trip.
QString AsciiLower(QString text) {
    for (QChar& c : text) {
        if (c >= u'A' && c <= u'Z')
            c = QChar(c.unicode() + 32);
    }
    return text;
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QString specification =
        QString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    KeyCombination first;
    bool overflowed = false;
    try {
        first = ParseKeySpecification(specification);
    } catch (const VbError& error) {
        Check(error.number() == VbError::OverflowNumber);
        overflowed = true;
    }
    if (!overflowed) {
        Check(Same(first, ParseKeySpecification(specification)));
        // A name that sets nothing leaves the combination as it was.
        KeyCombination copy = first;
        if (ApplyKeyName(copy, QStringLiteral("NOSUCHKEY")) == 0)
            Check(Same(copy, first));
    }

    const quint16 atom = GlobalAtoms::Add(specification);
    if (specification.isEmpty() || specification.size() > GlobalAtoms::MaxNameLength) {
        Check(atom == 0);
    } else {
        Check(atom >= GlobalAtoms::FirstAtom);
        Check(GlobalAtoms::Name(atom) == specification);
        Check(GlobalAtoms::Add(AsciiLower(specification)) == atom);
        Check(GlobalAtoms::References(atom) == 2);
        Check(GlobalAtoms::Delete(atom));
        Check(GlobalAtoms::Delete(atom));
        Check(GlobalAtoms::References(atom) == 0);
    }
    return 0;
}
