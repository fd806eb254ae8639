#include "platform/file_system.h"

#include "platform/descriptor.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

namespace oxlade {

namespace {

constexpr std::size_t leastRead = 4096; // bytes
constexpr auto longestLease = std::chrono::seconds(2);
constexpr int leaseInterval = 10; // milliseconds

// Opening a leased file without blocking fails, and asks the holder to release the lease.
Descriptor openWithoutBlocking(const std::string& path) {
    const auto end = std::chrono::steady_clock::now() + longestLease;
    for (;;) {
        Descriptor file(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
        if (file || errno != EWOULDBLOCK || !isRegularFile(path)) return file;
        if (std::chrono::steady_clock::now() >= end) return {};
        poll(nullptr, 0, leaseInterval);
    }
}

Descriptor openRegularFile(const std::string& path) {
    auto file = openWithoutBlocking(path);
    struct stat status {};
    if (!file || fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) return {};
    return file;
}

} // namespace

bool isRegularFile(const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

bool PosixFileSystem::isExecutableFile(const std::string& path) const {
    return isRegularFile(path) && faccessat(AT_FDCWD, path.c_str(), X_OK, AT_EACCESS) == 0;
}

std::string PosixFileSystem::currentDirectoryPath() const {
    std::string path(256, '\0');
    while (getcwd(path.data(), path.size()) == nullptr) {
        if (errno != ERANGE) return {};
        path.resize(path.size() * 2);
    }
    path.resize(path.find('\0'));
    return path;
}

std::uint64_t PosixFileSystem::fileSize(const std::string& path) const {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 ? static_cast<std::uint64_t>(status.st_size) : 0;
}

std::string PosixFileSystem::head(const std::string& path, std::size_t limit) const {
    const Descriptor file = openRegularFile(path);
    if (!file) return {};
    std::string bytes;
    std::size_t count = 0;
    while (count < limit) {
        // Grows with what is read: a large limit costs no memory for a small file.
        if (count == bytes.size()) bytes.resize(std::min(limit, count * 2 + leastRead));
        const ssize_t got = read(file.get(), bytes.data() + count, bytes.size() - count);
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) break;
        count += static_cast<std::size_t>(got);
    }
    bytes.resize(count);
    return bytes;
}

} // namespace oxlade
