// The outcome of a run by its mode and exit status. Pure; any thread.
#pragma once

#include "interfaces/types.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace oxlade {

/// "info" or "install" while a helper runs, empty otherwise. Any other text is allowed;
/// the end of such a run changes nothing.
using HelperMode = std::string;

inline constexpr std::string_view infoMode = "info";
inline constexpr std::string_view installMode = "install";

enum class ClosingAlert { none, done, failed };

/// What changes when a run has ended; absent members leave their value unchanged.
struct Outcome {
    std::optional<DeviceState> deviceState;
    std::optional<double> progress;
    std::optional<std::string_view> operationKey; ///< shown without a percentage
    ClosingAlert alert = ClosingAlert::none;

    friend bool operator==(const Outcome&, const Outcome&) = default;
};

/// Status 0 is success, any other failure.
constexpr Outcome outcomeOf(std::string_view mode, std::int32_t status) {
    const bool succeeded = status == 0;
    if (mode == infoMode) {
        if (succeeded) return {DeviceState::ready, {}, "op.deviceReady", ClosingAlert::none};
        return {DeviceState::failed, {}, "op.checkFailed", ClosingAlert::none};
    }
    if (mode == installMode) {
        if (succeeded) return {{}, 100.0, "op.done", ClosingAlert::done};
        return {{}, {}, "op.error", ClosingAlert::failed};
    }
    return {};
}

} // namespace oxlade
