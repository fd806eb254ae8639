#include "simulator/run.h"

#include "simulator/flash_memory.h"
#include "simulator/noise.h"

#include <array>
#include <csignal>
#include <fcntl.h>
#include <fstream>
#include <poll.h>
#include <string_view>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>

namespace oxlade::simulator {

using namespace std::chrono_literals;

namespace {

constexpr auto eraseStep = 15ms; // times 100: 1.5 s
constexpr auto writeStep = 25ms; // times 100: 2.5 s

/// Writes a line, then waits a millisecond. Exits if nobody can read it.
void talkOnce() {
    constexpr std::string_view line = "The helper's child is still here.\n";
    if (::write(STDOUT_FILENO, line.data(), line.size()) < 0) ::_exit(0);
    std::this_thread::sleep_for(1ms);
}

/// The parent holds the other end of `lifeline`, which closes when the parent ends.
bool parentLives(int lifeline, int waitMs) {
    pollfd entry{lifeline, POLLIN, 0};
    return ::poll(&entry, 1, waitMs) <= 0;
}

/// Runs in the child until `seconds` after the end of the parent.
[[noreturn]] void outliveParent(double seconds, bool talks, int lifeline) {
    using Clock = std::chrono::steady_clock;
    while (parentLives(lifeline, talks ? 0 : -1))
        if (talks) talkOnce();
    const std::chrono::duration<double> stay(seconds);
    const auto deadline = Clock::now() + std::chrono::duration_cast<Clock::duration>(stay);
    while (talks && Clock::now() < deadline) talkOnce();
    std::this_thread::sleep_until(deadline);
    ::_exit(0);
}

} // namespace

Run::Run(const Options& options, const Trace& trace, Output& output)
    : options_(options), trace_(trace), output_(output) {}

int Run::check() {
    startChild();
    describe(800ms);
    reach({Stage::Info, 0});
    return finish();
}

int Run::flash(const std::string& imagePath, const std::string& flashPath) {
    startChild();
    const std::string image = imageAt(imagePath);
    describe(0ms);
    FlashMemory memory(flashPath);
    erase(memory, image);
    reach({Stage::Between, 0});
    write(memory, image);
    verify(memory, image);
    output_.print("OS upload complete.");
    return finish();
}

void Run::startChild() const {
    if (options_.childSeconds < 0) return;
    int lifeline[2];
    if (::pipe(lifeline) != 0) return;
    const pid_t child = ::fork();
    if (child == 0) {
        ::close(lifeline[1]);
        outliveParent(options_.childSeconds, options_.childTalks, lifeline[0]);
    }
    ::close(lifeline[0]);
    trace_.note("child " + std::to_string(child));
}

void Run::describe(std::chrono::milliseconds search) {
    output_.print("Searching for the MPC4000...");
    reach({Stage::FirstLine, 0});
    output_.printError("Note: this is the Oxlade simulator. No real sampler is touched.");
    pause(search);
    if (options_.noDevice)
        fail("Cannot open the MPC4000. Is it connected, and in its OS Loader mode?");
    output_.print("MPC4000 found in OS Loader mode.");
    output_.print("Flash geometry: 64 sectors of 65536 bytes (simulated MPC4000)");
    printNoise(options_, output_);
}

void Run::erase(FlashMemory& memory, const std::string& image) {
    for (unsigned percent = 0; percent <= 100; ++percent) {
        memory.eraseTo(percent, image.size());
        output_.printProgress("Erase", percent);
        reach({Stage::Erase, percent});
        if (percent < 100) pause(eraseStep);
    }
}

void Run::write(FlashMemory& memory, const std::string& image) {
    for (unsigned percent = 0; percent <= 100; ++percent) {
        memory.writeTo(percent, image);
        output_.printProgress("Write", percent);
        reach({Stage::Write, percent});
        if (options_.failWrite == percent) fail("Error: the flash cannot be written.");
        if (percent < 100) pause(writeStep);
    }
}

void Run::verify(FlashMemory& memory, const std::string& image) {
    if (!memory.verify(image)) fail("Verifying... failed: the flash is not the image.");
    output_.print("Verifying... ok");
}

std::string Run::imageAt(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::string bytes;
    std::array<char, 65536> block{};
    while (file.read(block.data(), block.size()) || file.gcount() > 0)
        bytes.append(block.data(), static_cast<std::size_t>(file.gcount()));
    // A folder can be opened but not read.
    if (!file.is_open() || file.bad()) fail("Cannot read the OS image: " + path, noInput);
    return bytes;
}

int Run::finish() {
    reach({Stage::End, 0});
    return options_.exitStatus.value_or(0);
}

void Run::reach(Checkpoint checkpoint) {
    for (const Gate& gate : options_.gates)
        if (gate.checkpoint == checkpoint) waitAt(gate);
    if (options_.hang == checkpoint) hang(checkpoint);
    if (options_.signal && options_.signal->checkpoint == checkpoint)
        endBySignal(options_.signal->number);
}

void Run::waitAt(const Gate& gate) {
    const std::string sign = gate.path + ".waiting";
    const int file = ::open(sign.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644);
    if (file < 0) fail("Cannot create " + sign, cannotCreate);
    ::close(file);
    trace_.note("waiting " + nameOf(gate.checkpoint));
    // The run must end even if the test that would open the gate has died.
    const auto deadline = std::chrono::steady_clock::now() + 10min;
    while (::access(gate.path.c_str(), F_OK) != 0) {
        if (std::chrono::steady_clock::now() > deadline)
            fail("Nobody opened the gate " + gate.path, waitedTooLong);
        std::this_thread::sleep_for(5ms);
    }
}

void Run::hang(Checkpoint checkpoint) const {
    trace_.note("waiting " + nameOf(checkpoint));
    for (;;) ::pause();
}

void Run::endBySignal(int signal) {
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
    output_.printError(line);
    throw Ended{status};
}

void Run::fail(const std::string& line) { fail(line, options_.exitStatus.value_or(1)); }

void Run::pause(std::chrono::milliseconds duration) const {
    if (options_.pace > 0) std::this_thread::sleep_for(duration * options_.pace);
}

} // namespace oxlade::simulator
