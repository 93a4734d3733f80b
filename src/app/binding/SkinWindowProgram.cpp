#include "app/binding/SkinWindowProgram.h"

#include "player/link/PlayerApplication.h"

namespace Pelorin {

IiTunes* SharedPlayer(PlayerApplication* application) {
    if (application == nullptr)
        return nullptr;
    if (IiTunes* player = application->iTunesApp())
        return player;
    return application->IsPlayerRunning() ? application->CreateiTunesApp() : nullptr;
}

} // namespace Pelorin
