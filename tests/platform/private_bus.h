// The message bus of a test program, and fake services on it.
#pragma once

#include "tests/testing/eventually.h"
#include "tests/testing/temporary_folder.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QEventLoop>
#include <QGuiApplication>
#include <QString>

#include <cstdlib>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace oxlade::test {

/// As eventually, running the event loop meanwhile.
template <typename Condition>
bool eventuallyInEventLoop(Condition condition) {
    return eventually(condition,
                      [] { QCoreApplication::processEvents(QEventLoop::AllEvents, 10); });
}

/// The application object of the whole test program, which dbus-run-session starts: the bus is
/// the session's and the system's.
class BusEnvironment final : public testing::Environment {
  public:
    void SetUp() override {
        setenv("QT_QPA_PLATFORM", "offscreen", 1);
        const char* const bus = std::getenv("DBUS_SESSION_BUS_ADDRESS");
        ASSERT_NE(bus, nullptr) << "to be started by dbus-run-session";
        address = bus;
        setenv("DBUS_SYSTEM_BUS_ADDRESS", address.c_str(), 1);
        application_ = std::make_unique<QGuiApplication>(count_, arguments_);
    }
    void TearDown() override { application_.reset(); }

    static inline std::string address;

  private:
    int count_ = 1;
    char name_[5] = "test";
    char* arguments_[2] = {name_, nullptr};
    std::unique_ptr<QGuiApplication> application_;
};

/// A service with one object. `answer` gives the reply to a call, or nothing.
class FakeService final : public QDBusVirtualObject {
  public:
    using Answer = std::function<std::optional<QDBusMessage>(const QDBusMessage& call)>;

    FakeService(const QString& service, const QString& path, Answer answer)
        : bus_(QDBusConnection::connectToBus(QString::fromStdString(BusEnvironment::address),
                                             QStringLiteral("fake-service"))),
          answer_(std::move(answer)) {
        EXPECT_TRUE(bus_.registerVirtualObject(path, this, QDBusConnection::SubPath));
        EXPECT_TRUE(bus_.registerService(service));
    }
    ~FakeService() override { QDBusConnection::disconnectFromBus(QStringLiteral("fake-service")); }

    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& call, const QDBusConnection&) override {
        calls.push_back(call);
        if (const auto reply = answer_(call)) send(*reply);
        return true;
    }
    void send(const QDBusMessage& message) { bus_.send(message); }

    std::vector<QDBusMessage> calls;

  private:
    QDBusConnection bus_;
    Answer answer_;
};

} // namespace oxlade::test
