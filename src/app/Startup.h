#pragma once

namespace Pelorin {

// The whole program: command-line options, the application object, the shell, the event loop.
int RunPelorin(int argc, char** argv);

} // namespace Pelorin
