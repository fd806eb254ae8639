// One real run of the helper, and what it reported.
#pragma once

#include "platform/helper_process.h"

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace oxlade {

inline constexpr auto patience = std::chrono::seconds(30);

/// Asks again and again until it is so; false when the patience is over.
template <typename Condition>
bool eventually(Condition condition, std::chrono::milliseconds atMost = patience) {
    const auto end = std::chrono::steady_clock::now() + atMost;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

class RecordedRun final {
  public:
    /// Without `processes` of one's own it runs without a keeper.
    RecordedRun(std::string path, std::vector<std::string> arguments,
                PosixHelperProcesses processes = PosixHelperProcesses())
        : process(processes.make(std::move(path), std::move(arguments))) {
        process->setReadabilityHandler([state = state_](std::string_view bytes) {
            const std::lock_guard lock(state->mutex);
            state->text += bytes;
            ++(bytes.empty() ? state->ends : state->chunks);
            state->afterExit = state->afterExit || state->exits > 0;
            state->changed.notify_all();
        });
        process->setTerminationHandler([state = state_] {
            const std::lock_guard lock(state->mutex);
            ++state->exits;
            state->changed.notify_all();
        });
    }

    bool waitForExit() {
        return waitFor([this] { return state_->exits > 0; });
    }
    bool waitForEnd() {
        return waitFor([this] { return state_->ends > 0; });
    }
    bool waitForText(std::string_view part) {
        return waitFor([this, part] { return state_->text.find(part) != std::string::npos; });
    }

    std::string text() const { return locked(state_->text); }
    int chunks() const { return locked(state_->chunks); }
    int ends() const { return locked(state_->ends); }
    int exits() const { return locked(state_->exits); }
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
        return state_->changed.wait_for(lock, patience, condition);
    }

    std::shared_ptr<State> state_ = std::make_shared<State>();
};

} // namespace oxlade
