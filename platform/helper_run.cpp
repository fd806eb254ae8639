#include "platform/helper_run.h"

#include "platform/spawn.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace oxlade {

namespace {

// A read takes all that is there, so that no line is cut but by the helper itself:
// the buffer holds what the pipe can hold.
std::vector<char> bufferFor(const Descriptor& pipe) {
    int capacity = 65536;
#ifdef F_GETPIPE_SZ
    capacity = std::max(capacity, fcntl(pipe.get(), F_GETPIPE_SZ));
#else
    static_cast<void>(pipe);
#endif
    return std::vector<char>(static_cast<std::size_t>(capacity));
}

// How much is there now. Also grows the buffer for it: a helper may enlarge its pipe.
std::size_t available(const Descriptor& pipe, std::vector<char>& buffer) {
    int count = 0;
    if (ioctl(pipe.get(), FIONREAD, &count) != 0 || count <= 0) return 0;
    const auto size = static_cast<std::size_t>(count);
    if (buffer.size() < size) buffer.resize(size);
    return size;
}

// The bytes read; empty at the end, which an unreadable pipe has reached too.
std::string_view readInto(std::vector<char>& buffer, const Descriptor& pipe, std::size_t limit) {
    ssize_t count = 0;
    do count = read(pipe.get(), buffer.data(), limit);
    while (count < 0 && errno == EINTR);
    return {buffer.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0))};
}

std::int32_t exitStatusOf(pid_t process) {
    int status = 0;
    while (waitpid(process, &status, 0) < 0)
        if (errno != EINTR) return -1;
    return WIFSIGNALED(status) ? WTERMSIG(status) : WEXITSTATUS(status);
}

} // namespace

void HelperRun::setReadabilityHandler(ReadabilityHandler handler) {
    const std::lock_guard lock(mutex_);
    onReadable_.swap(handler); // the old one goes after the lock
}

void HelperRun::setTerminationHandler(TerminationHandler handler) {
    const std::lock_guard lock(mutex_);
    onTermination_.swap(handler);
}

std::optional<std::string> HelperRun::launch() {
    auto output = makePipe();
    auto wake = output ? makePipe() : std::nullopt;
    const int error = wake ? start(*output, std::move(*wake)) : errno;
    if (error == 0) {
        askForSleepLock();
        return std::nullopt;
    }
    letGoOfHandlers();
    return std::system_category().message(error);
}

// The threads first: no helper is ever started that nobody could watch.
int HelperRun::start(DescriptorPair& output, DescriptorPair wake) {
    keeper_ = Keeper::start(plan_.keeperPath, output.first);
    if (const int error = startThreads(std::move(output.first), std::move(wake))) {
        tellWaiter(0);
        keeper_.runIsOver();
        return error;
    }
    const int error = startHelper(output.second);
    output.second.reset();
    return error;
}

int HelperRun::startThreads(Descriptor output, DescriptorPair wake) {
    try {
        std::thread([self = shared_from_this(), end = std::move(wake.second)]() mutable {
            self->waitForHelper();
            end.reset();
        }).detach();
        std::thread([self = shared_from_this(), pipe = std::move(output),
                     end = std::move(wake.first)]() mutable {
            self->readOutput(pipe, std::move(end));
        }).detach();
        return 0;
    } catch (const std::system_error& refusal) {
        return refusal.code().value();
    }
}

int HelperRun::startHelper(const Descriptor& output) {
    pid_t helper = 0;
    const int error = spawn({.executablePath = plan_.executablePath,
                             .arguments = plan_.arguments,
                             .input = nullptr,
                             .output = &output,
                             .error = &output},
                            helper);
    // Before the threads hear of it: a launch that failed calls nobody.
    if (error != 0) letGoOfHandlers();
    tellWaiter(error == 0 ? helper : 0);
    return error;
}

void HelperRun::tellWaiter(pid_t helper) {
    const std::lock_guard lock(mutex_);
    // Before anybody waits for it: until then its number cannot pass to another. A keeper
    // that looks only when a very short run is over hears of that end from us as well.
    if (helper != 0) keeper_.watch(helper);
    helper_ = helper;
    told_.notify_one();
}

void HelperRun::askForSleepLock() {
    if (plan_.sleepLock == nullptr) return;
    plan_.sleepLock->acquire([weak = weak_from_this()](Descriptor lock) {
        if (const auto self = weak.lock()) self->keepAwake(std::move(lock));
    });
}

void HelperRun::keepAwake(Descriptor lock) {
    const std::lock_guard guard(mutex_);
    if (over_) return;
    keeper_.hold(lock); // a copy: either of us may end before the helper does
    sleepLock_ = std::move(lock);
}

void HelperRun::waitForHelper() {
    std::unique_lock lock(mutex_);
    told_.wait(lock, [this] { return helper_.has_value(); });
    const pid_t helper = *helper_;
    lock.unlock();
    if (helper != 0) status_ = exitStatusOf(helper);
}

void HelperRun::readOutput(const Descriptor& output, Descriptor wake) {
    auto buffer = bufferFor(output);
    readUntilExit(output, wake, buffer);
    wake.reset();
    readRest(output, buffer);
    finish();
    // Whoever the helper left behind may go on talking, to nobody.
    while (!readInto(buffer, output, buffer.size()).empty()) {
    }
}

// Until the waiter closes its end, which it does when the helper has exited.
void HelperRun::readUntilExit(const Descriptor& output, const Descriptor& wake,
                              std::vector<char>& buffer) {
    pollfd watched[] = {{output.get(), POLLIN, 0}, {wake.get(), POLLIN, 0}};
    for (;;) {
        if (poll(watched, std::size(watched), -1) < 0) continue;
        if (watched[1].revents != 0) return;
        if (watched[0].revents == 0) continue;
        available(output, buffer);
        const auto bytes = readInto(buffer, output, buffer.size());
        deliver(bytes);
        if (bytes.empty()) watched[0].fd = -1;
    }
}

// What the helper wrote is all in the pipe by now. Reading that much and no more,
// nobody who goes on writing can hold up the exit.
void HelperRun::readRest(const Descriptor& output, std::vector<char>& buffer) {
    if (const auto left = available(output, buffer)) deliver(readInto(buffer, output, left));
}

void HelperRun::deliver(std::string_view bytes) {
    std::unique_lock lock(mutex_);
    const auto handler = onReadable_;
    lock.unlock();
    if (handler) handler(bytes);
}

void HelperRun::finish() {
    std::unique_lock lock(mutex_);
    over_ = true;
    sleepLock_.reset();
    keeper_.runIsOver();
    const auto handler = onTermination_;
    lock.unlock();
    if (handler) handler();
    letGoOfHandlers();
}

// They may own whatever they like, the run itself included.
void HelperRun::letGoOfHandlers() {
    setReadabilityHandler({});
    setTerminationHandler({});
}

} // namespace oxlade
