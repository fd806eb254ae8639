// One run of the helper against the simulated sampler.
#pragma once

#include "simulator/options.h"
#include "simulator/output.h"
#include "simulator/trace.h"

#include <chrono>
#include <string>

namespace oxlade::simulator {

class FlashMemory;

/// check() and flash() return the exit status or throw Ended; they do not return at
/// all if the options make them hang or end by a signal.
class Run final {
  public:
    /// All three must outlive this object.
    Run(const Options& options, const Trace& trace, Output& output);

    /// Describes the device; about 0.8 s.
    int check();
    /// Erases the flash kept in the file `flashPath` and writes the image into it;
    /// about 4 s. An image that cannot be read leaves the flash untouched.
    int flash(const std::string& imagePath, const std::string& flashPath);

  private:
    void startChild() const;
    void describe(std::chrono::milliseconds search);
    void erase(FlashMemory& memory, const std::string& image);
    void write(FlashMemory& memory, const std::string& image);
    void verify(FlashMemory& memory, const std::string& image);
    std::string imageAt(const std::string& path);
    int finish();

    void reach(Checkpoint checkpoint);
    void waitAt(const Gate& gate);
    [[noreturn]] void hang(Checkpoint checkpoint) const;
    [[noreturn]] void endBySignal(int signal);
    [[noreturn]] void fail(const std::string& line, int status);
    [[noreturn]] void fail(const std::string& line);
    void pause(std::chrono::milliseconds duration) const;

    const Options& options_;
    const Trace& trace_;
    Output& output_;
};

} // namespace oxlade::simulator
