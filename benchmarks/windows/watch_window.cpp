// Starts a program and takes the time until its window stands painted on the
// screen, without any help of the program's. It sleeps until the X server reports
// something, so that it takes no time from what it measures.
//
// usage: bench_watch_window PROGRAM [ARGUMENT...]
//
// Wants an X server for itself, without a window manager: the window is then a
// child of the root, and shows the root's colour until it is painted. Two lines
// of JSON: one when it is painted (milliseconds and millions of user instructions
// of all threads since the program was started, -1 where the kernel does not count
// them; process, frame), one half a second later (how many pixels differ from those of
// the first moment: what was painted then was the whole window if there are none).
// The program lives until the end of standard input.
#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <linux/perf_event.h>
#include <memory>
#include <optional>
#include <poll.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>
#include <xcb/damage.h>
#include <xcb/xcb.h>

namespace {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

constexpr std::uint32_t nobodysColour = 0xFF00FF;
constexpr std::uint32_t colourBits = 0xFFFFFF;
constexpr auto patience = 30s;

[[noreturn]] void fail(const char* why) {
    std::fprintf(stderr, "bench_watch_window: %s\n", why);
    std::exit(1);
}

/// What the server allocates for its answers.
template <class Answer>
using Owned = std::unique_ptr<Answer, decltype(&std::free)>;
template <class Answer>
Owned<Answer> owned(Answer* answer) {
    return {answer, &std::free};
}

struct Frame {
    std::int16_t x, y;
    std::uint16_t width, height;
};

class Screen {
  public:
    Screen() : connection_{xcb_connect(nullptr, nullptr)} {
        if (xcb_connection_has_error(connection_) != 0) fail("no X server");
        screen_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
        const std::uint32_t values[] = {nobodysColour, XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY};
        xcb_change_window_attributes(connection_, screen_->root,
                                     XCB_CW_BACK_PIXEL | XCB_CW_EVENT_MASK, values);
        xcb_clear_area(connection_, 0, screen_->root, 0, 0, 0, 0);
        if (pixels({0, 0, 1, 1}).front() != nobodysColour) fail("the root cannot be coloured");
        const auto* damage = xcb_get_extension_data(connection_, &xcb_damage_id);
        if (damage == nullptr || damage->present == 0) fail("the X server reports no damage");
        damageNotify_ = static_cast<std::uint8_t>(damage->first_event + XCB_DAMAGE_NOTIFY);
        owned(xcb_damage_query_version_reply(connection_,
                                             xcb_damage_query_version(connection_, 1, 1), nullptr));
    }
    ~Screen() { xcb_disconnect(connection_); }
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;

    /// The first window to come that is no mere splinter. What is painted in it is
    /// reported from then on.
    Frame awaitWindow(Clock::time_point deadline) {
        for (;;) {
            const auto event = awaitEvent(deadline, "no window came");
            if ((event->response_type & 0x7F) != XCB_MAP_NOTIFY) continue;
            const auto id = reinterpret_cast<const xcb_map_notify_event_t*>(event.get())->window;
            const Frame frame = frameOf(id);
            if (frame.width <= 100) continue;
            damage_ = xcb_generate_id(connection_);
            xcb_damage_create(connection_, damage_, id, XCB_DAMAGE_REPORT_LEVEL_NON_EMPTY);
            return frame;
        }
    }

    void awaitPainted(const Frame& frame, Clock::time_point deadline) {
        while (!isPainted(frame)) {
            while ((awaitEvent(deadline, "the window was never painted")->response_type & 0x7F) !=
                   damageNotify_) {
            }
            xcb_damage_subtract(connection_, damage_, XCB_NONE, XCB_NONE);
        }
    }

    /// Whether none of some pixels all over the window is still the root's.
    bool isPainted(const Frame& frame) {
        for (int row = 0; row < 3; ++row)
            for (int column = 0; column < 3; ++column) {
                const auto at = [](int begin, int length, int step) {
                    return static_cast<std::int16_t>(begin + 4 + (length - 9) * step / 2);
                };
                const Frame point{at(frame.x, frame.width, column), at(frame.y, frame.height, row),
                                  1, 1};
                if (pixels(point).front() == nobodysColour) return false;
            }
        return true;
    }

    std::vector<std::uint32_t> pixels(const Frame& frame) {
        const auto answer = owned(xcb_get_image_reply(
            connection_,
            xcb_get_image(connection_, XCB_IMAGE_FORMAT_Z_PIXMAP, screen_->root, frame.x, frame.y,
                          frame.width, frame.height, ~std::uint32_t{0}),
            nullptr));
        if (answer == nullptr) fail("the screen cannot be read");
        std::vector<std::uint32_t> result(std::size_t{frame.width} * frame.height);
        const auto length = static_cast<std::size_t>(xcb_get_image_data_length(answer.get()));
        if (length != result.size() * 4) fail("the screen has not 32 bits a pixel");
        std::memcpy(result.data(), xcb_get_image_data(answer.get()), length);
        for (auto& pixel : result) pixel &= colourBits;
        return result;
    }

  private:
    Owned<xcb_generic_event_t> awaitEvent(Clock::time_point deadline, const char* otherwise) {
        xcb_flush(connection_);
        while (Clock::now() < deadline) {
            if (auto event = owned(xcb_poll_for_event(connection_)); event != nullptr) return event;
            pollfd connection{xcb_get_file_descriptor(connection_), POLLIN, 0};
            poll(&connection, 1, 1000);
        }
        fail(otherwise);
    }

    Frame frameOf(xcb_window_t window) {
        const auto answer = owned(
            xcb_get_geometry_reply(connection_, xcb_get_geometry(connection_, window), nullptr));
        if (answer == nullptr) return {};
        return {answer->x, answer->y, answer->width, answer->height};
    }

    xcb_connection_t* connection_;
    xcb_screen_t* screen_ = nullptr;
    xcb_damage_damage_t damage_ = XCB_NONE;
    std::uint8_t damageNotify_ = 0;
};

/// Counts the user instructions of this process, and of the processes that it starts from then
/// on where `inherited`.
class InstructionCounter {
  public:
    explicit InstructionCounter(bool inherited) {
        perf_event_attr wanted{};
        wanted.size = sizeof wanted;
        wanted.type = PERF_TYPE_HARDWARE;
        wanted.config = PERF_COUNT_HW_INSTRUCTIONS;
        wanted.inherit = inherited ? 1 : 0;
        wanted.exclude_kernel = 1;
        wanted.exclude_hv = 1;
        descriptor_ = static_cast<int>(
            syscall(SYS_perf_event_open, &wanted, 0, -1, -1, PERF_FLAG_FD_CLOEXEC));
    }
    ~InstructionCounter() { close(descriptor_); }
    InstructionCounter(const InstructionCounter&) = delete;
    InstructionCounter& operator=(const InstructionCounter&) = delete;

    std::optional<std::uint64_t> read() const {
        std::uint64_t count = 0;
        if (::read(descriptor_, &count, sizeof count) != sizeof count) return std::nullopt;
        return count;
    }

  private:
    int descriptor_;
};

pid_t start(char* arguments[]) {
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", 0, 0);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", 1, 0);
    pid_t process = 0;
    if (posix_spawn(&process, arguments[0], &actions, nullptr, arguments, environ) != 0)
        fail("the program cannot be started");
    posix_spawn_file_actions_destroy(&actions);
    return process;
}

std::size_t differences(const std::vector<std::uint32_t>& one,
                        const std::vector<std::uint32_t>& other) {
    std::size_t count = 0;
    for (std::size_t i = 0; i < one.size(); ++i) count += one[i] != other[i] ? 1 : 0;
    return count;
}

} // namespace

int main(int argc, char* argv[]) {
    if (argc < 2) fail("usage: bench_watch_window PROGRAM [ARGUMENT...]");
    Screen screen;
    const InstructionCounter all{true}, own{false};
    const auto ownBefore = own.read(), allBefore = all.read();
    const auto begin = Clock::now();
    const pid_t process = start(argv + 1);
    const Frame frame = screen.awaitWindow(begin + patience);
    screen.awaitPainted(frame, begin + patience);
    const std::chrono::duration<double, std::milli> taken = Clock::now() - begin;
    const auto allAfter = all.read(), ownAfter = own.read();
    const double instructions =
        allAfter && ownAfter && allBefore && ownBefore
            ? static_cast<double>((*allAfter - *allBefore) - (*ownAfter - *ownBefore)) / 1e6
            : -1;
    const auto first = screen.pixels(frame);
    std::printf("{\"ms\": %.2f, \"instructions\": %.2f, \"pid\": %d, \"x\": %d, \"y\": %d, "
                "\"width\": %d, \"height\": %d}\n",
                taken.count(), instructions, static_cast<int>(process), frame.x, frame.y,
                frame.width, frame.height);
    std::fflush(stdout);
    std::this_thread::sleep_for(500ms);
    std::printf("{\"changed\": %zu}\n", differences(first, screen.pixels(frame)));
    std::fflush(stdout);
    while (std::getchar() != EOF) {
    }
    kill(process, SIGTERM);
    waitpid(process, nullptr, 0);
    return 0;
}
