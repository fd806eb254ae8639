#pragma once

#include "simulator/behaviour.h"
#include "simulator/trace.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace oxlade::simulator {

// All that the helper says, in the manner that the behaviour asks for. Each
// call is one write to standard output or standard error, at once, unless the
// behaviour cuts or holds it.
//
// A write that fails is passed over, as most programs do; a strict helper notes
// it in the trace and throws Ended.
class Voice final {
  public:
    // Uses both as long as it lives.
    Voice(const Behaviour& behaviour, const Trace& trace);

    // One line; the line end is added here.
    void say(std::string_view line);
    // One line on standard error.
    void warn(std::string_view line);
    // "WORD P%" and a carriage return, so that the next one takes its place on a
    // terminal; a line end after 100 %.
    void report(std::string_view word, unsigned percent);
    // Bytes as they are, in one piece, past the manners that only lines have.
    void stream(std::string_view bytes);
    // Says what is still held back, as a program's end does.
    void flush();

  private:
    void emit(int descriptor, std::string_view line);
    std::size_t nextCut(std::size_t length);
    void sendInTwo(int descriptor, std::string_view line, std::size_t cut) const;
    void send(int descriptor, std::string_view bytes) const;

    const Behaviour& behaviour_;
    const Trace& trace_;
    std::string reports_; // of one phase, when they go out together
    std::string held_;    // unflushed standard output
    std::size_t lines_ = 0;
};

} // namespace oxlade::simulator
