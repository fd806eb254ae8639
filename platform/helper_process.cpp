#include "platform/helper_process.h"

#include "platform/helper_run.h"

#include <csignal>
#include <utility>

namespace oxlade {

PosixHelperProcesses::PosixHelperProcesses(std::string keeperPath, SleepLock* sleepLock)
    : keeperPath_(std::move(keeperPath)), sleepLock_(sleepLock) {
    std::signal(SIGPIPE, SIG_IGN);
    // Stopped by its terminal, the program would read no more, and a helper with much
    // to say would stand still with the sampler's flash half written.
    for (const int stop : {SIGTSTP, SIGTTIN, SIGTTOU}) std::signal(stop, SIG_IGN);
    struct sigaction atChildren {};
    if (sigaction(SIGCHLD, nullptr, &atChildren) == 0 && atChildren.sa_handler == SIG_IGN)
        std::signal(SIGCHLD, SIG_DFL);
}

std::shared_ptr<HelperProcess> PosixHelperProcesses::make(std::string executablePath,
                                                          std::vector<std::string> arguments) {
    return std::make_shared<HelperRun>(
        HelperRunPlan{std::move(executablePath), std::move(arguments), keeperPath_, sleepLock_});
}

} // namespace oxlade
