#pragma once

#include "simulator/behaviour.h"
#include "simulator/trace.h"
#include "simulator/voice.h"

#include <chrono>
#include <string>

namespace oxlade::simulator {

class FlashMemory;

// One run of the helper against the simulated sampler. Both operations give the
// exit status, or throw Ended when something ends the run before its time; they
// do not come back at all when the behaviour has them killed or hang.
class Run final {
  public:
    // Uses all three as long as it lives.
    Run(const Behaviour& behaviour, const Trace& trace, Voice& voice);

    // Describes the device; about 0.8 s.
    int check();
    // Erases the flash kept at `flashPath` and writes the image into it; about
    // 4 s. An image that cannot be read leaves the flash alone.
    int flash(const std::string& imagePath, const std::string& flashPath);

  private:
    void greet(std::chrono::milliseconds search);
    void erase(FlashMemory& memory, const std::string& image);
    void write(FlashMemory& memory, const std::string& image);
    void verify(FlashMemory& memory, const std::string& image);
    std::string imageAt(const std::string& path);
    int finish();

    bool isReported(unsigned percent) const;
    void reach(Place place);
    void waitAt(const Gate& gate);
    [[noreturn]] void hang(Place place) const;
    [[noreturn]] void strike(int signal);
    [[noreturn]] void fail(const std::string& line, int status);
    [[noreturn]] void fail(const std::string& line);
    void pause(std::chrono::milliseconds duration) const;

    const Behaviour& behaviour_;
    const Trace& trace_;
    Voice& voice_;
};

} // namespace oxlade::simulator
