#include "platform/keeper.h"

#include "interfaces/keeper_protocol.h"

#include <cstring>
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/uio.h>
#include <utility>

namespace oxlade {

namespace {

#ifdef MSG_NOSIGNAL
constexpr int withoutSignal = MSG_NOSIGNAL;
#else
constexpr int withoutSignal = 0; // the program ignores SIGPIPE
#endif

// Never blocks and is never cut: the socket's buffer holds all messages of a run. Without a
// lifeline it fails.
bool send(const Descriptor& lifeline, KeeperMessage message, const Descriptor* attached = nullptr) {
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
        const int number = attached->get();
        std::memcpy(CMSG_DATA(part), &number, sizeof number);
    }
    return sendmsg(lifeline.get(), &header, withoutSignal) == sizeof message;
}

} // namespace

Keeper Keeper::start(const std::string& executablePath, const Descriptor& output) {
    auto sockets = makeSocketPair();
    if (!sockets) return {};
    const Descriptor nowhere(open("/dev/null", O_RDWR | O_CLOEXEC));
    Keeper keeper;
    if (spawn({executablePath, {keeperProtocolVersion}, &output, &sockets->second, &nowhere},
              keeper.process_) == 0)
        keeper.lifeline_ = std::move(sockets->first);
    return keeper;
}

void Keeper::watch(const ChildProcess& helper) {
    const KeeperMessage message{KeeperNews::helperStarted, helper.number()};
#ifdef __linux__ // a kqueue cannot be sent
    if (send(lifeline_, message, &helper.end())) return;
#endif
    send(lifeline_, message);
}

void Keeper::hold(const Descriptor& descriptor) {
    send(lifeline_, {KeeperNews::holdThis, 0}, &descriptor);
}

void Keeper::runIsOver() {
    send(lifeline_, {KeeperNews::runIsOver, 0});
    lifeline_.reset();
}

} // namespace oxlade
