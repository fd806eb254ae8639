#include "simulator/output.h"

#include <cerrno>
#include <chrono>
#include <poll.h>
#include <string>
#include <sys/ioctl.h>
#include <thread>
#include <unistd.h>

namespace oxlade::simulator {

namespace {

using namespace std::chrono_literals;

bool readerIsGone(int descriptor) {
    pollfd entry{descriptor, POLLOUT, 0};
    return ::poll(&entry, 1, 0) == 1 && (entry.revents & POLLERR) != 0;
}

/// Waits until the pipe is empty, so that the next write is read on its own. Gives up
/// after 30 s.
void awaitReader(int descriptor) {
    const auto deadline = std::chrono::steady_clock::now() + 30s;
    int waiting = 0;
    while (::ioctl(descriptor, FIONREAD, &waiting) == 0) {
        if (waiting == 0 || readerIsGone(descriptor)) return;
        if (std::chrono::steady_clock::now() > deadline) return;
        std::this_thread::sleep_for(200us);
    }
    std::this_thread::sleep_for(60ms); // a terminal or a file does not tell
}

} // namespace

Output::Output(const Options& options, const Trace& trace) : options_(options), trace_(trace) {}

void Output::print(std::string_view line) { printText(STDOUT_FILENO, std::string(line) + '\n'); }

void Output::printError(std::string_view line) {
    printText(STDERR_FILENO, std::string(line) + '\n');
}

void Output::printProgress(std::string_view word, unsigned percent) {
    const char* const end = percent == 100 ? "%\n" : "%\r";
    printText(STDOUT_FILENO, std::string(word) + ' ' + std::to_string(percent) + end);
}

void Output::write(std::string_view bytes) const { writeAll(STDOUT_FILENO, bytes); }

void Output::printText(int descriptor, std::string_view text) {
    const std::size_t cut = nextCut(text.size());
    if (cut > 0 && cut < text.size())
        writeInTwo(descriptor, text, cut);
    else
        writeAll(descriptor, text);
}

std::size_t Output::nextCut(std::size_t length) {
    if (!options_.splitEverywhere) return options_.splitAt;
    return length < 2 ? 0 : 1 + lines_++ % (length - 1);
}

void Output::writeInTwo(int descriptor, std::string_view text, std::size_t cut) const {
    awaitReader(descriptor);
    writeAll(descriptor, text.substr(0, cut));
    awaitReader(descriptor);
    writeAll(descriptor, text.substr(cut));
    awaitReader(descriptor);
}

void Output::writeAll(int descriptor, std::string_view bytes) const {
    while (!bytes.empty()) {
        const ssize_t done = ::write(descriptor, bytes.data(), bytes.size());
        if (done < 0 && errno == EINTR) continue;
        if (done < 0) {
            if (!options_.strict) return;
            trace_.note("write-failed " + std::to_string(errno));
            throw Ended{outputError};
        }
        bytes.remove_prefix(static_cast<std::size_t>(done));
    }
}

} // namespace oxlade::simulator
