#include "tests/simulator/helper_run.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <spawn.h>
#include <stdexcept>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace oxlade::simulator::test {

namespace {

void require(bool condition, const char* what) {
    if (!condition) throw std::runtime_error(what);
}

std::vector<std::string> environmentFor(const TemporaryFolder& folder, const Options& options) {
    std::vector<std::string> variables;
    for (char** entry = environ; *entry != nullptr; ++entry)
        if (!std::string_view(*entry).starts_with("OXLADE_SIM")) variables.emplace_back(*entry);
    variables.push_back("OXLADE_SIM=" + options.behaviour);
    variables.push_back("OXLADE_SIM_FLASH=" + folder.path("flash"));
    variables.push_back("OXLADE_SIM_TRACE=" + folder.path("trace"));
    return variables;
}

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string& text : texts) pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

// What posix_spawn wants, freed at the end.
struct Recipe {
    posix_spawn_file_actions_t actions{};
    posix_spawnattr_t attributes{};

    Recipe(int output, const Options& options) {
        ::posix_spawn_file_actions_init(&actions);
        ::posix_spawnattr_init(&attributes);
        ::posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
        ::posix_spawn_file_actions_adddup2(&actions, output, 1);
        if (options.joined)
            ::posix_spawn_file_actions_adddup2(&actions, output, 2);
        else
            ::posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
        ::posix_spawn_file_actions_addclosefrom_np(&actions, 3);
        if (options.extraDescriptor >= 0)
            ::posix_spawn_file_actions_addopen(&actions, options.extraDescriptor, "/dev/null",
                                               O_RDONLY, 0);
        if (options.ownSession) ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID);
    }
    ~Recipe() {
        ::posix_spawn_file_actions_destroy(&actions);
        ::posix_spawnattr_destroy(&attributes);
    }
    Recipe(const Recipe&) = delete;
    Recipe& operator=(const Recipe&) = delete;
};

} // namespace

TemporaryFolder::TemporaryFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "oxlade-sim-XXXXXX").string();
    require(::mkdtemp(name.data()) != nullptr, "no temporary folder");
    path_ = name;
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::string bytesOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void writeFile(const std::string& path, std::string_view bytes) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file << bytes << std::flush;
    require(file.good(), "a file cannot be written");
}

bool eventually(const std::function<bool()>& condition) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

HelperRun::HelperRun(const TemporaryFolder& folder, const std::vector<std::string>& arguments,
                     const Options& options)
    : trace_(folder.path("trace")) {
    int ends[2];
    require(::pipe2(ends, O_CLOEXEC) == 0, "no pipe");
    output_ = ends[0];
    std::vector<std::string> words{"oxlade"};
    words.insert(words.end(), arguments.begin(), arguments.end());
    auto variables = environmentFor(folder, options);
    const Recipe recipe(ends[1], options);
    const auto before = std::signal(SIGPIPE, options.ignoreBrokenPipe ? SIG_IGN : SIG_DFL);
    const int error = ::posix_spawn(&pid_, OXLADE_SIMULATOR, &recipe.actions, &recipe.attributes,
                                    pointersTo(words).data(), pointersTo(variables).data());
    std::signal(SIGPIPE, before);
    ::close(ends[1]);
    require(error == 0, "the simulator cannot be started");
}

HelperRun::~HelperRun() {
    if (isAlive()) ::kill(pid_, SIGKILL);
    wait();
    closeOutput();
}

std::string HelperRun::readOnce() {
    std::string chunk(1U << 20U, '\0');
    ssize_t got = -1;
    do got = ::read(output_, chunk.data(), chunk.size());
    while (got < 0 && errno == EINTR);
    chunk.resize(got > 0 ? static_cast<std::size_t>(got) : 0);
    return chunk;
}

std::string HelperRun::readToEnd() {
    std::string text;
    for (;;) {
        const std::string chunk = readOnce();
        if (chunk.empty()) return text;
        text += chunk;
    }
}

std::string HelperRun::readAvailable() {
    int waiting = 0;
    ::ioctl(output_, FIONREAD, &waiting);
    return waiting > 0 ? readOnce() : std::string();
}

void HelperRun::closeOutput() {
    if (output_ >= 0) ::close(output_);
    output_ = -1;
}

int HelperRun::wait() {
    int status = 0;
    if (!ended_ && ::waitpid(pid_, &status, 0) == pid_) {
        ended_ = true;
        result_ = WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status);
    }
    return result_;
}

bool HelperRun::isAlive() {
    if (ended_) return false;
    siginfo_t info{};
    return ::waitid(P_PID, static_cast<id_t>(pid_), &info, WEXITED | WNOHANG | WNOWAIT) == 0 &&
           info.si_pid == 0;
}

bool HelperRun::noted(const std::string& what) const {
    return bytesOf(trace_).find(what + " pid=" + std::to_string(pid_) + "\n") != std::string::npos;
}

} // namespace oxlade::simulator::test
