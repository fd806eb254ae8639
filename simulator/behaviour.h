#pragma once

#include "simulator/place.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace oxlade::simulator {

// Die by a signal, once that place is reached.
struct Strike {
    int number = 0;
    Place at;
};

// Make the file `path` + ".waiting", then go on when `path` exists.
struct Gate {
    std::string path;
    Place at;
};

// How the simulated sampler and its helper behave; as made, they do all right.
struct Behaviour {
    double pace = 1.0; // every pause is multiplied by this; 0: no pauses
    unsigned step = 1; // percent from one report to the next; 100 % is always reported

    bool noDevice = false;
    bool noGeometry = false;
    std::string geometry = "64 sectors of 65536 bytes (simulated MPC4000)";

    std::optional<unsigned> failErase; // percent at which erasing goes wrong
    std::optional<unsigned> failWrite; // percent at which writing goes wrong
    std::optional<int> exitStatus;     // 0 to 255; instead of 0, and of 1 after a failure
    std::optional<Strike> signal;
    std::optional<Place> hang;
    std::vector<Gate> gates;
    bool strict = false; // a line that cannot be written ends the run, status 74

    bool noLineEnds = false; // nothing stands between two progress reports
    bool oneWrite = false;   // the reports of a phase go out together, at its end
    bool noFlush = false;    // standard output goes out at the end of the run
    // Each line goes out in two writes, cut after this many bytes, the second
    // once the reader has taken the first. 0: whole lines.
    unsigned splitAt = 0;
    bool splitEverywhere = false; // cut after 1, 2, 3, ... bytes from line to line

    bool invalidUtf8 = false;
    bool nul = false;
    std::uint64_t nulBytes = 0;   // bytes of such lines
    std::uint64_t nulLine = 0;    // bytes of one such line
    std::uint64_t longLine = 0;   // bytes
    std::uint64_t floodBytes = 0; // bytes of ordinary text
    std::uint64_t flood = 0;      // progress lines

    // A child of the helper keeps its output open for this many seconds after
    // the helper has ended; negative: there is no child.
    double childSeconds = -1;
    bool childTalks = false; // and it writes a line every millisecond
};

// Reads a comma-separated list of words, each of which README.md beside this
// file explains. "\," stands for a comma within a word and "\\" for a
// backslash. Of contradicting words the last one counts; gates add up. Throws
// std::invalid_argument with a sentence for the user when a word is unknown or
// its value makes no sense.
Behaviour parseBehaviour(std::string_view text);

} // namespace oxlade::simulator
