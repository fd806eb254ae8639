#include "platform/login_manager.h"

#ifdef __linux__

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

Descriptor inhibit(sd_bus& bus) {
    sd_bus_message* reply = nullptr;
    const int result =
        sd_bus_call_method(&bus, "org.freedesktop.login1", "/org/freedesktop/login1",
                           "org.freedesktop.login1.Manager", "Inhibit", nullptr, &reply, "ssss",
                           "sleep:idle", "Oxlade", "The sampler is being worked on", "block");
    const Owned<sd_bus_message> owned(reply);
    int descriptor = -1;
    if (result < 0 || sd_bus_message_read(reply, "h", &descriptor) < 0) return {};
    return copyOf(descriptor);
}

void ask(const SleepLock::Arrival& arrived) {
    const auto bus = systemBus();
    if (!bus) return;
    if (auto lock = inhibit(*bus)) arrived(std::move(lock));
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
