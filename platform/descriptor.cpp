#include "platform/descriptor.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace oxlade {

namespace {

std::optional<DescriptorPair> pairOf(const int (&ends)[2]) {
    DescriptorPair pair{Descriptor(ends[0]), Descriptor(ends[1])};
#ifndef __linux__
    for (const int end : ends)
        if (fcntl(end, F_SETFD, FD_CLOEXEC) != 0) return std::nullopt;
#endif
    return pair;
}

} // namespace

void Descriptor::reset() {
    if (number_ < 0) return;
    const int before = errno;
    close(std::exchange(number_, -1));
    errno = before;
}

std::optional<DescriptorPair> makePipe() {
    int ends[2];
#ifdef __linux__
    // Close-on-exec from the start: no child of another thread inherits them.
    if (pipe2(ends, O_CLOEXEC) != 0) return std::nullopt;
#else
    if (pipe(ends) != 0) return std::nullopt;
#endif
    return pairOf(ends);
}

std::optional<DescriptorPair> makeSocketPair() {
    int ends[2];
#ifdef __linux__
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) return std::nullopt;
#else
    if (socketpair(AF_UNIX, SOCK_STREAM, 0, ends) != 0) return std::nullopt;
#endif
    return pairOf(ends);
}

// open() takes the lowest free number: those below are open by then.
void openClosedStandardStreams() {
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        if (fcntl(stream, F_GETFD) < 0 && open("/dev/null", O_RDWR) < 0) return;
}

} // namespace oxlade
