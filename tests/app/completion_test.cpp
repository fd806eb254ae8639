#include "app/completion.h"

#include <cstdint>
#include <gtest/gtest.h>

namespace oxlade::test {

TEST(Completion, EveryModeAndStatusHasItsOutcome) {
    const Outcome ready{DeviceState::ready, {}, "op.deviceReady", ClosingAlert::none};
    const Outcome checkFailed{DeviceState::failed, {}, "op.checkFailed", ClosingAlert::none};
    const Outcome done{{}, 100.0, "op.done", ClosingAlert::done};
    const Outcome error{{}, {}, "op.error", ClosingAlert::failed};
    EXPECT_EQ(outcomeOf("info", 0), ready);
    EXPECT_EQ(outcomeOf("install", 0), done);
    for (const std::int32_t status : {-1, 1, 2, 9, 127, 255, INT32_MIN, INT32_MAX}) {
        EXPECT_EQ(outcomeOf("info", status), checkFailed) << status;
        EXPECT_EQ(outcomeOf("install", status), error) << status;
    }
}

TEST(Completion, AnyOtherModeChangesNothing) {
    for (const auto* mode : {"", "Info", "INSTALL", "install\n", "informational"})
        for (const std::int32_t status : {0, 1, -1}) EXPECT_EQ(outcomeOf(mode, status), Outcome{});
}

} // namespace oxlade::test
