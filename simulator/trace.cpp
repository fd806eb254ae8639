#include "simulator/trace.h"

#include <algorithm>
#include <cctype>
#include <csignal>
#include <cstdlib>
#include <dirent.h>
#include <fcntl.h>
#include <filesystem>
#include <unistd.h>

namespace oxlade::simulator {

namespace {

std::string brokenPipeSetting() {
    struct sigaction action {};
    ::sigaction(SIGPIPE, nullptr, &action);
    if (action.sa_handler == SIG_IGN) return "ignored";
    return action.sa_handler == SIG_DFL ? "default" : "handled";
}

bool isPlain(unsigned char byte) {
    constexpr std::string_view others = "-._~/";
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') ||
           (byte >= '0' && byte <= '9') || others.find(static_cast<char>(byte)) != others.npos;
}

std::string percentEncoded(std::string_view bytes) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text;
    for (const char character : bytes) {
        const auto byte = static_cast<unsigned char>(character);
        if (isPlain(byte))
            text += character;
        else
            text += {'%', digits[byte >> 4U], digits[byte & 15U]};
    }
    return text;
}

/// The open descriptors except `except`, sorted; false where the system cannot list
/// them.
bool listDescriptors(int except, std::vector<int>& descriptors) {
    DIR* folder = ::opendir("/proc/self/fd");
    if (folder == nullptr) folder = ::opendir("/dev/fd");
    if (folder == nullptr) return false;
    while (const dirent* entry = ::readdir(folder)) {
        if (std::isdigit(static_cast<unsigned char>(entry->d_name[0])) == 0) continue;
        const int descriptor = std::atoi(entry->d_name);
        if (descriptor != ::dirfd(folder) && descriptor != except)
            descriptors.push_back(descriptor);
    }
    ::closedir(folder);
    std::sort(descriptors.begin(), descriptors.end());
    return true;
}

} // namespace

Trace::Trace(const char* path) {
    if (path == nullptr || *path == '\0') return;
    file_ = ::open(path, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
}

Trace::~Trace() {
    if (file_ >= 0) ::close(file_);
}

void Trace::start(const std::vector<std::string>& arguments) const {
    std::string list;
    for (std::size_t at = 0; at < arguments.size(); ++at)
        list += (at == 0 ? "" : ",") + percentEncoded(arguments[at]);
    std::error_code ignored;
    const std::string cwd = std::filesystem::current_path(ignored).string();
    put("start pid=" + std::to_string(::getpid()) + " argc=" + std::to_string(arguments.size()) +
        " argv=" + list + " fds=" + fds() + " sigpipe=" + brokenPipeSetting() + " session=" +
        (::getsid(0) == ::getpid() ? "own" : "inherited") + " cwd=" + percentEncoded(cwd));
}

void Trace::note(std::string_view what) const {
    put(std::string(what) + " pid=" + std::to_string(::getpid()));
}

std::string Trace::fds() const {
    std::vector<int> descriptors;
    if (!listDescriptors(file_, descriptors)) return "unknown";
    std::string list;
    for (const int descriptor : descriptors)
        list += (list.empty() ? "" : ",") + std::to_string(descriptor);
    return list;
}

void Trace::put(std::string line) const {
    if (file_ < 0) return;
    line += '\n';
    // A test that waits for this note fails if it is missing.
    [[maybe_unused]] const auto done = ::write(file_, line.data(), line.size());
}

} // namespace oxlade::simulator
