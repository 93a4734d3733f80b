#include "hotkeys/GlobalAtoms.h"

#include <QHash>

namespace Pelorin::GlobalAtoms {

namespace {

struct Entry {
    QString name;
    int references = 0;
};

struct Table {
    QHash<quint16, Entry> byAtom;
    QHash<QString, quint16> byName; // folded names
    quint16 next = FirstAtom;
};

// Names match without regard to the case of ASCII letters only, so no two different names of
// other scripts ever share an atom through a case mapping ("ß" and "SS").
QString Folded(QString name) {
    for (QChar& c : name) {
        if (c >= u'a' && c <= u'z')
            c = QChar(c.unicode() - 32);
    }
    return name;
}

Table& TheTable() {
    static Table table;
    return table;
}

} // namespace

quint16 Add(const QString& name) {
    if (name.isEmpty() || name.size() > MaxNameLength)
        return 0;
    Table& t = TheTable();
    const QString key = Folded(name);
    const auto known = t.byName.constFind(key);
    if (known != t.byName.cend()) {
        ++t.byAtom[*known].references;
        return *known;
    }
    constexpr int Slots = 0x10000 - FirstAtom;
    if (t.byAtom.size() >= Slots)
        return 0;
    // Freed atoms are used again, so a long run of reloads never runs out.
    while (t.byAtom.contains(t.next))
        t.next = t.next == 0xFFFF ? FirstAtom : static_cast<quint16>(t.next + 1);
    const quint16 atom = t.next;
    t.byAtom.insert(atom, Entry{name, 1});
    t.byName.insert(key, atom);
    return atom;
}

QString Name(quint16 atom) {
    return TheTable().byAtom.value(atom).name;
}

bool Delete(quint16 atom) {
    Table& t = TheTable();
    const auto entry = t.byAtom.find(atom);
    if (entry == t.byAtom.end())
        return false;
    if (--entry->references <= 0) {
        t.byName.remove(Folded(entry->name));
        t.byAtom.erase(entry);
    }
    return true;
}

int References(quint16 atom) {
    return TheTable().byAtom.value(atom).references;
}

} // namespace Pelorin::GlobalAtoms
