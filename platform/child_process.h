// Starting another program, and waiting for its end.
#pragma once

#include "platform/descriptor.h"

#include <cstdint>
#include <string>
#include <sys/types.h>
#include <vector>

namespace oxlade {

/// A program to start and its standard streams. A stream without a descriptor is
/// inherited.
struct SpawnRequest {
    std::string executablePath;
    std::vector<std::string> arguments; ///< without the program's name
    const Descriptor* input = nullptr;
    const Descriptor* output = nullptr;
    const Descriptor* error = nullptr;
};

/// A process that was started here and has to be reaped. Destroying the object neither
/// stops nor reaps the process. One thread at a time.
class ChildProcess final {
  public:
    /// No process.
    ChildProcess() = default;
    /// Takes over a process that nobody has reaped yet.
    explicit ChildProcess(pid_t number);

    /// True until the process is reaped.
    bool isRunning() const { return number_ != 0; }
    /// 0 when no process is running.
    pid_t number() const { return number_; }
    /// Polls readable once the process has ended. None where the system has no such
    /// descriptor: then call reapIfEnded from time to time.
    const Descriptor& end() const { return end_; }
    bool mustBePolled() const { return isRunning() && !end_; }
    /// Reaps the process if it has ended, and returns true if it did so. Never blocks.
    bool reapIfEnded();
    /// Kills the process, if it is running, and waits for its end.
    void kill();
    /// After reaping: the exit status; of a process that died by a signal, the signal's
    /// number; -1 when the system does not tell, since it was reaped elsewhere.
    std::int32_t exitStatus() const { return exitStatus_; }

  private:
    bool reap(int options);

    pid_t number_ = 0;
    Descriptor end_;
    std::int32_t exitStatus_ = 0;
};

/// Starts the program in a session of its own, so that it gets no signal of our terminal;
/// with default signals, but SIGPIPE as we have it; with our working directory and
/// environment; with no descriptors but the standard streams. Returns 0 and sets
/// `process`, or returns the system's error number. Any thread.
int spawn(const SpawnRequest& request, ChildProcess& process);

} // namespace oxlade
