#include "platform/login_manager.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusUnixFileDescriptor>

#include <fcntl.h>

namespace oxlade {

namespace {

QDBusMessage inhibitCall() {
    auto call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.login1"), QStringLiteral("/org/freedesktop/login1"),
        QStringLiteral("org.freedesktop.login1.Manager"), QStringLiteral("Inhibit"));
    call << QStringLiteral("sleep:idle") << QStringLiteral("Oxlade")
         << QStringLiteral("The sampler is being worked on") << QStringLiteral("block");
    return call;
}

// The message owns its descriptor and closes it with itself.
Descriptor copyOf(const QDBusUnixFileDescriptor& descriptor) {
    return Descriptor(fcntl(descriptor.fileDescriptor(), F_DUPFD_CLOEXEC, 3));
}

} // namespace

// From the event loop: connecting to the bus takes a moment, which is the caller's.
void LoginManagerSleepLock::acquire(Arrival arrived) {
    QMetaObject::invokeMethod(
        &calls_, [this, arrived = std::move(arrived)] { ask(arrived); }, Qt::QueuedConnection);
}

void LoginManagerSleepLock::ask(const Arrival& arrived) {
    const auto bus = QDBusConnection::systemBus();
    if (!bus.isConnected()) return;
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(inhibitCall()), &calls_);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher, [watcher, arrived] {
        const QDBusPendingReply<QDBusUnixFileDescriptor> reply = *watcher;
        watcher->deleteLater();
        if (reply.isError()) return;
        if (auto lock = copyOf(reply.value())) arrived(std::move(lock));
    });
}

} // namespace oxlade
