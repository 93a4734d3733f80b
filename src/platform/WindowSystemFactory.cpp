#include "NullWindowSystem.h"
#include "WindowSystem.h"

#ifdef PELORIN_HAVE_X11
#include "X11WindowSystem.h"
#endif

namespace Pelorin {

std::unique_ptr<WindowSystem> CreateWindowSystem() {
#ifdef PELORIN_HAVE_X11
    if (auto x11 = X11WindowSystem::FromApplication())
        return x11;
#endif
    return std::make_unique<NullWindowSystem>();
}

} // namespace Pelorin
