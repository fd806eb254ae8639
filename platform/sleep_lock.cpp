#include "platform/sleep_lock.h"

#ifdef __linux__

#include <cerrno>
#include <fcntl.h>
#include <memory>
#include <system_error>
#include <systemd/sd-bus.h>
#include <thread>
#include <utility>

namespace oxlade {

namespace {

struct Close {
    void operator()(sd_bus* bus) const { sd_bus_close_unref(bus); }
    void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
};
template <class T>
using Owned = std::unique_ptr<T, Close>;

Owned<sd_bus> systemBus() {
    sd_bus* bus = nullptr;
    return Owned<sd_bus>(sd_bus_open_system(&bus) < 0 ? nullptr : bus);
}

// The message owns its descriptor and closes it.
Descriptor copyOf(int descriptor) { return Descriptor(fcntl(descriptor, F_DUPFD_CLOEXEC, 0)); }

// "sleep" does not cover the lid, which has a name of its own.
constexpr const char* allEvents = "sleep:idle:handle-lid-switch:shutdown";
constexpr const char* mainEvents = "sleep:idle";

struct Answer {
    Descriptor lock;
    bool refused = false; // false also when there was no answer
};

Answer inhibit(sd_bus& bus, const char* events, const std::string& reason) {
    sd_bus_message* reply = nullptr;
    const int result = sd_bus_call_method(
        &bus, "org.freedesktop.login1", "/org/freedesktop/login1", "org.freedesktop.login1.Manager",
        "Inhibit", nullptr, &reply, "ssss", events, "Oxlade", reason.c_str(), "block");
    const Owned<sd_bus_message> owned(reply);
    if (result < 0) return {{}, result == -EACCES || result == -EINVAL};
    int descriptor = -1;
    if (sd_bus_message_read(reply, "h", &descriptor) < 0) return {};
    return {copyOf(descriptor)};
}

void ask(const std::string& reason, const SleepLock::Arrival& arrived) {
    const auto bus = systemBus();
    if (!bus) return;
    auto answer = inhibit(*bus, allEvents, reason);
    if (answer.refused) answer = inhibit(*bus, mainEvents, reason);
    if (answer.lock) arrived(std::move(answer.lock));
}

} // namespace

void PosixSleepLock::acquire(Arrival arrived) {
    try {
        std::thread(ask, reason_(), std::move(arrived)).detach();
    } catch (const std::system_error&) {
        // Thread creation failed: the run goes on without a lock.
    }
}

} // namespace oxlade

#else

namespace oxlade {

void PosixSleepLock::acquire(Arrival) {}

} // namespace oxlade

#endif
