#pragma once

#include <QtGlobal>

// Windows virtual-key codes, the key vocabulary of skins and personal.ini, as X key symbols.
namespace Pelorin::VirtualKeys {

// The X key symbol of a virtual-key code; 0 for a code that names no key on X.
quint32 KeySym(int vKey);

} // namespace Pelorin::VirtualKeys
