// oxlade --info | oxlade --firmware PATH --yes
//
// The helper program with a simulated sampler; see README.md.
#include "simulator/options.h"
#include "simulator/output.h"
#include "simulator/run.h"
#include "simulator/trace.h"

#include <cstdlib>
#include <exception>
#include <iostream>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using namespace oxlade::simulator;

constexpr const char* usage = "usage: oxlade --info | oxlade --firmware PATH --yes";

using Arguments = std::vector<std::string>;

/// The path of the image to flash, or nothing for a check of the device. Throws
/// std::invalid_argument with a sentence for anything but "--info", or "--firmware"
/// PATH and "--yes" in either order.
std::optional<std::string> parseCommand(const Arguments& arguments) {
    if (arguments.size() == 1 && arguments[0] == "--info") return std::nullopt;
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
    return image;
}

std::optional<std::string> variable(const char* name) {
    const char* const value = std::getenv(name);
    if (value == nullptr || *value == '\0') return std::nullopt;
    return value;
}

/// The file that is the flash. Throws std::runtime_error if no variable tells.
std::string flashPath() {
    if (const auto path = variable("OXLADE_SIM_FLASH")) return *path;
    constexpr const char* file = "/oxlade-simulator/flash.bin";
    if (const auto state = variable("XDG_STATE_HOME")) return *state + file;
    if (const auto home = variable("HOME")) return *home + "/.local/state" + file;
    throw std::runtime_error("no place for the flash: set OXLADE_SIM_FLASH");
}

int complain(const std::string& sentence, int status) {
    std::cerr << "oxlade: " << sentence << std::endl;
    return status;
}

int perform(const Arguments& arguments, const Trace& trace) {
    try {
        const Options options = parseOptions(variable("OXLADE_SIM").value_or(""));
        const auto image = parseCommand(arguments);
        Output output(options, trace);
        Run run(options, trace, output);
        return image ? run.flash(*image, flashPath()) : run.check();
    } catch (const Ended& ended) {
        return ended.status;
    } catch (const std::invalid_argument& error) {
        return complain(error.what(), usageError);
    } catch (const std::exception& error) {
        return complain(error.what(), cannotCreate);
    }
}

} // namespace

int main(int argc, char** argv) {
    const Arguments arguments(argv + (argc > 0 ? 1 : 0), argv + argc);
    const Trace trace(std::getenv("OXLADE_SIM_TRACE"));
    trace.start(arguments);
    const int status = perform(arguments, trace);
    trace.note("done " + std::to_string(status));
    return status;
}
