// Watches windows from outside, as the X server sees them, for bench/perf/run-all.sh.
//
//   perf-screen-probe count SECONDS WINDOW...
//       Counts each window's screen updates over SECONDS: the X server reports every drawing
//       request on the window (DAMAGE extension, raw rectangles); rectangles that arrive within
//       3 ms of the previous one belong to the same update. Prints one line per window:
//       "WINDOW updates N rectangles M".
//
//   perf-screen-probe track-change WINDOW X Y W H CHANGES SOCKET
//       CHANGES times: starts "mpc -h SOCKET idle player", lets it settle, then runs
//       "mpc -h SOCKET -q next" and times, from just before that exec, (a) mpc idle's wake-up
//       (its line on stdout) and (b) the first change of the pixels in the rectangle X, Y, W, H of
//       WINDOW (window coordinates), read after each drawing request the server reports. Prints
//       one line per change ("change I mpc_idle_ms M repaint_ms R") and then the medians.
//
// Windows are X window ids (decimal or 0x hex), as xdotool prints them.

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>
#include <optional>
#include <poll.h>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>
#include <xcb/damage.h>
#include <xcb/xcb.h>

namespace {

using Clock = std::chrono::steady_clock;

struct FreeDeleter {
    void operator()(void* p) const { std::free(p); }
};

double MsSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

std::uint8_t DamageEventCode(xcb_connection_t* x) {
    const xcb_query_extension_reply_t* extension = xcb_get_extension_data(x, &xcb_damage_id);
    if (extension == nullptr || extension->present == 0)
        return 0;
    std::unique_ptr<xcb_damage_query_version_reply_t, FreeDeleter> version(
        xcb_damage_query_version_reply(x, xcb_damage_query_version(x, 1, 1), nullptr));
    if (!version)
        return 0;
    return static_cast<std::uint8_t>(extension->first_event + XCB_DAMAGE_NOTIFY);
}

void WatchDamage(xcb_connection_t* x, xcb_window_t window) {
    const xcb_damage_damage_t damage = xcb_generate_id(x);
    xcb_damage_create(x, damage, window, XCB_DAMAGE_REPORT_LEVEL_RAW_RECTANGLES);
    xcb_flush(x);
}

// The pixels of a rectangle of a window, or nothing when the server does not answer.
std::optional<std::vector<std::uint8_t>> Pixels(xcb_connection_t* x, xcb_window_t window, int px,
                                                int py, int w, int h) {
    const xcb_get_image_cookie_t cookie =
        xcb_get_image(x, XCB_IMAGE_FORMAT_Z_PIXMAP, window, static_cast<std::int16_t>(px),
                      static_cast<std::int16_t>(py), static_cast<std::uint16_t>(w),
                      static_cast<std::uint16_t>(h), 0xFFFFFFFFu);
    std::unique_ptr<xcb_get_image_reply_t, FreeDeleter> reply(
        xcb_get_image_reply(x, cookie, nullptr));
    if (!reply)
        return std::nullopt;
    const std::uint8_t* data = xcb_get_image_data(reply.get());
    return std::vector<std::uint8_t>(data, data + xcb_get_image_data_length(reply.get()));
}

xcb_window_t WindowId(const char* text) {
    return static_cast<xcb_window_t>(std::strtoul(text, nullptr, 0));
}

int Count(xcb_connection_t* x, std::uint8_t damageEvent, int seconds,
          const std::vector<xcb_window_t>& windows) {
    struct Tally {
        long updates = 0;
        long rectangles = 0;
        std::uint32_t lastTime = 0;
        bool any = false;
    };
    std::map<xcb_window_t, Tally> tallies;
    for (const xcb_window_t window : windows) {
        tallies[window];
        WatchDamage(x, window);
    }
    const Clock::time_point start = Clock::now();
    const int fd = xcb_get_file_descriptor(x);
    while (MsSince(start) < seconds * 1000.0) {
        pollfd waiting{fd, POLLIN, 0};
        ::poll(&waiting, 1, 50);
        while (xcb_generic_event_t* event = xcb_poll_for_event(x)) {
            if ((event->response_type & 0x7F) == damageEvent) {
                const auto* notify = reinterpret_cast<xcb_damage_notify_event_t*>(event);
                const auto found = tallies.find(notify->drawable);
                if (found != tallies.end()) {
                    Tally& tally = found->second;
                    ++tally.rectangles;
                    if (!tally.any || notify->timestamp - tally.lastTime > 3)
                        ++tally.updates;
                    tally.any = true;
                    tally.lastTime = notify->timestamp;
                }
            }
            std::free(event);
        }
        if (xcb_connection_has_error(x)) {
            std::fprintf(stderr, "perf-screen-probe: the X connection broke\n");
            return 1;
        }
    }
    for (const xcb_window_t window : windows)
        std::printf("0x%x updates %ld rectangles %ld\n", window, tallies[window].updates,
                    tallies[window].rectangles);
    return 0;
}

pid_t Spawn(const std::vector<std::string>& command, int stdoutFd) {
    const pid_t child = fork();
    if (child == 0) {
        if (stdoutFd >= 0)
            ::dup2(stdoutFd, STDOUT_FILENO);
        std::vector<char*> argv;
        for (const std::string& part : command)
            argv.push_back(const_cast<char*>(part.c_str()));
        argv.push_back(nullptr);
        execvp(argv[0], argv.data());
        _exit(127);
    }
    return child;
}

double Median(std::vector<double> values) {
    if (values.empty())
        return -1;
    std::sort(values.begin(), values.end());
    const std::size_t n = values.size();
    return n % 2 ? values[n / 2] : (values[n / 2 - 1] + values[n / 2]) / 2;
}

int TrackChange(xcb_connection_t* x, std::uint8_t damageEvent, xcb_window_t window, int px, int py,
                int w, int h, int changes, const std::string& socket) {
    WatchDamage(x, window);
    const int xfd = xcb_get_file_descriptor(x);
    std::vector<double> idleTimes;
    std::vector<double> repaintTimes;
    int missed = 0;
    for (int i = 1; i <= changes; ++i) {
        int pipeFds[2];
        if (::pipe(pipeFds) != 0) {
            std::perror("perf-screen-probe: pipe");
            return 1;
        }
        const pid_t idle = Spawn({"mpc", "-h", socket, "idle", "player"}, pipeFds[1]);
        ::close(pipeFds[1]);
        // mpc has connected and waits; the window has finished any paint of its own.
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        while (xcb_generic_event_t* event = xcb_poll_for_event(x))
            std::free(event);
        const std::optional<std::vector<std::uint8_t>> before = Pixels(x, window, px, py, w, h);
        if (!before) {
            std::fprintf(stderr, "perf-screen-probe: cannot read window 0x%x\n", window);
            return 1;
        }

        const Clock::time_point start = Clock::now();
        const pid_t trigger = Spawn({"mpc", "-h", socket, "-q", "next"}, -1);
        double idleMs = -1;
        double repaintMs = -1;
        while ((idleMs < 0 || repaintMs < 0) && MsSince(start) < 3000) {
            pollfd waiting[2] = {{xfd, POLLIN, 0}, {pipeFds[0], POLLIN, 0}};
            ::poll(waiting, idleMs < 0 ? 2 : 1, 20);
            if (idleMs < 0 && (waiting[1].revents & (POLLIN | POLLHUP)) != 0)
                idleMs = MsSince(start);
            bool drawn = false;
            while (xcb_generic_event_t* event = xcb_poll_for_event(x)) {
                if ((event->response_type & 0x7F) == damageEvent)
                    drawn = true;
                std::free(event);
            }
            if (drawn && repaintMs < 0) {
                const std::optional<std::vector<std::uint8_t>> now =
                    Pixels(x, window, px, py, w, h);
                if (now && *now != *before)
                    repaintMs = MsSince(start);
            }
        }
        ::waitpid(trigger, nullptr, 0);
        ::kill(idle, SIGTERM);
        ::waitpid(idle, nullptr, 0);
        ::close(pipeFds[0]);
        if (idleMs < 0 || repaintMs < 0) {
            ++missed;
            std::printf("change %d missed (mpc_idle_ms %.2f repaint_ms %.2f)\n", i, idleMs,
                        repaintMs);
            continue;
        }
        idleTimes.push_back(idleMs);
        repaintTimes.push_back(repaintMs);
        std::printf("change %d mpc_idle_ms %.2f repaint_ms %.2f\n", i, idleMs, repaintMs);
        std::fflush(stdout);
    }
    std::vector<double> differences;
    for (std::size_t i = 0; i < idleTimes.size(); ++i)
        differences.push_back(repaintTimes[i] - idleTimes[i]);
    std::printf("median mpc_idle_ms %.2f repaint_ms %.2f difference_ms %.2f changes %zu missed "
                "%d\n",
                Median(idleTimes), Median(repaintTimes), Median(differences), idleTimes.size(),
                missed);
    return idleTimes.empty() ? 1 : 0;
}

} // namespace

int main(int argc, char** argv) {
    const bool count = argc >= 4 && std::strcmp(argv[1], "count") == 0;
    const bool trackChange = argc == 9 && std::strcmp(argv[1], "track-change") == 0;
    if (!count && !trackChange) {
        std::fprintf(stderr, "Usage: perf-screen-probe count SECONDS WINDOW...\n"
                             "       perf-screen-probe track-change WINDOW X Y W H CHANGES "
                             "SOCKET\n");
        return 2;
    }
    std::signal(SIGPIPE, SIG_IGN);
    xcb_connection_t* x = xcb_connect(nullptr, nullptr);
    if (xcb_connection_has_error(x)) {
        std::fprintf(stderr, "perf-screen-probe: cannot open the X display\n");
        return 2;
    }
    const std::uint8_t damageEvent = DamageEventCode(x);
    if (damageEvent == 0) {
        std::fprintf(stderr, "perf-screen-probe: the X server has no DAMAGE extension\n");
        return 2;
    }
    int status = 0;
    if (count) {
        std::vector<xcb_window_t> windows;
        for (int i = 3; i < argc; ++i)
            windows.push_back(WindowId(argv[i]));
        status = Count(x, damageEvent, std::atoi(argv[2]), windows);
    } else {
        status =
            TrackChange(x, damageEvent, WindowId(argv[2]), std::atoi(argv[3]), std::atoi(argv[4]),
                        std::atoi(argv[5]), std::atoi(argv[6]), std::atoi(argv[7]), argv[8]);
    }
    xcb_disconnect(x);
    return status;
}
