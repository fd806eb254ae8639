// What a run is told to do by the variable OXLADE_SIM.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace oxlade::simulator {

enum class Stage {
    FirstLine, ///< the first line is printed; nothing is touched yet
    Info,      ///< in a check only: the device is described
    Erase,     ///< "Erase P%" is printed, and P percent are erased
    Between,   ///< all is erased, nothing written
    Write,     ///< "Write P%" is printed, and P percent of the image are written
    End,       ///< all is printed
};

/// A point of a run at which it can be stopped or made to fail.
struct Checkpoint {
    Stage stage = Stage::FirstLine;
    unsigned percent = 0; ///< 0 to 100 for Erase and Write, 0 elsewhere

    bool operator==(const Checkpoint&) const = default;
};

/// The name of a checkpoint in OXLADE_SIM: "first-line", "info", "erase:P",
/// "between", "write:P" or "end".
std::string nameOf(Checkpoint checkpoint);

struct SignalAt {
    int number = 0;
    Checkpoint checkpoint;
};

/// At the checkpoint the run creates the file `path` + ".waiting" and waits until
/// `path` exists.
struct Gate {
    std::string path;
    Checkpoint checkpoint;
};

/// The defaults are a sampler and a helper without faults.
struct Options {
    double pace = 1.0; ///< every pause is multiplied by this; 0: no pauses

    bool noDevice = false;
    std::optional<unsigned> failWrite; ///< percent at which writing fails
    std::optional<int> exitStatus;     ///< 0 to 255; instead of 0, and of 1 after a failure
    std::optional<SignalAt> signal;    ///< the signal that ends the run
    std::optional<Checkpoint> hang;
    std::vector<Gate> gates;
    bool strict = false; ///< a failed write of output ends the run, status 74

    /// Each line is printed in two writes, cut after this many bytes, the second one
    /// once the first has been read. 0: in one write.
    unsigned splitAt = 0;
    bool splitEverywhere = false; ///< cut after 1, 2, 3, ... bytes from line to line

    bool invalidUtf8 = false;
    bool nul = false;
    std::uint64_t nulBytes = 0;   ///< bytes of such lines
    std::uint64_t nulLine = 0;    ///< bytes of one such line
    std::uint64_t longLine = 0;   ///< bytes
    std::uint64_t floodBytes = 0; ///< bytes of ordinary text
    std::uint64_t flood = 0;      ///< progress lines

    /// Seconds for which a child keeps the output open after the helper's end;
    /// negative: no child.
    double childSeconds = -1;
    bool childTalks = false; ///< the child writes a line every millisecond
};

/// Parses a comma-separated list of the words that README.md in this folder explains.
/// "\," is a comma within a word and "\\" a backslash. The last of contradicting words
/// counts; gates add up. Throws std::invalid_argument with a sentence for the user for
/// an unknown word or a value out of range.
Options parseOptions(std::string_view text);

} // namespace oxlade::simulator
