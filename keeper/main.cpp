// The keeper: when the program is gone in mid-run, it reads the helper's output in the
// program's place until the helper has ended, so the helper never gets SIGPIPE.
//
// While the program lives the keeper only receives its messages. Only the program starts
// it, with the argument and the descriptors of keeper_protocol.h.
#include "interfaces/keeper_protocol.h"
#include "keeper/process_end.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <initializer_list>
#include <iterator>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <sys/uio.h>
#include <unistd.h>

namespace oxlade {
namespace {

constexpr int none = -1;

class Helper final {
  public:
    // `end`: a pidfd of the process, or none.
    void set(pid_t process, int end) {
        process_ = process;
        end_ = end != none ? end : openProcessEnd(process);
    }
    int endDescriptor() const { return end_; }
    bool isUnknown() const { return process_ == 0; }
    bool mustBePolled() const { return !isUnknown() && end_ == none; }
    bool hasEnded() const { return mustBePolled() && processHasEnded(process_); }

  private:
    pid_t process_ = 0;
    int end_ = none;
};

struct Received {
    KeeperMessage message{};
    int attached = none;
};

// The socket has no options: nothing but descriptors can be attached.
int attachedTo(msghdr& header) {
    const cmsghdr* const part = CMSG_FIRSTHDR(&header);
    if (part == nullptr) return none;
    int descriptor = none;
    std::memcpy(&descriptor, CMSG_DATA(part), sizeof descriptor);
    return descriptor;
}

// False: the program is gone.
bool receive(Received& received) {
    iovec content[] = {{&received.message, sizeof received.message}};
    alignas(cmsghdr) char control[CMSG_SPACE(sizeof(int))];
    msghdr header{};
    header.msg_iov = content;
    header.msg_iovlen = std::size(content);
    header.msg_control = control;
    header.msg_controllen = sizeof control;
    ssize_t size = 0;
    do size = recvmsg(keeperLifelineDescriptor, &header, MSG_WAITALL);
    while (size < 0 && errno == EINTR);
    if (size != sizeof received.message) return false;
    received.attached = attachedTo(header);
    return true;
}

// Receives until the run is over (true) or the program is gone (false).
bool listen(Helper& helper) {
    for (Received received; receive(received); received = {}) {
        const auto& [news, number] = received.message;
        if (news == KeeperNews::runIsOver) return true;
        if (news == KeeperNews::helperStarted) helper.set(number, received.attached);
    }
    return false;
}

// Reads until the helper has ended. A helper whose number was never received counts as
// ended when the pipe has no writer any more.
void readInTheProgramsPlace(const Helper& helper) {
    static char buffer[65536];
    pollfd watched[] = {{keeperOutputDescriptor, POLLIN, 0}, {helper.endDescriptor(), POLLIN, 0}};
    constexpr int pollInterval = 500; // milliseconds
    for (;;) {
        const int ready =
            poll(watched, std::size(watched), helper.mustBePolled() ? pollInterval : -1);
        if (watched[1].revents != 0 || helper.hasEnded()) return;
        if (ready < 0 || watched[0].revents == 0) continue;
        const ssize_t size = read(keeperOutputDescriptor, buffer, sizeof buffer);
        if (size > 0 || (size < 0 && errno == EINTR)) continue;
        if (helper.isUnknown()) return;
        watched[0].fd = none; // a helper that closed its output may work on
    }
}

// Must outlive the program: ignores termination signals.
void ignoreTerminationSignals() {
    for (const int signal : {SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGPIPE})
        std::signal(signal, SIG_IGN);
}

// Keeps no file system busy with the directory that the program was started in.
void leaveDirectory() { static_cast<void>(chdir("/") == 0); }

bool wasStartedByTheProgram() {
    struct stat output {};
    struct stat lifeline {};
    return fstat(keeperOutputDescriptor, &output) == 0 && S_ISFIFO(output.st_mode) &&
           fstat(keeperLifelineDescriptor, &lifeline) == 0 && S_ISSOCK(lifeline.st_mode);
}

bool speaksThisVersion(int count, const char* const* arguments) {
    return count == 2 && std::strcmp(arguments[1], keeperProtocolVersion) == 0;
}

} // namespace
} // namespace oxlade

int main(int argc, char** argv) {
    using namespace oxlade;
    if (!wasStartedByTheProgram() || !speaksThisVersion(argc, argv)) return 2;
    ignoreTerminationSignals();
    leaveDirectory();
    Helper helper;
    if (!listen(helper)) readInTheProgramsPlace(helper);
    _exit(0);
}
