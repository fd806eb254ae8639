// What the end of a run means, as a table. Pure.
#pragma once

#include "interfaces/device_state.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace oxlade {

/// "info" or "install" while a helper runs, empty when none does; compared by
/// content. Any other text is allowed and changes nothing when the run ends.
using HelperMode = std::string;

inline constexpr std::string_view infoMode = "info";
inline constexpr std::string_view installMode = "install";

enum class ClosingAlert { none, done, failed };

/// What changes when a run has ended; what is absent stays as it is.
struct Outcome {
    std::optional<DeviceState> deviceState;
    std::optional<double> progress;
    std::optional<std::string_view> operationKey; ///< shown without a percentage
    ClosingAlert alert = ClosingAlert::none;

    friend bool operator==(const Outcome&, const Outcome&) = default;
};

/// Status 0 is success, anything else failure. A mode that is neither "info" nor
/// "install" changes nothing.
Outcome outcomeOf(std::string_view mode, std::int32_t status);

} // namespace oxlade
