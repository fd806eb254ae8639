#include "platform/portal_settings.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QFile>

#include <utility>

namespace oxlade {

namespace {

const auto service = QLatin1String("org.freedesktop.portal.Desktop");
const auto path = QLatin1String("/org/freedesktop/portal/desktop");
const auto interface = QLatin1String("org.freedesktop.portal.Settings");

// Asking for a bus where there is none would start one.
bool hasSessionBus() {
    return qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS") ||
           QFile::exists(qEnvironmentVariable("XDG_RUNTIME_DIR") + QLatin1String("/bus"));
}

// Answers come in two wrappings, changes in one.
QVariant unwrapped(QVariant value) {
    while (value.metaType() == QMetaType::fromType<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

} // namespace

PortalSettings::PortalSettings(Listener listener) : listener_(std::move(listener)) {
    if (!hasSessionBus()) return;
    // Without this the connection below is refused.
    qRegisterMetaType<QDBusVariant>();
    const bool connected = QDBusConnection::sessionBus().connect(
        service, path, interface, QStringLiteral("SettingChanged"), this,
        SLOT(settingChanged(QString, QString, QDBusVariant)));
    if (!connected && QDBusConnection::sessionBus().isConnected())
        qWarning("Changes of the desktop's settings will not be seen.");
}

void PortalSettings::ask(const QString& group, const QString& key) {
    if (!hasSessionBus() || !QDBusConnection::sessionBus().isConnected()) return;
    auto call = QDBusMessage::createMethodCall(service, path, interface, QStringLiteral("Read"));
    call << group << key;
    auto* watcher =
        new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, group, key] {
        const QDBusPendingReply<QDBusVariant> reply = *watcher;
        watcher->deleteLater();
        if (!reply.isError()) settingChanged(group, key, reply.value());
    });
}

void PortalSettings::settingChanged(const QString& group, const QString& key,
                                    const QDBusVariant& value) {
    listener_(group, key, unwrapped(value.variant()));
}

} // namespace oxlade
