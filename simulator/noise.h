// Output that a helper should not print but might.
#pragma once

#include "simulator/options.h"
#include "simulator/output.h"

namespace oxlade::simulator {

/// Prints as much of each kind of noise as the options ask for, in writes of at most
/// 64 KiB. Each kind ends with a line feed.
void printNoise(const Options& options, const Output& output);

} // namespace oxlade::simulator
