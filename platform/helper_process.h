// Makes the runs of the helper.
#pragma once

#include "interfaces/system.h"
#include "platform/sleep_lock.h"

#include <memory>
#include <string>
#include <vector>

namespace oxlade {

/// Main thread. Has the whole program ignore SIGPIPE, which helpers inherit, and the
/// signals by which a terminal stops programs, which they do not; and not ignore SIGCHLD,
/// without which no exit status is to be had.
class PosixHelperProcesses final : public HelperProcesses {
  public:
    /// `keeperPath`: the keeper's executable; runs go on without one that does not
    /// start. `sleepLock` may be null and else outlives this object and is asked
    /// once a run.
    explicit PosixHelperProcesses(std::string keeperPath = {}, SleepLock* sleepLock = nullptr);

    std::shared_ptr<HelperProcess> make(std::string executablePath,
                                        std::vector<std::string> arguments) override;

  private:
    std::string keeperPath_;
    SleepLock* sleepLock_;
};

} // namespace oxlade
