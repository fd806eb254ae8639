#include "platform/desktop_session.h"

#ifdef __linux__

#include "platform/desktop_settings.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QGuiApplication>
#include <QSessionManager>
#include <QWindow>

#include <utility>

namespace oxlade {
namespace {

constexpr unsigned logOut = 1; // the flag's value for the portal and for GNOME's session manager

QDBusMessage portalCall(const QString& path, const char* interface, const char* method) {
    return QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.portal.Desktop"), path,
                                          QLatin1String{interface}, QLatin1String{method});
}

QDBusMessage gnomeCall(const char* method) {
    const auto name = QStringLiteral("org.gnome.SessionManager");
    auto call = QDBusMessage::createMethodCall(name, QStringLiteral("/org/gnome/SessionManager"),
                                               name, QLatin1String{method});
    call.setAutoStartService(false);
    return call;
}

/// The request not to end the session without asking. Deletes itself: when it is released before
/// it is granted, it must wait for the answer to give it back.
class Inhibition final : public QObject {
  public:
    /// A child of the application, in case that ends first.
    Inhibition(const QString& desktopId, const QString& reason) : QObject{qApp} {
        auto call = portalCall(QStringLiteral("/org/freedesktop/portal/desktop"),
                               "org.freedesktop.portal.Inhibit", "Inhibit");
        call << QString{} << logOut << QVariantMap{{QStringLiteral("reason"), reason}};
        ask(call, [this, desktopId, reason](const QDBusPendingCall& answer) {
            const QDBusPendingReply<QDBusObjectPath> reply = answer;
            if (reply.isError()) return askGnome(desktopId, reason);
            granted(portalCall(reply.value().path(), "org.freedesktop.portal.Request", "Close"));
        });
    }

    void release() {
        released_ = true;
        if (!isPending_) end();
    }

  private:
    void askGnome(const QString& desktopId, const QString& reason) {
        ask(gnomeCall("Inhibit") << desktopId << 0u << reason << logOut,
            [this](const QDBusPendingCall& answer) {
                const QDBusPendingReply<unsigned> reply = answer;
                if (reply.isError()) return granted({});
                granted(gnomeCall("Uninhibit") << reply.value());
            });
    }
    template <class Handler>
    void ask(const QDBusMessage& call, Handler handler) {
        isPending_ = true;
        auto* watcher =
            new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call), this);
        connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, handler] {
            watcher->deleteLater();
            isPending_ = false;
            handler(*watcher);
        });
    }
    /// `giveBack` is the call that ends it; none if there is nothing to end.
    void granted(QDBusMessage giveBack) {
        giveBack_ = std::move(giveBack);
        if (released_) end();
    }
    void end() {
        if (giveBack_.type() == QDBusMessage::MethodCallMessage)
            QDBusConnection::sessionBus().send(giveBack_);
        deleteLater();
    }

    QDBusMessage giveBack_;
    bool isPending_ = false;
    bool released_ = false;
};

/// Cancels the log-out, and shows the user by which program.
void refuseLogOut(QSessionManager& manager) {
    if (!manager.allowsInteraction()) return;
    manager.cancel();
    for (QWindow* window : QGuiApplication::topLevelWindows())
        if (window->isVisible()) window->alert(0);
}

} // namespace

class QtDesktopSession::Run final : public QObject {
  public:
    Run(const QString& desktopId, const QString& reason) : desktopId_{desktopId} {
        if (hasSessionBus()) inhibition_ = new Inhibition{desktopId, reason};
        // Directly: the session manager waits for the signal's return.
        connect(qApp, &QGuiApplication::commitDataRequest, this, refuseLogOut,
                Qt::DirectConnection);
    }
    ~Run() override {
        if (inhibition_ != nullptr) inhibition_->release();
        if (shown_ >= 0) tellLauncher(false);
    }

    void showProgress(double percent) {
        const int whole = static_cast<int>(percent);
        if (whole == shown_) return;
        shown_ = whole;
        tellLauncher(true);
    }

  private:
    void tellLauncher(bool visible) const {
        if (!hasSessionBus()) return;
        auto update = QDBusMessage::createSignal(
            QStringLiteral("/io/oxlade/launcher"),
            QStringLiteral("com.canonical.Unity.LauncherEntry"), QStringLiteral("Update"));
        update << QStringLiteral("application://%1.desktop").arg(desktopId_)
               << QVariantMap{{QStringLiteral("progress"), shown_ / 100.0},
                              {QStringLiteral("progress-visible"), visible}};
        QDBusConnection::sessionBus().send(update);
    }

    const QString desktopId_;
    Inhibition* inhibition_ = nullptr; ///< deletes itself after release()
    int shown_ = -1;                   ///< per cent; -1: nothing
};

QtDesktopSession::QtDesktopSession(const char* desktopId)
    : desktopId_{QString::fromUtf8(desktopId)} {}
QtDesktopSession::~QtDesktopSession() = default;

void QtDesktopSession::beginRun(std::string_view reason) {
    const auto text = QString::fromUtf8(reason.data(), static_cast<qsizetype>(reason.size()));
    run_ = std::make_unique<Run>(desktopId_, text);
}

void QtDesktopSession::showProgress(double percent) {
    if (run_) run_->showProgress(percent);
}

void QtDesktopSession::endRun() { run_.reset(); }

} // namespace oxlade

#else

namespace oxlade {

class QtDesktopSession::Run final {};

QtDesktopSession::QtDesktopSession(const char* desktopId)
    : desktopId_{QString::fromUtf8(desktopId)} {}
QtDesktopSession::~QtDesktopSession() = default;
void QtDesktopSession::beginRun(std::string_view) {}
void QtDesktopSession::showProgress(double) {}
void QtDesktopSession::endRun() {}

} // namespace oxlade

#endif
