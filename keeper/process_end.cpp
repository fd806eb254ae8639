#include "keeper/process_end.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <string_view>
#include <unistd.h>

#ifdef __linux__
#include <sys/syscall.h>
#elif defined(__APPLE__)
#include <sys/event.h>
#endif

namespace oxlade {

namespace {

// By the state letter of /proc/PID/stat: Z is a zombie, X is dead.
bool isZombie(pid_t process) {
    char text[256]; // the number, the name in brackets (at most 64 bytes), the state
    std::snprintf(text, sizeof text, "/proc/%ld/stat", static_cast<long>(process));
    const int file = open(text, O_RDONLY | O_CLOEXEC);
    const ssize_t size = read(file, text, sizeof text); // fails without a file
    close(file);
    const std::string_view line(text, size > 0 ? static_cast<std::size_t>(size) : 0);
    const auto rest = line.substr(line.rfind(')') + 1); // the name may hold brackets and spaces
    return rest.starts_with(" Z") || rest.starts_with(" X");
}

} // namespace

int openProcessEnd(pid_t process) {
#if defined(__linux__) && defined(SYS_pidfd_open)
    return static_cast<int>(syscall(SYS_pidfd_open, process, 0)); // close-on-exec by itself
#elif defined(__APPLE__)
    const int queue = kqueue();
    if (queue < 0) return -1;
    struct kevent event;
    EV_SET(&event, process, EVFILT_PROC, EV_ADD | EV_ONESHOT, NOTE_EXIT, 0, nullptr);
    if (fcntl(queue, F_SETFD, FD_CLOEXEC) == 0 &&
        kevent(queue, &event, 1, nullptr, 0, nullptr) == 0)
        return queue;
    close(queue);
    return -1;
#else
    static_cast<void>(process);
    return -1;
#endif
}

bool processHasEnded(pid_t process) {
    return (kill(process, 0) != 0 && errno == ESRCH) || isZombie(process);
}

} // namespace oxlade
