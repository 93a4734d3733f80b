#include "app/Startup.h"

int main(int argc, char** argv) {
    return Pelorin::RunPelorin(argc, argv);
}
