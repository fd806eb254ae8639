#include "platform/file_system.h"

#include "platform/descriptor.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace oxlade {

namespace {

constexpr std::size_t readSize = 4096; // bytes
constexpr auto longestLease = std::chrono::seconds(2);
constexpr auto leaseInterval = std::chrono::milliseconds(10);

// Opening a leased file without blocking fails, and asks the holder to release the lease.
Descriptor openWithoutBlocking(const std::string& path) {
    const auto end = std::chrono::steady_clock::now() + longestLease;
    for (;;) {
        Descriptor file(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
        if (file || errno != EWOULDBLOCK || !isRegularFile(path)) return file;
        if (std::chrono::steady_clock::now() >= end) return {};
        std::this_thread::sleep_for(leaseInterval);
    }
}

Descriptor openRegularFile(const std::string& path) {
    auto file = openWithoutBlocking(path);
    struct stat status {};
    if (fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) return {};
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
    const std::unique_ptr<char, decltype(&std::free)> path(getcwd(nullptr, 0), &std::free);
    return path ? path.get() : "";
}

std::uint64_t PosixFileSystem::fileSize(const std::string& path) const {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 ? static_cast<std::uint64_t>(status.st_size) : 0;
}

std::string PosixFileSystem::head(const std::string& path, std::size_t limit) const {
    const Descriptor file = openRegularFile(path);
    std::string bytes;
    std::size_t count = 0;
    while (count < limit) {
        // Grows with what is read: a large limit costs no memory for a small file.
        if (count == bytes.size()) bytes.resize(std::min(limit, count + readSize));
        const ssize_t got = uninterrupted(
            [&] { return read(file.get(), bytes.data() + count, bytes.size() - count); });
        if (got <= 0) break;
        count += static_cast<std::size_t>(got);
    }
    bytes.resize(count);
    return bytes;
}

} // namespace oxlade
