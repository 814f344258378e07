// Starts a program and watches the frames of its window from outside, through the X server.
//
//   FrameWatch start QUIET_MS PROGRAM [ARGUMENT...]
//       Prints "PID", then one line per frame, until the conversation has not changed for
//       QUIET_MS: "MILLISECONDS_SINCE_EXEC X Y WIDTH HEIGHT HASH_OF_THE_CONVERSATION". The program
//       goes on running; its caller ends it.
//   FrameWatch watch MILLISECONDS
//       The same for the window that is there, for that long, without a hash. It gets the focus
//       first.
//   FrameWatch type COUNT
//       Presses the key "a" or the backspace key COUNT times in the window that is there; prints
//       the milliseconds from each press to the frame that shows it.

#include "support/FrameConnection.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

using namespace Talvo::Benchmarks;

namespace {

constexpr int longestStartInMilliseconds = 60'000;

void print(const Frame &frame, std::int64_t start, std::uint64_t hash)
{
    std::printf("%.3f %d %d %d %d %016llx\n", static_cast<double>(frame.time - start) / 1e6,
                frame.x, frame.y, frame.width, frame.height, static_cast<unsigned long long>(hash));
}

int start(int quietMilliseconds, char **command)
{
    FrameConnection connection;
    const std::int64_t begin = monotonicNow();
    const pid_t child = ::fork();
    if (child == 0) {
        ::dup2(STDERR_FILENO, STDOUT_FILENO); // whoever reads our output waits for its end
        ::execv(command[0], command);
        ::_exit(127);
    }
    std::printf("%d\n", child);
    std::fflush(stdout);
    if (!connection.waitForWindow(longestStartInMilliseconds)) {
        std::fprintf(stderr, "No window has appeared\n");
        return 1;
    }
    // A blinking cursor never rests: what counts is the conversation.
    const std::int64_t quiet = std::int64_t{quietMilliseconds} * 1'000'000;
    std::uint64_t shown = 0;
    for (std::int64_t changed = monotonicNow(); monotonicNow() - changed < quiet;) {
        if (const auto frame = connection.nextFrame(quietMilliseconds)) {
            const std::uint64_t hash = connection.conversationHash();
            changed = std::exchange(shown, hash) == hash ? changed : monotonicNow();
            print(*frame, begin, hash);
        }
    }
    return 0;
}

int watch(int milliseconds)
{
    FrameConnection connection;
    if (!connection.findWindow()) {
        return 1;
    }
    connection.focusWindow(); // the cursor blinks
    connection.drain(300);
    const std::int64_t begin = monotonicNow();
    const std::int64_t end = begin + std::int64_t{milliseconds} * 1'000'000;
    for (std::int64_t now = begin; now < end; now = monotonicNow()) {
        const auto rest = static_cast<int>((end - now) / 1'000'000);
        if (const auto frame = connection.nextFrame(rest)) {
            print(*frame, begin, 0);
        }
    }
    return 0;
}

int type(int count)
{
    constexpr int answerLimit = 5'000;
    constexpr int pause = 60;
    FrameConnection connection;
    if (!connection.findWindow()) {
        return 1;
    }
    connection.focusWindow();
    connection.drain(500);
    for (int i = 0; i < count; ++i) {
        const std::int64_t pressed = connection.tapKey(i % 8 < 4 ? "a" : "BackSpace");
        const auto frame = connection.nextFrame(answerLimit);
        if (!frame) {
            std::fprintf(stderr, "A key had no effect\n");
            return 1;
        }
        std::printf("%.3f\n", static_cast<double>(frame->time - pressed) / 1e6);
        connection.drain(pause);
    }
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    const std::string_view mode = argc > 1 ? argv[1] : "";
    if (mode == "start" && argc > 3) {
        return start(std::atoi(argv[2]), argv + 3);
    }
    if (mode == "watch" && argc == 3) {
        return watch(std::atoi(argv[2]));
    }
    if (mode == "type" && argc == 3) {
        return type(std::atoi(argv[2]));
    }
    std::fprintf(stderr, "See the head of FrameWatch.cpp.\n");
    return 2;
}
