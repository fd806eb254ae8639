#include "simulator/voice.h"

#include "simulator/ended.h"

#include <cerrno>
#include <chrono>
#include <poll.h>
#include <sys/ioctl.h>
#include <thread>
#include <unistd.h>
#include <utility>

namespace oxlade::simulator {

namespace {

using namespace std::chrono_literals;

bool readerIsGone(int descriptor) {
    pollfd entry{descriptor, POLLOUT, 0};
    return ::poll(&entry, 1, 0) == 1 && (entry.revents & POLLERR) != 0;
}

// Until all that was written has been read, so that what is written next comes
// in another read. A reader that takes nothing for 5 s is not waited for.
void awaitReader(int descriptor) {
    const auto deadline = std::chrono::steady_clock::now() + 5s;
    int waiting = 0;
    while (::ioctl(descriptor, FIONREAD, &waiting) == 0) {
        if (waiting == 0 || readerIsGone(descriptor)) return;
        if (std::chrono::steady_clock::now() > deadline) return;
        std::this_thread::sleep_for(200us);
    }
    std::this_thread::sleep_for(60ms); // a terminal or a file: it cannot be known
}

} // namespace

Voice::Voice(const Behaviour& behaviour, const Trace& trace)
    : behaviour_(behaviour), trace_(trace) {}

void Voice::say(std::string_view line) { emit(STDOUT_FILENO, std::string(line) + '\n'); }

void Voice::warn(std::string_view line) { emit(STDERR_FILENO, std::string(line) + '\n'); }

void Voice::report(std::string_view word, unsigned percent) {
    const bool last = percent == 100;
    reports_ += std::string(word) + ' ' + std::to_string(percent) + '%';
    if (last)
        reports_ += '\n';
    else if (!behaviour_.noLineEnds)
        reports_ += '\r';
    if (last || !behaviour_.oneWrite) emit(STDOUT_FILENO, std::exchange(reports_, {}));
}

void Voice::stream(std::string_view bytes) {
    if (behaviour_.noFlush)
        held_ += bytes;
    else
        send(STDOUT_FILENO, bytes);
}

void Voice::flush() {
    send(STDOUT_FILENO, std::exchange(held_, {}));
    send(STDOUT_FILENO, std::exchange(reports_, {}));
}

void Voice::emit(int descriptor, std::string_view line) {
    if (behaviour_.noFlush && descriptor == STDOUT_FILENO) {
        held_ += line;
        return;
    }
    const std::size_t cut = nextCut(line.size());
    if (cut > 0 && cut < line.size())
        sendInTwo(descriptor, line, cut);
    else
        send(descriptor, line);
}

std::size_t Voice::nextCut(std::size_t length) {
    if (!behaviour_.splitEverywhere) return behaviour_.splitAt;
    return length < 2 ? 0 : 1 + lines_++ % (length - 1);
}

void Voice::sendInTwo(int descriptor, std::string_view line, std::size_t cut) const {
    awaitReader(descriptor);
    send(descriptor, line.substr(0, cut));
    awaitReader(descriptor);
    send(descriptor, line.substr(cut));
    awaitReader(descriptor);
}

void Voice::send(int descriptor, std::string_view bytes) const {
    while (!bytes.empty()) {
        const ssize_t done = ::write(descriptor, bytes.data(), bytes.size());
        if (done < 0 && errno == EINTR) continue;
        if (done < 0) {
            if (!behaviour_.strict) return;
            trace_.note("write-failed " + std::to_string(errno));
            throw Ended{outputError};
        }
        bytes.remove_prefix(static_cast<std::size_t>(done));
    }
}

} // namespace oxlade::simulator
