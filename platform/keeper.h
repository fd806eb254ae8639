// The keeper: a small process beside each helper run, as seen from the program.
//
// It holds the read end of the helper's pipe without reading, and when we are gone
// in mid-run, for whatever reason, it reads on in our place until the helper has
// ended, so that no helper ever fails for want of a reader.
//
// Any thread, one at a time. Nothing here fails: a run goes on without its keeper.
#pragma once

#include "platform/descriptor.h"

#include <string>
#include <sys/types.h>

namespace oxlade {

class Keeper final {
  public:
    /// None: all that it is asked to do fails quietly.
    Keeper() = default;
    /// Starts one that holds `output`, a pipe's read end. One that cannot start is
    /// none.
    static Keeper start(const std::string& executablePath, const Descriptor& output);

    Keeper(Keeper&&) = default;
    Keeper& operator=(Keeper&&) = default;

    /// Names the process for which it keeps reading.
    void watch(pid_t helper);
    /// Gives it a copy of the descriptor to hold for as long as it lives.
    void hold(const Descriptor& descriptor);
    /// It goes at once; from now on all that it is asked to do fails quietly.
    void runIsOver();

  private:
    explicit Keeper(Descriptor lifeline) : lifeline_(std::move(lifeline)) {}

    Descriptor lifeline_;
};

} // namespace oxlade
