#include "platform/desktop_settings.h"

#include "platform/file_system.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusReply>
#include <QDBusVariant>
#include <QFile>
#include <QObject>
#include <QSettings>
#include <QStandardPaths>
#include <QVariant>

#include <utility>

namespace oxlade {

/// The settings that the desktop portal offers to all programs. Calls the listener with each
/// value asked for once the portal answers, and with every change of any value. Nothing is
/// called for an unknown value or without a portal. Main thread.
class PortalSettings final : public QObject {
    Q_OBJECT

  public:
    using Listener =
        std::function<void(const QString& group, const QString& key, const QVariant& value)>;

    explicit PortalSettings(Listener listener);
    void ask(const QString& group, const QString& key);
    /// Asks and waits for the answer, at most `limit` milliseconds, without running the event
    /// loop. Returns at once where no portal runs.
    void askNow(const QString& group, const QString& key, int limit);

  private:
    Q_SLOT void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);

    Listener listener_;
};

namespace {

const auto service = QLatin1String("org.freedesktop.portal.Desktop");
const auto path = QLatin1String("/org/freedesktop/portal/desktop");
const auto interface = QLatin1String("org.freedesktop.portal.Settings");

QDBusMessage question(const QString& group, const QString& key) {
    return QDBusMessage::createMethodCall(service, path, interface, QStringLiteral("Read"))
           << group << key;
}

// An answer is wrapped twice, a change once.
QVariant unwrapped(QVariant value) {
    while (value.metaType() == QMetaType::fromType<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

const auto appearance = QLatin1String("org.freedesktop.appearance");
const auto reducedMotion = QLatin1String("reduced-motion");
const auto colorSchemeKey = QLatin1String("color-scheme");
const auto gnomeInterface = QLatin1String("org.gnome.desktop.interface");
const auto enableAnimations = QLatin1String("enable-animations");

// Nothing for a value of another type.
std::optional<unsigned> asNumber(const QVariant& value) {
    if (value.typeId() != QMetaType::UInt && value.typeId() != QMetaType::Int) return {};
    return value.toUInt();
}

std::optional<bool> asTruth(const QVariant& value) {
    if (value.typeId() != QMetaType::Bool) return {};
    return value.toBool();
}

bool kdeAnimatesNothing() {
    const auto file =
        QStandardPaths::locate(QStandardPaths::GenericConfigLocation, QStringLiteral("kdeglobals"));
    // QSettings would block on a pipe.
    if (!isRegularFile(QFile::encodeName(file).toStdString())) return false;
    const QSettings settings(file, QSettings::IniFormat);
    bool isNumber = false;
    const double factor =
        settings.value(QStringLiteral("KDE/AnimationDurationFactor")).toDouble(&isNumber);
    return isNumber && factor <= 0;
}

} // namespace

bool hasSessionBus() {
    return qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS") ||
           QFile::exists(qEnvironmentVariable("XDG_RUNTIME_DIR") + QLatin1String("/bus"));
}

PortalSettings::PortalSettings(Listener listener) : listener_(std::move(listener)) {
    if (!hasSessionBus()) return;
    // The connection below fails without it.
    qRegisterMetaType<QDBusVariant>();
    const bool connected = QDBusConnection::sessionBus().connect(
        service, path, interface, QStringLiteral("SettingChanged"), this,
        SLOT(settingChanged(QString, QString, QDBusVariant)));
    if (!connected && QDBusConnection::sessionBus().isConnected())
        qWarning("Cannot follow changes of the desktop's settings.");
}

void PortalSettings::ask(const QString& group, const QString& key) {
    if (!hasSessionBus() || !QDBusConnection::sessionBus().isConnected()) return;
    auto* watcher = new QDBusPendingCallWatcher(
        QDBusConnection::sessionBus().asyncCall(question(group, key)), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, group, key] {
        const QDBusPendingReply<QDBusVariant> reply = *watcher;
        watcher->deleteLater();
        if (!reply.isError()) settingChanged(group, key, reply.value());
    });
}

void PortalSettings::askNow(const QString& group, const QString& key, int limit) {
    if (!hasSessionBus()) return;
    auto call = question(group, key);
    call.setAutoStartService(false);
    const QDBusReply<QDBusVariant> reply =
        QDBusConnection::sessionBus().call(call, QDBus::Block, limit);
    if (reply.isValid()) settingChanged(group, key, reply.value());
}

void PortalSettings::settingChanged(const QString& group, const QString& key,
                                    const QDBusVariant& value) {
    listener_(group, key, unwrapped(value.variant()));
}

class DesktopSettings::Source final {
  public:
    Source() : portal_([this](const auto&... setting) { take(setting...); }) {
        portal_.ask(appearance, colorSchemeKey);
        portal_.ask(appearance, reducedMotion);
        portal_.ask(gnomeInterface, enableAnimations);
    }

    bool shouldReduceMotion() const {
        if (reducedMotion_) return *reducedMotion_ == 1;
        if (animations_) return !*animations_;
        return kdeAnimatesNothing();
    }

    std::optional<ColorScheme> colorScheme() const {
        if (scheme_ == 1u) return ColorScheme::dark;
        if (scheme_ == 2u) return ColorScheme::light;
        return std::nullopt;
    }

    void awaitColorScheme(int limit) { portal_.askNow(appearance, colorSchemeKey, limit); }

    std::function<void()> onChange;

  private:
    void take(const QString& group, const QString& key, const QVariant& value) {
        const auto before = known();
        if (group == appearance && key == reducedMotion) reducedMotion_ = asNumber(value);
        if (group == appearance && key == colorSchemeKey) scheme_ = asNumber(value);
        if (group == gnomeInterface && key == enableAnimations) animations_ = asTruth(value);
        // A copy: the handler may replace it.
        if (const auto handler = onChange; handler && known() != before) handler();
    }

    std::pair<bool, std::optional<ColorScheme>> known() const {
        return {shouldReduceMotion(), colorScheme()};
    }

    std::optional<unsigned> reducedMotion_;
    std::optional<bool> animations_;
    std::optional<unsigned> scheme_;
    PortalSettings portal_;
};

DesktopSettings::DesktopSettings() : source_(std::make_unique<Source>()) {}
DesktopSettings::~DesktopSettings() = default;

bool DesktopSettings::shouldReduceMotion() const { return source_->shouldReduceMotion(); }

std::optional<ColorScheme> DesktopSettings::colorScheme() const { return source_->colorScheme(); }

void DesktopSettings::awaitColorScheme(int limit) { source_->awaitColorScheme(limit); }

void DesktopSettings::setChangeHandler(std::function<void()> handler) {
    source_->onChange = std::move(handler);
}

} // namespace oxlade

#include "platform/desktop_settings.moc"
