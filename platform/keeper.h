// The keeper, as seen from the program: a small process beside each helper run.
//
// It holds the read end of the helper's pipe without reading. When the program is gone in
// mid-run, for whatever reason, the keeper reads on until the helper has ended, so the
// helper never gets SIGPIPE.
#pragma once

#include "platform/child_process.h"
#include "platform/descriptor.h"

#include <string>

namespace oxlade {

/// One thread at a time, but process() may be used beside the other methods. Nothing here
/// reports a failure: a run goes on without its keeper.
class Keeper final {
  public:
    /// No keeper: messages to it are dropped.
    Keeper() = default;
    /// Starts one that holds `output`, a pipe's read end. Returns no keeper when it cannot
    /// be started.
    static Keeper start(const std::string& executablePath, const Descriptor& output);

    /// Tells it for which process it keeps reading.
    void watch(const ChildProcess& helper);
    /// Gives it a copy of the descriptor to hold open until it ends.
    void hold(const Descriptor& descriptor);
    /// Makes it end; messages from now on are dropped.
    void runIsOver();
    /// To be reaped by the caller.
    ChildProcess& process() { return process_; }

  private:
    ChildProcess process_;
    Descriptor lifeline_;
};

} // namespace oxlade
