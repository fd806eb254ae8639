// The state of the sampler as far as the program knows it.
#pragma once

#include <cstdint>

namespace oxlade {

/// The program sets only the four named values; readers must accept any 64-bit number.
enum class DeviceState : std::int64_t {
    unknown = 0,  ///< never checked; initial value only
    checking = 1, ///< a device check is running
    ready = 2,    ///< the last check's helper exited with status 0
    failed = 3,   ///< the last check's helper exited otherwise, or could not be started
};

} // namespace oxlade
