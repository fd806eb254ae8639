#pragma once

#include <string>
#include <vector>

namespace oxlade::simulator {

struct Command {
    bool flash = false; // else a check of the device
    std::string image;  // the path, byte for byte as given
};

// "--info", or "--firmware" PATH and "--yes" in either order. Throws
// std::invalid_argument with a sentence for anything else; flashing without
// "--yes" is refused, for it would have to ask and there is nobody to answer.
Command parseCommand(const std::vector<std::string>& arguments);

// Where the flash is kept: $OXLADE_SIM_FLASH, else oxlade-simulator/flash.bin
// in $XDG_STATE_HOME or ~/.local/state. Throws std::runtime_error when none of
// them is set.
std::string flashPath();

} // namespace oxlade::simulator
