#include "WindowPictures.h"

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <fstream>
#include <string>

extern char **environ;

namespace
{
using namespace std::chrono_literals;
using Clock = WindowPictures::Clock;

constexpr auto Quiet = 400ms; // nothing drawn for so long: less than a caret takes to blink
constexpr auto Limit = 30s;

/// One row of the kernel's sums over a process's memory, in KiB; -1 when it has none.
long memoryOf(pid_t process, const std::string &row)
{
    std::ifstream file("/proc/" + std::to_string(process) + "/smaps_rollup");
    for (std::string word; file >> word;) {
        long amount = -1;
        if (word == row + ":" && file >> amount)
            return amount;
    }
    return -1;
}

/// The moment at which the started program's window was painted; nothing when it never is.
std::optional<Clock::time_point> awaitWindow(WindowPictures &pictures, pid_t process, Clock::time_point start)
{
    while (Clock::now() - start < Limit) {
        pictures.listen(20ms);
        int status = 0;
        if (::waitpid(process, &status, WNOHANG) == process)
            return std::nullopt;
        const auto drawn = pictures.lastDrawn();
        if (!drawn || Clock::now() - *drawn < Quiet)
            continue;
        if (const auto painted = pictures.firstPainted())
            return painted;
    }
    return std::nullopt;
}
} // namespace

/// bench-window-watch PROGRAM [ARGUMENT…]: starts a program and says how many milliseconds passed until its
/// main window was painted, and how much memory it has once it is. Everything is seen from outside, by the X
/// server and the kernel, so that any program is measured alike. The program is ended.
int main(int argc, char **argv)
{
    xcb_connection_t *connection = argc > 1 ? xcb_connect(nullptr, nullptr) : nullptr;
    if (!connection || xcb_connection_has_error(connection)) {
        std::fprintf(stderr, "Usage: bench-window-watch PROGRAM [ARGUMENT…], on a display\n");
        return 2;
    }
    WindowPictures pictures(connection);
    while (pictures.listen(1ms)) {
    }
    pid_t process = 0;
    const auto start = Clock::now();
    if (::posix_spawn(&process, argv[1], nullptr, nullptr, argv + 1, environ) != 0) {
        std::fprintf(stderr, "%s does not start\n", argv[1]);
        return 1;
    }
    const auto painted = awaitWindow(pictures, process, start);
    const long resident = memoryOf(process, "Rss");
    const long proportional = memoryOf(process, "Pss");
    ::kill(process, SIGTERM);
    ::waitpid(process, nullptr, 0);
    xcb_disconnect(connection);
    if (!painted || resident < 0) {
        std::fprintf(stderr, "%s showed no window\n", argv[1]);
        return 1;
    }
    std::printf("{\"milliseconds\": %.3f, \"rss\": %ld, \"pss\": %ld}\n",
                std::chrono::duration<double, std::milli>(*painted - start).count(), resident, proportional);
    return 0;
}
