// The standard output and standard error of a run, and how a run ends early.
#pragma once

#include "simulator/options.h"
#include "simulator/trace.h"

#include <cstddef>
#include <string_view>

namespace oxlade::simulator {

/// Thrown to end the run with this exit status, 0 to 255, once all is printed.
struct Ended {
    int status;
};

// Exit statuses that do not depend on the sampler, as in sysexits.h.
inline constexpr int usageError = 64;
inline constexpr int noInput = 66;
inline constexpr int cannotCreate = 73;
inline constexpr int outputError = 74;
inline constexpr int waitedTooLong = 75;

/// Writes without a buffer: each call is one write, or two if the options split lines.
/// A failed write is ignored; with the option `strict` it is noted in the trace and
/// Ended is thrown.
class Output final {
  public:
    /// Both must outlive this object.
    Output(const Options& options, const Trace& trace);

    /// One line on standard output; the line feed is added.
    void print(std::string_view line);
    /// One line on standard error; the line feed is added.
    void printError(std::string_view line);
    /// "WORD P%" and a carriage return; after 100 % a line feed.
    void printProgress(std::string_view word, unsigned percent);
    /// Writes bytes to standard output; lines in them are not split.
    void write(std::string_view bytes) const;

  private:
    void printText(int descriptor, std::string_view text);
    std::size_t nextCut(std::size_t length);
    void writeInTwo(int descriptor, std::string_view text, std::size_t cut) const;
    void writeAll(int descriptor, std::string_view bytes) const;

    const Options& options_;
    const Trace& trace_;
    std::size_t lines_ = 0;
};

} // namespace oxlade::simulator
