#include "simulator/run.h"

#include "simulator/chatter.h"
#include "simulator/ended.h"
#include "simulator/flash_memory.h"

#include <array>
#include <csignal>
#include <fcntl.h>
#include <fstream>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>

namespace oxlade::simulator {

using namespace std::chrono_literals;

namespace {

constexpr auto eraseStep = 15ms; // a hundred of each: 1.5 s and 2.5 s
constexpr auto writeStep = 25ms;

} // namespace

Run::Run(const Behaviour& behaviour, const Trace& trace, Voice& voice)
    : behaviour_(behaviour), trace_(trace), voice_(voice) {}

int Run::check() {
    greet(800ms);
    reach({Stage::Info, 0});
    return finish();
}

int Run::flash(const std::string& imagePath, const std::string& flashPath) {
    const std::string image = imageAt(imagePath);
    greet(0ms);
    FlashMemory memory(flashPath);
    erase(memory, image);
    reach({Stage::Between, 0});
    write(memory, image);
    verify(memory, image);
    voice_.say("OS upload complete.");
    return finish();
}

void Run::greet(std::chrono::milliseconds search) {
    voice_.say("Searching for the MPC4000...");
    reach({Stage::FirstLine, 0});
    voice_.warn("Note: this is the Oxlade simulator. No real sampler is touched.");
    pause(search);
    if (behaviour_.noDevice)
        fail("Cannot open the MPC4000. Is it connected, and in its OS Loader mode?");
    voice_.say("MPC4000 found in OS Loader mode.");
    if (!behaviour_.noGeometry) voice_.say("Flash geometry: " + behaviour_.geometry);
    sayOddThings(behaviour_, [this](std::string_view piece) { voice_.stream(piece); });
}

void Run::erase(FlashMemory& memory, const std::string& image) {
    for (unsigned percent = 0; percent <= 100; ++percent) {
        memory.eraseTo(percent, image.size());
        if (isReported(percent)) voice_.report("Erase", percent);
        reach({Stage::Erase, percent});
        if (behaviour_.failErase == percent) fail("Error: the flash cannot be erased.");
        if (percent < 100) pause(eraseStep);
    }
}

void Run::write(FlashMemory& memory, const std::string& image) {
    for (unsigned percent = 0; percent <= 100; ++percent) {
        memory.writeTo(percent, image);
        if (isReported(percent)) voice_.report("Write", percent);
        reach({Stage::Write, percent});
        if (behaviour_.failWrite == percent) fail("Error: the flash cannot be written.");
        if (percent < 100) pause(writeStep);
    }
}

void Run::verify(FlashMemory& memory, const std::string& image) {
    if (!memory.verify(image)) fail("Verifying... failed: the flash is not the image.");
    voice_.say("Verifying... ok");
}

std::string Run::imageAt(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::string bytes;
    std::array<char, 65536> block{};
    while (file.read(block.data(), block.size()) || file.gcount() > 0)
        bytes.append(block.data(), static_cast<std::size_t>(file.gcount()));
    // A folder opens, but does not read.
    if (!file.is_open() || file.bad()) fail("Cannot read the OS image: " + path, noInput);
    return bytes;
}

int Run::finish() {
    voice_.flush();
    reach({Stage::End, 0});
    return behaviour_.exitStatus.value_or(0);
}

bool Run::isReported(unsigned percent) const {
    return percent % behaviour_.step == 0 || percent == 100;
}

void Run::reach(Place place) {
    for (const Gate& gate : behaviour_.gates)
        if (gate.at == place) waitAt(gate);
    if (behaviour_.hang == place) hang(place);
    if (behaviour_.signal && behaviour_.signal->at == place) strike(behaviour_.signal->number);
}

void Run::waitAt(const Gate& gate) {
    const std::string sign = gate.path + ".waiting";
    const int file = ::open(sign.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644);
    if (file < 0) fail("Cannot create " + sign, cannotCreate);
    ::close(file);
    trace_.note("waiting " + nameOf(gate.at));
    // A test that died leaves its gate shut; its helper shall not stay for ever.
    const auto deadline = std::chrono::steady_clock::now() + 10min;
    while (::access(gate.path.c_str(), F_OK) != 0) {
        if (std::chrono::steady_clock::now() > deadline)
            fail("Nobody opened the gate " + gate.path, waitedTooLong);
        std::this_thread::sleep_for(5ms);
    }
}

void Run::hang(Place place) const {
    trace_.note("waiting " + nameOf(place));
    for (;;) ::pause();
}

void Run::strike(int signal) {
    trace_.note("signal " + std::to_string(signal));
    const rlimit noCore{0, 0};
    ::setrlimit(RLIMIT_CORE, &noCore);
    std::signal(signal, SIG_DFL);
    sigset_t only;
    sigemptyset(&only);
    sigaddset(&only, signal);
    ::sigprocmask(SIG_UNBLOCK, &only, nullptr);
    ::raise(signal);
    fail("The signal did not end the helper.", outputError);
}

void Run::fail(const std::string& line, int status) {
    voice_.warn(line);
    throw Ended{status};
}

void Run::fail(const std::string& line) { fail(line, behaviour_.exitStatus.value_or(1)); }

void Run::pause(std::chrono::milliseconds duration) const {
    if (behaviour_.pace > 0) std::this_thread::sleep_for(duration * behaviour_.pace);
}

} // namespace oxlade::simulator
