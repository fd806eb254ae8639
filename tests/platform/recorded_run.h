// One real run of the helper, and what it reported; sleep locks that a test gives out.
#pragma once

#include "platform/helper_process.h"
#include "tests/testing/eventually.h"

#include <condition_variable>
#include <gtest/gtest.h>
#include <memory>
#include <mutex>
#include <poll.h>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <vector>

namespace oxlade::test {

class RecordedRun final {
  public:
    /// Without `processes` it runs without a keeper.
    RecordedRun(std::string path, std::vector<std::string> arguments,
                PosixHelperProcesses processes = PosixHelperProcesses())
        : process(processes.make(std::move(path), std::move(arguments))) {
        process->setReadabilityHandler([state = state_](const SharedBytes& bytes) {
            const std::lock_guard lock(state->mutex);
            state->text += bytes.view;
            ++(bytes.view.empty() ? state->ends : state->chunks);
            state->afterExit = state->afterExit || state->exits > 0;
            state->changed.notify_all();
        });
        process->setTerminationHandler([state = state_] {
            const std::lock_guard lock(state->mutex);
            ++state->exits;
            state->changed.notify_all();
        });
    }

    /// Launches it and waits for this part of its output.
    bool startUntil(std::string_view part) {
        EXPECT_EQ(process->launch(), std::nullopt);
        return waitFor([this, part] { return state_->text.find(part) != std::string::npos; });
    }
    bool waitForExit() {
        return waitFor([this] { return state_->exits > 0; });
    }
    bool waitForEnd() {
        return waitFor([this] { return state_->ends > 0; });
    }
    /// The exit status of the whole run; none when it cannot be launched or does not end.
    std::optional<std::int32_t> finish() {
        if (process->launch() || !waitForExit()) return std::nullopt;
        return process->terminationStatus();
    }

    std::string text() const { return locked(state_->text); }
    int chunks() const { return locked(state_->chunks); }
    int ends() const { return locked(state_->ends); }
    int exits() const { return locked(state_->exits); }
    int calls() const { return chunks() + ends() + exits(); }
    bool heardAfterExit() const { return locked(state_->afterExit); }

    std::shared_ptr<HelperProcess> process;

  private:
    struct State {
        std::mutex mutex;
        std::condition_variable changed;
        std::string text;
        int chunks = 0;
        int ends = 0;
        int exits = 0;
        bool afterExit = false;
    };

    template <typename Value>
    Value locked(const Value& value) const {
        const std::lock_guard lock(state_->mutex);
        return value;
    }
    template <typename Condition>
    bool waitFor(Condition condition) {
        std::unique_lock lock(state_->mutex);
        return state_->changed.wait_for(lock, deadline, condition);
    }

    std::shared_ptr<State> state_ = std::make_shared<State>();
};

/// A lock and whether anybody still has it open.
class WatchedLock final {
  public:
    Descriptor lock; ///< to be given away

    WatchedLock() {
        if (auto pipe = makePipe()) {
            watch_ = std::move(pipe->first);
            lock = std::move(pipe->second);
        }
    }
    /// Also while it is only on its way to somebody.
    bool isHeld() const {
        pollfd watched{watch_.get(), POLLIN, 0};
        return poll(&watched, 1, 0) == 0;
    }
    bool isReleased() const {
        return eventually([this] { return !isHeld(); });
    }
    /// As /proc names it.
    std::string name() const {
        struct stat facts {};
        fstat(watch_.get(), &facts);
        return "pipe:[" + std::to_string(facts.st_ino) + ']';
    }

  private:
    Descriptor watch_;
};

/// Arrives as soon as it is asked for; never, if there is none.
class LockAtOnce final : public SleepLock {
  public:
    explicit LockAtOnce(Descriptor lock) : lock_{std::move(lock)} {}
    void acquire(Arrival arrived) override {
        if (lock_) arrived(std::move(lock_));
    }

  private:
    Descriptor lock_;
};

} // namespace oxlade::test
