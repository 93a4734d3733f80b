#include "app/Startup.h"

#include <csignal>

int main(int argc, char** argv) {
    // Writing to a player daemon that has just gone raises SIGPIPE, which would end the program;
    // ignored, the failed write is reported as a broken connection and the link reconnects.
    std::signal(SIGPIPE, SIG_IGN);
    return Pelorin::RunPelorin(argc, argv);
}
