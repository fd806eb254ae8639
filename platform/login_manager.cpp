#include "platform/login_manager.h"

#ifdef __linux__

#include <cerrno>
#include <fcntl.h>
#include <memory>
#include <system_error>
#include <systemd/sd-bus.h>
#include <thread>

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

// The message owns its descriptor and closes it with itself.
Descriptor copyOf(int descriptor) { return Descriptor(fcntl(descriptor, F_DUPFD_CLOEXEC, 3)); }

// A closed lid is a reason of its own, which the others do not cover.
constexpr const char* everyReason = "sleep:idle:handle-lid-switch:shutdown";
constexpr const char* mainReasons = "sleep:idle";

struct Answer {
    Descriptor lock;
    bool refused = false; // not the same as silent
};

Answer inhibit(sd_bus& bus, const char* reasons) {
    sd_bus_message* reply = nullptr;
    const int result =
        sd_bus_call_method(&bus, "org.freedesktop.login1", "/org/freedesktop/login1",
                           "org.freedesktop.login1.Manager", "Inhibit", nullptr, &reply, "ssss",
                           reasons, "Oxlade", "The sampler is being worked on", "block");
    const Owned<sd_bus_message> owned(reply);
    if (result < 0) return {{}, result == -EACCES || result == -EINVAL};
    int descriptor = -1;
    if (sd_bus_message_read(reply, "h", &descriptor) < 0) return {};
    return {copyOf(descriptor)};
}

void ask(const SleepLock::Arrival& arrived) {
    const auto bus = systemBus();
    if (!bus) return;
    auto answer = inhibit(*bus, everyReason);
    if (answer.refused) answer = inhibit(*bus, mainReasons);
    if (answer.lock) arrived(std::move(answer.lock));
}

} // namespace

void LoginManagerSleepLock::acquire(Arrival arrived) {
    try {
        std::thread(ask, std::move(arrived)).detach();
    } catch (const std::system_error&) {
        // No thread to be had: no lock, and the run goes on.
    }
}

} // namespace oxlade

#else

namespace oxlade {

void LoginManagerSleepLock::acquire(Arrival) {}

} // namespace oxlade

#endif
