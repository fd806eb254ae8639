#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace oxlade::simulator {

// A moment of a run at which it can be held up or made to go wrong.
enum class Stage {
    FirstLine, // the first line has been said; nothing is touched yet
    Info,      // a check only: the device has been described
    Erase,     // "Erase P%" is due, and P percent are erased
    Between,   // all is erased, nothing written
    Write,     // "Write P%" is due, and P percent of the image are in the flash
    End,       // all has been said
};

struct Place {
    Stage stage = Stage::FirstLine;
    unsigned percent = 0; // 0 to 100; meant for Erase and Write, 0 elsewhere

    bool operator==(const Place&) const = default;
};

// "first-line", "info", "erase:P", "between", "write:P" or "end", P a whole
// number from 0 to 100. Nothing for any other text.
std::optional<Place> parsePlace(std::string_view text);

// The text that parsePlace reads as this place.
std::string nameOf(Place place);

} // namespace oxlade::simulator
