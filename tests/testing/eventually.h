// Waiting for a condition in a test.
#pragma once

#include <chrono>
#include <thread>

namespace oxlade::test {

#ifndef OXLADE_TEST_PATIENCE // the mutation tests wait for much that never happens
#define OXLADE_TEST_PATIENCE 60
#endif
inline constexpr auto deadline = std::chrono::seconds(OXLADE_TEST_PATIENCE);

/// Tests the condition until it holds, with a pause between two tests; false when it does not
/// hold after the deadline. `pause` may run an event loop.
template <typename Condition, typename Pause>
bool eventually(Condition condition, Pause pause) {
    const auto end = std::chrono::steady_clock::now() + deadline;
    while (true) {
        // Asked first: however long this process is held up, the last test comes after that.
        const bool isLast = std::chrono::steady_clock::now() > end;
        if (condition()) return true;
        if (isLast) return false;
        pause();
    }
}

template <typename Condition>
bool eventually(Condition condition) {
    return eventually(condition, [] { std::this_thread::sleep_for(std::chrono::milliseconds(1)); });
}

} // namespace oxlade::test
