// What is known of the sampler.
#pragma once

#include <cstdint>

namespace oxlade {

/// Any 64-bit number can stand here; the four named ones are those that the
/// program sets. Nothing ever returns to `unknown`.
enum class DeviceState : std::int64_t {
    unknown = 0,  ///< never checked
    checking = 1, ///< a device check is running
    ready = 2,    ///< the last check's helper exited with status 0
    failed = 3,   ///< the last check's helper exited otherwise, or could not be started
};

} // namespace oxlade
