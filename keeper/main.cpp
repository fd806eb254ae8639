// The keeper: reads a helper's output in the program's place when the program is
// gone in mid-run, so that no helper ever fails for want of a reader.
//
// While the program lives it only listens to it. Started by the program alone, with
// nothing but the descriptors of keeper_protocol.h.
#include "interfaces/keeper_protocol.h"

#include <cerrno>
#include <csignal>
#include <initializer_list>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <sys/uio.h>
#include <unistd.h>

#ifdef __linux__
#include <sys/syscall.h>
#elif defined(__APPLE__)
#include <sys/event.h>
#endif

namespace oxlade {
namespace {

constexpr int none = -1;

// Readable as soon as the process has ended; none when the system has no such
// thing or the process is no more.
int endOf(pid_t process) {
#if defined(__linux__) && defined(SYS_pidfd_open)
    return static_cast<int>(syscall(SYS_pidfd_open, process, 0));
#elif defined(__APPLE__)
    const int queue = kqueue();
    struct kevent event;
    EV_SET(&event, process, EVFILT_PROC, EV_ADD | EV_ONESHOT, NOTE_EXIT, 0, nullptr);
    if (queue >= 0 && kevent(queue, &event, 1, nullptr, 0, nullptr) == 0) return queue;
    if (queue >= 0) close(queue);
    return none;
#else
    static_cast<void>(process);
    return none;
#endif
}

class Helper final {
  public:
    void set(pid_t process) {
        process_ = process;
        end_ = endOf(process);
    }
    int endDescriptor() const { return end_; }
    bool isUnknown() const { return process_ == 0; }
    // Asked where the end cannot be waited for.
    bool hasEnded() const {
        return !isUnknown() && end_ == none && kill(process_, 0) != 0 && errno == ESRCH;
    }

  private:
    pid_t process_ = 0;
    int end_ = none;
};

// False: the program is gone. A descriptor that comes along stays open.
bool receive(KeeperMessage& message) {
    iovec content{&message, sizeof message};
    alignas(cmsghdr) char control[CMSG_SPACE(sizeof(int))];
    msghdr header{};
    header.msg_iov = &content;
    header.msg_iovlen = 1;
    header.msg_control = control;
    header.msg_controllen = sizeof control;
    ssize_t size = 0;
    do size = recvmsg(keeperLifelineDescriptor, &header, MSG_WAITALL);
    while (size < 0 && errno == EINTR);
    return size == sizeof message;
}

// Listens while the program lives. True: the run is over.
bool listen(Helper& helper) {
    KeeperMessage message{};
    while (receive(message)) {
        if (message.news == KeeperNews::runIsOver) return true;
        if (message.news == KeeperNews::helperStarted) helper.set(message.number);
    }
    return false;
}

// Reads and forgets until the helper has ended; one whose number was never told
// has ended when nobody can write any more.
void readInTheProgramsPlace(const Helper& helper) {
    static char buffer[65536];
    pollfd watched[] = {{keeperOutputDescriptor, POLLIN, 0}, {helper.endDescriptor(), POLLIN, 0}};
    constexpr int lookAgain = 500; // milliseconds
    const bool mustLook = !helper.isUnknown() && helper.endDescriptor() == none;
    for (;;) {
        const int ready = poll(watched, 2, mustLook ? lookAgain : -1);
        if (watched[1].revents != 0 || helper.hasEnded()) return;
        if (ready <= 0 || watched[0].revents == 0) continue;
        const ssize_t size = read(keeperOutputDescriptor, buffer, sizeof buffer);
        if (size > 0 || (size < 0 && errno == EINTR)) continue;
        if (helper.isUnknown()) return;
        watched[0].fd = none; // a helper that closed its output may work on
    }
}

// Its life ends with the run; nothing that ends the program may end it earlier.
void standFirm() {
    for (const int signal : {SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGPIPE})
        std::signal(signal, SIG_IGN);
    // No file system is held in use by a directory that it happened to start in.
    static_cast<void>(chdir("/") == 0);
}

bool wasStartedByTheProgram() {
    struct stat output {};
    struct stat lifeline {};
    return fstat(keeperOutputDescriptor, &output) == 0 && S_ISFIFO(output.st_mode) &&
           fstat(keeperLifelineDescriptor, &lifeline) == 0 && S_ISSOCK(lifeline.st_mode);
}

} // namespace
} // namespace oxlade

int main() {
    using namespace oxlade;
    if (!wasStartedByTheProgram()) return 2;
    standFirm();
    Helper helper;
    if (!listen(helper)) readInTheProgramsPlace(helper);
    _exit(0);
}
