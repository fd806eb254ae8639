#include "platform/keeper.h"

#include "interfaces/keeper_protocol.h"
#include "platform/spawn.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/uio.h>
#include <sys/wait.h>
#include <system_error>
#include <thread>

namespace oxlade {

namespace {

#ifdef MSG_NOSIGNAL
constexpr int withoutSignal = MSG_NOSIGNAL;
#else
constexpr int withoutSignal = 0; // the program ignores SIGPIPE
#endif

// A few bytes into an empty socket: never blocks, never comes in parts.
bool send(const Descriptor& lifeline, KeeperMessage message, const int* attached = nullptr) {
    if (!lifeline) return false;
    iovec content{&message, sizeof message};
    msghdr header{};
    header.msg_iov = &content;
    header.msg_iovlen = 1;
    alignas(cmsghdr) char control[CMSG_SPACE(sizeof(int))] = {};
    if (attached != nullptr) {
        header.msg_control = control;
        header.msg_controllen = sizeof control;
        cmsghdr* part = CMSG_FIRSTHDR(&header);
        part->cmsg_level = SOL_SOCKET;
        part->cmsg_type = SCM_RIGHTS;
        part->cmsg_len = CMSG_LEN(sizeof(int));
        std::memcpy(CMSG_DATA(part), attached, sizeof(int));
    }
    return sendmsg(lifeline.get(), &header, withoutSignal) == sizeof message;
}

void waitFor(pid_t process) {
    while (waitpid(process, nullptr, 0) < 0 && errno == EINTR) {
    }
}

} // namespace

Keeper Keeper::start(const std::string& executablePath, const Descriptor& output) {
    auto sockets = executablePath.empty() ? std::nullopt : makeSocketPair();
    const Descriptor nowhere(sockets ? open("/dev/null", O_RDWR | O_CLOEXEC) : -1);
    if (!nowhere) return {};
    pid_t process = 0;
    if (spawn({executablePath, {}, &output, &sockets->second, &nowhere}, process) != 0) return {};
    Keeper keeper(std::move(sockets->first));
    try {
        std::thread(waitFor, process).detach(); // it may end at any time, and leaves no zombie
    } catch (const std::system_error&) {
        sockets.reset();
        keeper.runIsOver();
        waitFor(process);
    }
    return keeper;
}

void Keeper::watch(pid_t helper) { send(lifeline_, {KeeperNews::helperStarted, helper}); }

void Keeper::hold(const Descriptor& descriptor) {
    const int number = descriptor.get();
    send(lifeline_, {KeeperNews::holdThis, 0}, &number);
}

void Keeper::runIsOver() {
    send(lifeline_, {KeeperNews::runIsOver, 0});
    lifeline_.reset();
}

} // namespace oxlade
