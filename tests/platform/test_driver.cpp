// A program that runs a helper and meets its end in mid-run, as the first argument
// says: "wait" (for a signal), "return", "exit" or "abort". Then the keeper's path,
// the helper's path and its arguments follow. A descriptor 3 that it was started
// with is its sleep lock.
#include "platform/helper_process.h"
#include "tests/platform/watched_lock.h"

#include <condition_variable>
#include <cstdlib>
#include <fcntl.h>
#include <mutex>
#include <string_view>
#include <unistd.h>

namespace oxlade {
namespace {

struct FirstOutput {
    std::mutex mutex;
    std::condition_variable changed;
    bool seen = false;
};

int run(std::string_view end, std::string keeper, std::string helper,
        std::vector<std::string> arguments) {
    LockAtOnce lock{Descriptor(fcntl(3, F_SETFD, FD_CLOEXEC) == 0 ? 3 : -1)};
    const auto process = PosixHelperProcesses(std::move(keeper), &lock)
                             .make(std::move(helper), std::move(arguments));
    const auto output = std::make_shared<FirstOutput>();
    process->setReadabilityHandler([output](std::string_view) {
        const std::lock_guard guard(output->mutex);
        output->seen = true;
        output->changed.notify_all();
    });
    if (process->launch()) return 1;
    std::unique_lock guard(output->mutex);
    output->changed.wait(guard, [&] { return output->seen; });
    guard.unlock();
    if (write(1, "r", 1) != 1) return 2;
    while (end == "wait") pause();
    if (end == "exit") std::exit(0);
    if (end == "abort") std::abort();
    return 0;
}

} // namespace
} // namespace oxlade

int main(int argc, char** argv) {
    return oxlade::run(argv[1], argv[2], argv[3], {argv + 4, argv + argc});
}
