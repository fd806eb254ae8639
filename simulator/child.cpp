#include "simulator/child.h"

#include <chrono>
#include <fcntl.h>
#include <poll.h>
#include <string>
#include <string_view>
#include <thread>
#include <unistd.h>

namespace oxlade::simulator {

namespace {

using Clock = std::chrono::steady_clock;

// A line each millisecond; gives up when nobody reads it.
void talkOnce() {
    constexpr std::string_view line = "The helper's child is still here.\n";
    if (::write(STDOUT_FILENO, line.data(), line.size()) < 0) ::_exit(0);
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

// The parent holds the other end of `lifeline`: it hangs up when the parent ends.
bool parentLives(int lifeline, int waitMs) {
    pollfd entry{lifeline, POLLIN, 0};
    return ::poll(&entry, 1, waitMs) <= 0;
}

[[noreturn]] void beTheChild(const Behaviour& behaviour, int lifeline) {
    while (parentLives(lifeline, behaviour.childTalks ? 0 : -1))
        if (behaviour.childTalks) talkOnce();
    const std::chrono::duration<double> stay(behaviour.childSeconds);
    const auto deadline = Clock::now() + std::chrono::duration_cast<Clock::duration>(stay);
    while (behaviour.childTalks && Clock::now() < deadline) talkOnce();
    std::this_thread::sleep_until(deadline);
    ::_exit(0);
}

} // namespace

void startChild(const Behaviour& behaviour, const Trace& trace) {
    if (behaviour.childSeconds < 0) return;
    int lifeline[2];
    if (::pipe(lifeline) != 0) return;
    const pid_t child = ::fork();
    if (child == 0) {
        ::close(lifeline[1]);
        beTheChild(behaviour, lifeline[0]);
    }
    ::close(lifeline[0]);
    trace.note("child " + std::to_string(child));
}

} // namespace oxlade::simulator
