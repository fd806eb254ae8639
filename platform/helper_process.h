// Runs of the helper as POSIX processes.
//
// One detached thread serves a run: it starts the keeper and the helper, polls the
// helper's pipe and the end of both processes, reaps them, and calls both callbacks. It
// owns the run's state and nobody joins it: the program may end while it polls.
#pragma once

#include "interfaces/system.h"
#include "platform/child_process.h"
#include "platform/descriptor.h"
#include "platform/keeper.h"
#include "platform/output_buffer.h"
#include "platform/sleep_lock.h"

#include <atomic>
#include <cstdint>
#include <future>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace oxlade {

/// What to run, and what the program lends to the run.
struct HelperPlan {
    std::string executablePath;
    std::vector<std::string> arguments;
    std::string keeperPath;         ///< empty: no keeper
    SleepLock* sleepLock = nullptr; ///< may be null; used in launch() only
};

/// Make it with std::make_shared. Both callbacks are destroyed after the second one was
/// called, and before a failed launch returns.
class PosixHelperProcess final : public HelperProcess,
                                 public std::enable_shared_from_this<PosixHelperProcess> {
  public:
    explicit PosixHelperProcess(HelperPlan plan) : plan_(std::move(plan)) {}

    void setReadabilityHandler(ReadabilityHandler handler) override;
    void setTerminationHandler(TerminationHandler handler) override;
    std::optional<std::string> launch() override;
    std::int32_t terminationStatus() const override { return status_; }

  private:
    void askForSleepLock();
    void keepAwake(Descriptor lock);

    // All below: the run's thread.
    void run(std::promise<int> started);
    int start(Descriptor& output);
    int startHelper(const Descriptor& output, Keeper& keeper);
    void serve(Descriptor output);
    void readOutput(Descriptor& output);
    void readRest(const Descriptor& output);
    void deliver(const SharedBytes& bytes);
    void finish();
    void clearHandlers();

    const HelperPlan plan_;
    std::atomic<std::int32_t> status_{0};
    ChildProcess helper_; ///< the run's thread
    OutputBuffer buffer_; ///< the run's thread

    std::mutex mutex_; ///< guards all below, but not the keeper's process
    ReadabilityHandler onReadable_;
    TerminationHandler onTermination_;
    Keeper keeper_;
    Descriptor sleepLock_; ///< the keeper has a copy
    bool isOver_ = false;
};

/// Main thread. Has the whole program ignore SIGPIPE, which helpers inherit, and do nothing
/// at the signals by which a terminal stops programs, which nobody inherits; and not
/// ignore SIGCHLD, without which there is no exit status.
class PosixHelperProcesses final : public HelperProcesses {
  public:
    /// `keeperPath`: the keeper's executable; a run goes on without a keeper that cannot be
    /// started. `sleepLock` may be null, else it outlives this object; it is asked once a run.
    explicit PosixHelperProcesses(std::string keeperPath = {}, SleepLock* sleepLock = nullptr);

    std::shared_ptr<HelperProcess> make(std::string executablePath,
                                        std::vector<std::string> arguments) override;

  private:
    std::string keeperPath_;
    SleepLock* sleepLock_;
};

} // namespace oxlade
