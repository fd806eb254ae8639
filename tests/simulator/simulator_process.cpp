#include "tests/simulator/simulator_process.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace oxlade::simulator::test {
namespace {

[[noreturn]] void execute(const std::filesystem::path& folder, const std::string& words,
                          Arguments arguments) {
    ::setenv("OXLADE_SIM", words.c_str(), 1);
    ::setenv("OXLADE_SIM_FLASH", (folder / "flash").c_str(), 1);
    ::setenv("OXLADE_SIM_TRACE", (folder / "trace").c_str(), 1);
    arguments.insert(arguments.begin(), "oxlade");
    std::vector<char*> pointers;
    for (std::string& argument : arguments) pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    ::execv(OXLADE_SIMULATOR, pointers.data());
    ::_exit(99);
}

} // namespace

std::string contentsOf(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

void writeFile(const std::filesystem::path& file, const std::string& bytes) {
    std::ofstream(file, std::ios::binary | std::ios::trunc) << bytes;
}

bool eventually(const std::function<bool()>& condition) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

SimulatorProcess::SimulatorProcess(const std::filesystem::path& folder, const std::string& words,
                                   const Arguments& arguments, BrokenPipe brokenPipe)
    : folder_(folder) {
    int ends[2];
    if (::pipe(ends) != 0) return;
    output_ = ends[0];
    pid_ = ::fork();
    if (pid_ == 0) {
        std::signal(SIGPIPE, brokenPipe == BrokenPipe::kills ? SIG_DFL : SIG_IGN);
        ::dup2(ends[1], STDOUT_FILENO);
        ::dup2(ends[1], STDERR_FILENO);
        ::close(ends[0]);
        ::close(ends[1]);
        execute(folder, words, arguments);
    }
    ::close(ends[1]);
}

SimulatorProcess::~SimulatorProcess() {
    if (!ended_) kill();
    wait();
    closeOutput();
}

std::string SimulatorProcess::readOnce() {
    std::string chunk(1U << 20U, '\0');
    ssize_t got = -1;
    do got = ::read(output_, chunk.data(), chunk.size());
    while (got < 0 && errno == EINTR);
    chunk.resize(got > 0 ? static_cast<std::size_t>(got) : 0);
    return chunk;
}

std::string SimulatorProcess::readToEnd() {
    std::string text;
    for (std::string chunk = readOnce(); !chunk.empty(); chunk = readOnce()) text += chunk;
    return text;
}

void SimulatorProcess::closeOutput() {
    if (output_ >= 0) ::close(output_);
    output_ = -1;
}

void SimulatorProcess::kill() const { ::kill(pid_, SIGKILL); }

int SimulatorProcess::wait() {
    int status = 0;
    if (ended_ || ::waitpid(pid_, &status, 0) != pid_) return -1000;
    ended_ = true;
    return WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status);
}

bool SimulatorProcess::hasNoted(const std::string& what) const {
    const std::string line = what + " pid=" + std::to_string(pid_) + "\n";
    return contentsOf(folder_ / "trace").find(line) != std::string::npos;
}

} // namespace oxlade::simulator::test
