#pragma once

#include <QString>
#include <QtGlobal>

// The process-wide atom table that hotkey ids come from: a name added twice (its ASCII letters in
// any case) gives the same atom and counts one more reference; deleting drops one reference and
// the atom goes with the last. Atoms are numbered from 0xC000 up; 0 means none.
namespace Pelorin::GlobalAtoms {

inline constexpr quint16 FirstAtom = 0xC000;
// The longest name an atom keeps.
inline constexpr int MaxNameLength = 255;

// 0 when the name is empty, too long or the table is full.
quint16 Add(const QString& name);
// The atom's name; empty for an atom that does not exist.
QString Name(quint16 atom);
// False for an atom that does not exist.
bool Delete(quint16 atom);
// How many references keep the atom; 0 when it does not exist.
int References(quint16 atom);

} // namespace Pelorin::GlobalAtoms
