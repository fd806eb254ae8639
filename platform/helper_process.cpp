#include "platform/helper_process.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <poll.h>
#include <sys/ioctl.h>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace oxlade {

namespace {

constexpr std::size_t pipeSize = 65536; // bytes, unless the helper changes it
constexpr int pollInterval = 50;        // milliseconds, where the end of a process cannot be polled

// How many bytes the pipe holds; none, if it is closed.
std::size_t available(const Descriptor& pipe) {
    int count = 0;
    ioctl(pipe.get(), FIONREAD, &count);
    return static_cast<std::size_t>(count);
}

// The bytes read; empty at the end of the stream and on an error.
SharedBytes readInto(OutputBuffer& buffer, const Descriptor& pipe, std::size_t limit) {
    const auto count = uninterrupted([&] { return read(pipe.get(), buffer.room(limit), limit); });
    return buffer.take(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
}

pollfd readable(const Descriptor& descriptor) { return {descriptor.get(), POLLIN, 0}; }

} // namespace

void PosixHelperProcess::setReadabilityHandler(ReadabilityHandler handler) {
    const std::lock_guard lock(mutex_);
    onReadable_.swap(handler); // the old one is destroyed after the lock
}

void PosixHelperProcess::setTerminationHandler(TerminationHandler handler) {
    const std::lock_guard lock(mutex_);
    onTermination_.swap(handler);
}

std::optional<std::string> PosixHelperProcess::launch() {
    int error = 0;
    try {
        std::promise<int> started;
        auto result = started.get_future();
        std::thread(&PosixHelperProcess::run, shared_from_this(), std::move(started)).detach();
        error = result.get();
    } catch (const std::system_error& refusal) {
        error = refusal.code().value();
    }
    if (error != 0) {
        clearHandlers();
        return std::system_category().message(error);
    }
    askForSleepLock();
    return std::nullopt;
}

void PosixHelperProcess::askForSleepLock() {
    if (plan_.sleepLock == nullptr) return;
    plan_.sleepLock->acquire([weak = weak_from_this()](Descriptor lock) {
        if (const auto self = weak.lock()) self->keepAwake(std::move(lock));
    });
}

void PosixHelperProcess::keepAwake(Descriptor lock) {
    const std::lock_guard guard(mutex_);
    if (isOver_) return;
    keeper_.hold(lock); // a copy: the program or the keeper may end before the helper
    sleepLock_ = std::move(lock);
}

void PosixHelperProcess::run(std::promise<int> started) {
    Descriptor output;
    started.set_value(start(output));
    serve(std::move(output)); // after an error: until the keeper is reaped
}

int PosixHelperProcess::start(Descriptor& output) {
    auto pipe = makePipe();
    if (!pipe) return errno;
    auto keeper = Keeper::start(plan_.keeperPath, pipe->first);
    const int error = startHelper(pipe->second, keeper);
    if (error == 0) {
        keeper.watch(helper_);
        output = std::move(pipe->first);
    } else {
        keeper.runIsOver();
    }
    const std::lock_guard lock(mutex_);
    keeper_ = std::move(keeper);
    return error;
}

int PosixHelperProcess::startHelper(const Descriptor& output, Keeper& keeper) {
    const SpawnRequest request{plan_.executablePath, plan_.arguments, nullptr, &output, &output};
    const int error = spawn(request, helper_);
    if (error != EAGAIN) return error;
    keeper.process().kill(); // the last process that the user may have: the helper's place
    return spawn(request, helper_);
}

// Until the helper is reaped, the keeper is reaped, and nobody can write to the pipe.
void PosixHelperProcess::serve(Descriptor output) {
    auto& keeper = keeper_.process();
    while (helper_.isRunning() || output || keeper.isRunning()) {
        pollfd watched[] = {readable(helper_.end()), readable(output), readable(keeper.end())};
        const bool mustPoll = helper_.mustBePolled() || keeper.mustBePolled();
        if (poll(watched, std::size(watched), mustPoll ? pollInterval : -1) < 0) continue;
        const bool mayHaveEnded = watched[0].revents != 0 || helper_.mustBePolled();
        if (mayHaveEnded && helper_.reapIfEnded()) {
            readRest(output);
            finish();
        } else if (watched[1].revents != 0) {
            readOutput(output);
        }
        if (watched[2].revents != 0 || keeper.mustBePolled()) keeper.reapIfEnded();
    }
}

// After the exit: what the helper's children still write, delivered to nobody.
void PosixHelperProcess::readOutput(Descriptor& output) {
    // All that is there: a helper may enlarge its pipe, and only the helper cuts its lines.
    const auto bytes = readInto(buffer_, output, std::max(available(output), pipeSize));
    deliver(bytes);
    if (bytes.view.empty()) output.reset();
}

// All that the helper wrote is in the pipe by now. Reads no more than that: a child of the
// helper that goes on writing does not delay the exit.
void PosixHelperProcess::readRest(const Descriptor& output) {
    if (const auto left = available(output)) deliver(readInto(buffer_, output, left));
}

void PosixHelperProcess::deliver(const SharedBytes& bytes) {
    std::unique_lock lock(mutex_);
    const auto handler = onReadable_;
    lock.unlock();
    if (handler) handler(bytes);
}

void PosixHelperProcess::finish() {
    status_ = helper_.exitStatus();
    std::unique_lock lock(mutex_);
    isOver_ = true;
    sleepLock_.reset();
    keeper_.runIsOver();
    const auto handler = onTermination_;
    lock.unlock();
    if (handler) handler();
    clearHandlers();
}

// They may own anything, the run itself included.
void PosixHelperProcess::clearHandlers() {
    setReadabilityHandler({});
    setTerminationHandler({});
}

namespace {

void doNothing(int) {}

// A program that its terminal has stopped reads no more, and a helper with much to write
// waits with the sampler's flash half written. Handled rather than ignored: exec resets
// handlers, so other programs that we start can be stopped. Without SA_RESTART: a read or
// write that the terminal refuses would be tried again for ever.
void surviveTerminalStops() {
    struct sigaction action {};
    action.sa_handler = doNothing;
    for (const int signal : {SIGTSTP, SIGTTIN, SIGTTOU}) sigaction(signal, &action, nullptr);
}

void receiveChildStatus() {
    struct sigaction action {};
    sigaction(SIGCHLD, nullptr, &action);
    if (action.sa_handler == SIG_IGN) std::signal(SIGCHLD, SIG_DFL);
}

} // namespace

PosixHelperProcesses::PosixHelperProcesses(std::string keeperPath, SleepLock* sleepLock)
    : keeperPath_(std::move(keeperPath)), sleepLock_(sleepLock) {
    std::signal(SIGPIPE, SIG_IGN);
    surviveTerminalStops();
    receiveChildStatus();
}

std::shared_ptr<HelperProcess> PosixHelperProcesses::make(std::string executablePath,
                                                          std::vector<std::string> arguments) {
    return std::make_shared<PosixHelperProcess>(
        HelperPlan{std::move(executablePath), std::move(arguments), keeperPath_, sleepLock_});
}

} // namespace oxlade
