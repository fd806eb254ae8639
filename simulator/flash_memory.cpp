#include "simulator/flash_memory.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace oxlade::simulator {

namespace {

constexpr std::size_t blockBytes = 4096;

[[noreturn]] void fail(const std::string& path) {
    throw std::system_error(errno, std::generic_category(), path);
}

int openOrFail(const std::string& path, int flags) {
    const int file = ::open(path.c_str(), flags | O_CREAT | O_CLOEXEC, 0644);
    if (file < 0) fail(path);
    return file;
}

int openFlash(const std::string& path) {
    const auto folder = std::filesystem::path(path).parent_path();
    if (!folder.empty()) std::filesystem::create_directories(folder);
    return openOrFail(path, O_RDWR);
}

std::size_t share(std::size_t whole, unsigned percent) {
    return whole / 100 * percent + whole % 100 * percent / 100;
}

} // namespace

FlashMemory::FlashMemory(const std::string& path) : path_(path), file_(openFlash(path)) {}

FlashMemory::~FlashMemory() { ::close(file_); }

void FlashMemory::eraseTo(unsigned percent, std::size_t imageBytes) {
    if (extent_ == 0) {
        struct stat status {};
        if (::fstat(file_, &status) != 0) fail(path_);
        const auto held = static_cast<std::size_t>(status.st_size);
        const std::size_t needed = std::max<std::size_t>({held, imageBytes, 1});
        extent_ = (needed + sectorBytes - 1) / sectorBytes * sectorBytes;
        setState("erasing\n");
    }
    const std::string blank(blockBytes, '\xFF');
    const std::size_t goal = share(extent_, percent);
    while (erased_ < goal) {
        const std::size_t length = std::min(blockBytes, goal - erased_);
        put(std::string_view(blank).substr(0, length), erased_);
        erased_ += length;
    }
}

void FlashMemory::writeTo(unsigned percent, std::string_view image) {
    if (!writing_) setState("writing\n");
    writing_ = true;
    const std::size_t goal = share(image.size(), percent);
    while (written_ < goal) {
        const std::size_t length = std::min(blockBytes, goal - written_);
        put(image.substr(written_, length), written_);
        written_ += length;
    }
}

bool FlashMemory::verify(std::string_view image) {
    std::vector<char> block(blockBytes);
    for (std::size_t at = 0; at < image.size(); at += blockBytes) {
        const std::size_t length = std::min(blockBytes, image.size() - at);
        const ssize_t got = ::pread(file_, block.data(), length, static_cast<off_t>(at));
        if (got < 0) fail(path_);
        if (std::string_view(block.data(), static_cast<std::size_t>(got)) !=
            image.substr(at, length))
            return false;
    }
    if (::ftruncate(file_, static_cast<off_t>(image.size())) != 0) fail(path_);
    setState("whole " + std::to_string(image.size()) + "\n");
    return true;
}

void FlashMemory::setState(const std::string& state) const {
    const std::string path = path_ + ".state";
    const int file = openOrFail(path, O_WRONLY | O_TRUNC);
    const bool written =
        ::write(file, state.data(), state.size()) == static_cast<ssize_t>(state.size());
    ::close(file);
    if (!written) fail(path);
}

void FlashMemory::put(std::string_view bytes, std::size_t offset) const {
    while (!bytes.empty()) {
        const ssize_t done =
            ::pwrite(file_, bytes.data(), bytes.size(), static_cast<off_t>(offset));
        if (done < 0 && errno == EINTR) continue;
        if (done <= 0) fail(path_);
        bytes.remove_prefix(static_cast<std::size_t>(done));
        offset += static_cast<std::size_t>(done);
    }
}

} // namespace oxlade::simulator
