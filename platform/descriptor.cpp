#include "platform/descriptor.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace oxlade {

namespace {

// Moves the descriptor out of the way of the standard streams.
bool settle(Descriptor& descriptor) {
    if (descriptor.get() > STDERR_FILENO) return fcntl(descriptor.get(), F_SETFD, FD_CLOEXEC) == 0;
    descriptor = Descriptor(fcntl(descriptor.get(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
    return static_cast<bool>(descriptor);
}

std::optional<DescriptorPair> settled(const int (&ends)[2]) {
    DescriptorPair pair{Descriptor(ends[0]), Descriptor(ends[1])};
    if (!settle(pair.first) || !settle(pair.second)) return std::nullopt;
    return pair;
}

} // namespace

Descriptor& Descriptor::operator=(Descriptor&& other) noexcept {
    if (this != &other) {
        reset();
        number_ = std::exchange(other.number_, -1);
    }
    return *this;
}

void Descriptor::reset() {
    if (number_ < 0) return;
    const int before = errno;
    close(std::exchange(number_, -1));
    errno = before;
}

std::optional<DescriptorPair> makePipe() {
    int ends[2];
#ifdef __linux__
    // Close-on-exec from the start: no other thread's child can catch them open.
    if (pipe2(ends, O_CLOEXEC) != 0) return std::nullopt;
#else
    if (pipe(ends) != 0) return std::nullopt;
#endif
    return settled(ends);
}

std::optional<DescriptorPair> makeSocketPair() {
    int ends[2];
#ifdef __linux__
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) return std::nullopt;
#else
    if (socketpair(AF_UNIX, SOCK_STREAM, 0, ends) != 0) return std::nullopt;
#endif
    return settled(ends);
}

} // namespace oxlade
