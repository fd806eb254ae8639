// One run of the helper as a POSIX process.
//
// Two detached threads serve a run. One waits for the process, the other reads
// the pipe, calls both callbacks, and so decides their order. They own the run's
// state and touch nothing else of the program's: it may end while they wait. (One
// more waits for the keeper's end, and one for the login manager's answer.)
#pragma once

#include "interfaces/system.h"
#include "platform/descriptor.h"
#include "platform/keeper.h"
#include "platform/sleep_lock.h"

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

namespace oxlade {

/// What to run, and what the program lends to the run.
struct HelperRunPlan {
    std::string executablePath;
    std::vector<std::string> arguments;
    std::string keeperPath;         ///< empty: no keeper
    SleepLock* sleepLock = nullptr; ///< may be null; asked in launch() only
};

/// Make it with std::make_shared. Both callbacks are let go of after the second
/// one was called, and when the launch fails.
class HelperRun final : public HelperProcess, public std::enable_shared_from_this<HelperRun> {
  public:
    explicit HelperRun(HelperRunPlan plan) : plan_(std::move(plan)) {}

    void setReadabilityHandler(ReadabilityHandler handler) override;
    void setTerminationHandler(TerminationHandler handler) override;
    std::optional<std::string> launch() override;
    std::int32_t terminationStatus() const override { return status_; }

  private:
    int start(DescriptorPair& output, DescriptorPair wake);
    int startThreads(Descriptor output, DescriptorPair wake);
    int startHelper(const Descriptor& output);
    void tellWaiter(pid_t helper);
    void askForSleepLock();
    void keepAwake(Descriptor lock);

    void waitForHelper();
    void readOutput(const Descriptor& output, Descriptor wake);
    void readUntilExit(const Descriptor& output, const Descriptor& wake, std::vector<char>& buffer);
    void readRest(const Descriptor& output, std::vector<char>& buffer);
    void deliver(std::string_view bytes);
    void finish();
    void letGoOfHandlers();

    const HelperRunPlan plan_;
    std::atomic<std::int32_t> status_{0};

    std::mutex mutex_; ///< guards all below
    std::condition_variable told_;
    std::optional<pid_t> helper_; ///< 0: none was started
    ReadabilityHandler onReadable_;
    TerminationHandler onTermination_;
    Keeper keeper_;
    Descriptor sleepLock_; ///< the keeper has a copy
    bool over_ = false;
};

} // namespace oxlade
