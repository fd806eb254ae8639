// A program that runs a helper and ends in mid-run.
//
// Arguments: how it ends ("wait" for a signal, "return", "exit", "abort"); how many more
// processes its user may have, or -1; the keeper's path, the helper's path and arguments. A
// descriptor 3 is its sleep lock. Writes "r" once the helper has written, "x" when the launch
// is refused because the user has too many processes.
#include "tests/platform/recorded_run.h"
#include "tests/testing/processes.h"

#include <cstdlib>
#include <fcntl.h>
#include <sys/resource.h>
#include <system_error>
#include <unistd.h>

namespace oxlade::test {
namespace {

void allowProcesses(int more) {
    if (more < 0) return;
    const rlim_t count = countOf(getpid(), "task") + static_cast<rlim_t>(more);
    const rlimit limit{count, count};
    setrlimit(RLIMIT_NPROC, &limit);
}

int run(std::string_view end, int processes, std::string keeper, std::string helper,
        std::vector<std::string> arguments) {
    LockAtOnce lock{Descriptor(fcntl(3, F_SETFD, FD_CLOEXEC) == 0 ? 3 : -1)};
    RecordedRun going(std::move(helper), std::move(arguments),
                      PosixHelperProcesses(std::move(keeper), &lock));
    allowProcesses(processes);
    if (const auto refusal = going.process->launch())
        return *refusal == std::system_category().message(EAGAIN) && write(1, "x", 1) == 1 ? 0 : 1;
    while (going.chunks() == 0) usleep(1000);
    if (write(1, "r", 1) != 1) return 2;
    while (end == "wait") pause();
    if (end == "exit") std::exit(0);
    if (end == "abort") std::abort();
    return 0;
}

} // namespace
} // namespace oxlade::test

int main(int, char** argv) {
    std::vector<std::string> arguments;
    for (char** argument = argv + 5; *argument != nullptr; ++argument)
        arguments.emplace_back(*argument);
    return oxlade::test::run(argv[1], std::atoi(argv[2]), argv[3], argv[4], arguments);
}
