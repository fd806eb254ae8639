// Starting another program. Any thread.
#pragma once

#include "platform/descriptor.h"

#include <string>
#include <sys/types.h>
#include <vector>

namespace oxlade {

/// A program to start and its standard streams. A stream without a descriptor is
/// the one that we have.
struct SpawnRequest {
    std::string executablePath;
    std::vector<std::string> arguments; ///< without the program's name
    const Descriptor* input = nullptr;
    const Descriptor* output = nullptr;
    const Descriptor* error = nullptr;
};

/// Starts it in a session of its own, so that neither our terminal nor our end
/// reaches it; signals as a program expects them at its start, but SIGPIPE as we
/// have it; working directory and environment as we have them; no descriptors but
/// the standard streams. Returns 0 and the process's number, or the system's error
/// number when the program did not start. Whoever starts a process waits for it.
int spawn(const SpawnRequest& request, pid_t& process);

} // namespace oxlade
