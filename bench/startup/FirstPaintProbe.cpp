// Measures the time from starting a program to the first paint of its window, as the X server
// sees it: the probe watches one pixel of the screen where the window will appear, and the window
// has painted when that pixel no longer shows the screen's background colour.
//
//   first-paint-probe X Y TIMEOUT_MS -- PROGRAM [ARGUMENTS...]
//
// Prints the milliseconds from just before the program's exec to the first changed pixel, and
// that pixel's colour (RRGGBB, to see that it is the window's paint and not, say, a cleared
// background), then ends the program. The pixel is polled once a millisecond. Exit status 1 when
// the window did not paint within the time limit (or the program ended first).

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>
#include <xcb/xcb.h>

namespace {

using Clock = std::chrono::steady_clock;

struct FreeDeleter {
    void operator()(void* p) const { std::free(p); }
};

// The 24-bit colour of one pixel of the screen, or none when the server does not answer.
std::optional<std::uint32_t> ScreenPixel(xcb_connection_t* x, xcb_window_t root, int px, int py) {
    const xcb_get_image_cookie_t cookie =
        xcb_get_image(x, XCB_IMAGE_FORMAT_Z_PIXMAP, root, static_cast<std::int16_t>(px),
                      static_cast<std::int16_t>(py), 1, 1, 0xFFFFFFFFu);
    std::unique_ptr<xcb_get_image_reply_t, FreeDeleter> reply(
        xcb_get_image_reply(x, cookie, nullptr));
    if (!reply || xcb_get_image_data_length(reply.get()) < 3)
        return std::nullopt;
    const std::uint8_t* data = xcb_get_image_data(reply.get());
    // Z pixmap at depth 24 on a little-endian server: blue, green, red, pad.
    return static_cast<std::uint32_t>(data[0]) | static_cast<std::uint32_t>(data[1]) << 8 |
           static_cast<std::uint32_t>(data[2]) << 16;
}

void EndChild(pid_t child) {
    kill(child, SIGTERM);
    for (int i = 0; i < 200; ++i) {
        if (waitpid(child, nullptr, WNOHANG) == child)
            return;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 6 || std::strcmp(argv[4], "--") != 0) {
        std::fprintf(stderr, "Usage: first-paint-probe X Y TIMEOUT_MS -- PROGRAM [ARGUMENTS...]\n");
        return 2;
    }
    const int px = std::atoi(argv[1]);
    const int py = std::atoi(argv[2]);
    const auto timeout = std::chrono::milliseconds(std::atoi(argv[3]));

    xcb_connection_t* x = xcb_connect(nullptr, nullptr);
    if (xcb_connection_has_error(x)) {
        std::fprintf(stderr, "first-paint-probe: cannot open the X display\n");
        return 2;
    }
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(x)).data->root;

    // The screen's background where the window will be. A window of an earlier run may still be
    // going away (the server tears it down after its program ended): the clock starts only once
    // the pixel has held still for 100 ms.
    std::optional<std::uint32_t> background = ScreenPixel(x, root, px, py);
    int stillFor = 0;
    for (int i = 0; i < 600 && stillFor < 20; ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
        const std::optional<std::uint32_t> now = ScreenPixel(x, root, px, py);
        stillFor = now && background && *now == *background ? stillFor + 1 : 0;
        background = now;
    }
    if (!background || stillFor < 20) {
        std::fprintf(stderr, "first-paint-probe: the screen at %d,%d does not hold still\n", px,
                     py);
        return 2;
    }

    const Clock::time_point start = Clock::now();
    const pid_t child = fork();
    if (child < 0) {
        std::perror("first-paint-probe: fork");
        return 2;
    }
    if (child == 0) {
        execvp(argv[5], argv + 5);
        std::fprintf(stderr, "first-paint-probe: cannot run %s: %s\n", argv[5],
                     std::strerror(errno));
        _exit(127);
    }

    int status = 1;
    while (Clock::now() - start < timeout) {
        const std::optional<std::uint32_t> pixel = ScreenPixel(x, root, px, py);
        if (pixel && *pixel != *background) {
            const double ms =
                std::chrono::duration<double, std::milli>(Clock::now() - start).count();
            std::printf("%.1f %06x\n", ms, *pixel);
            status = 0;
            break;
        }
        if (waitpid(child, nullptr, WNOHANG) == child) {
            std::fprintf(stderr, "first-paint-probe: %s ended before painting\n", argv[5]);
            xcb_disconnect(x);
            return 1;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    if (status != 0)
        std::fprintf(stderr, "first-paint-probe: no paint at %d,%d within %s ms\n", px, py,
                     argv[3]);
    EndChild(child);
    xcb_disconnect(x);
    return status;
}
