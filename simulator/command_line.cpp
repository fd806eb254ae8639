#include "simulator/command_line.h"

#include <cstdlib>
#include <optional>
#include <stdexcept>

namespace oxlade::simulator {

namespace {

constexpr const char* usage = "usage: oxlade --info | oxlade --firmware PATH --yes";

std::optional<std::string> variable(const char* name) {
    const char* const value = std::getenv(name);
    if (value == nullptr || *value == '\0') return std::nullopt;
    return value;
}

Command parseFlash(const std::vector<std::string>& arguments) {
    std::optional<std::string> image;
    bool yes = false;
    for (std::size_t at = 0; at < arguments.size(); ++at) {
        if (arguments[at] == "--yes" && !yes)
            yes = true;
        else if (arguments[at] == "--firmware" && !image && at + 1 < arguments.size())
            image = arguments[++at];
        else
            throw std::invalid_argument(usage);
    }
    if (!image) throw std::invalid_argument(usage);
    if (!yes) throw std::invalid_argument("flashing needs --yes: there is nobody to ask");
    return {true, *image};
}

} // namespace

Command parseCommand(const std::vector<std::string>& arguments) {
    if (arguments.size() == 1 && arguments[0] == "--info") return {};
    return parseFlash(arguments);
}

std::string flashPath() {
    if (const auto path = variable("OXLADE_SIM_FLASH")) return *path;
    constexpr const char* place = "/oxlade-simulator/flash.bin";
    if (const auto state = variable("XDG_STATE_HOME")) return *state + place;
    if (const auto home = variable("HOME")) return *home + "/.local/state" + place;
    throw std::runtime_error("no place for the flash: set OXLADE_SIM_FLASH");
}

} // namespace oxlade::simulator
