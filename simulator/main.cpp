#include "simulator/behaviour.h"
#include "simulator/child.h"
#include "simulator/command_line.h"
#include "simulator/ended.h"
#include "simulator/run.h"
#include "simulator/trace.h"
#include "simulator/voice.h"

#include <cstdlib>
#include <exception>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using namespace oxlade::simulator;

int complain(const std::string& sentence, int status) {
    std::cerr << "oxlade: " << sentence << std::endl;
    return status;
}

int perform(const Command& command, const Behaviour& behaviour, const Trace& trace) {
    Voice voice(behaviour, trace);
    Run run(behaviour, trace, voice);
    startChild(behaviour, trace);
    try {
        return command.flash ? run.flash(command.image, flashPath()) : run.check();
    } catch (const Ended& ended) {
        if (ended.status != outputError) voice.flush();
        return ended.status;
    }
}

int serve(const std::vector<std::string>& arguments, const Trace& trace) {
    try {
        const char* const wish = std::getenv("OXLADE_SIM");
        const Behaviour behaviour = parseBehaviour(wish == nullptr ? "" : wish);
        return perform(parseCommand(arguments), behaviour, trace);
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
    const std::vector<std::string> arguments(argv + (argc > 0 ? 1 : 0), argv + argc);
    const Trace trace(std::getenv("OXLADE_SIM_TRACE"));
    trace.start(arguments);
    const int status = serve(arguments, trace);
    trace.note("done " + std::to_string(status));
    return status;
}
