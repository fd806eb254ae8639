#pragma once

namespace oxlade::simulator {

// Thrown to end the run at once with an exit status, 0 to 255; what there is to
// say about it has been said.
struct Ended {
    int status;
};

// The exit statuses that are not a matter of the sampler, as sysexits.h has them.
constexpr int usageError = 64;
constexpr int noInput = 66;
constexpr int cannotCreate = 73;
constexpr int outputError = 74;
constexpr int waitedTooLong = 75;

} // namespace oxlade::simulator
