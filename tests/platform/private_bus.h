// A message bus for one test program, and fake services on it.
#pragma once

#include "platform/child_process.h"
#include "platform/descriptor.h"
#include "tests/testing/eventually.h"
#include "tests/testing/temporary_folder.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QEventLoop>
#include <QGuiApplication>
#include <QString>

#include <fcntl.h>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <unistd.h>
#include <vector>

namespace oxlade::test {

/// As eventually, running the event loop meanwhile.
template <typename Condition>
bool eventuallyInEventLoop(Condition condition) {
    return eventually(condition,
                      [] { QCoreApplication::processEvents(QEventLoop::AllEvents, 10); });
}

/// A bus without services, as the session's and the system's. A shell ends it when the test
/// program is gone, for whatever reason.
class PrivateBus final {
  public:
    PrivateBus() {
        auto output = makePipe();
        auto input = makePipe();
        const Descriptor nowhere(open("/dev/null", O_RDWR | O_CLOEXEC));
        const int error = spawn(
            {"/bin/sh", {"-c", script, configuration()}, &input->first, &output->second, &nowhere},
            shell_);
        EXPECT_EQ(error, 0);
        lifeline_ = std::move(input->second);
        output->second.reset();
        for (char byte = 0; read(output->first.get(), &byte, 1) == 1 && byte != '\n';)
            address_ += byte;
        EXPECT_FALSE(address_.empty()) << "no dbus-daemon";
        setenv("DBUS_SESSION_BUS_ADDRESS", address_.c_str(), 1);
        setenv("DBUS_SYSTEM_BUS_ADDRESS", address_.c_str(), 1);
    }
    ~PrivateBus() {
        lifeline_.reset();
        eventually([this] { return shell_.reapIfEnded(); });
    }
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;

    const std::string& address() const { return address_; }

  private:
    static constexpr const char* script =
        "exec 3<&0; dbus-daemon --config-file=\"$0\" --print-address --nofork </dev/null 3<&- & "
        "read -r line <&3; kill $!";

    std::string configuration() const {
        return folder_.file(
            "bus.conf", "<busconfig><type>session</type><listen>unix:path=" + folder_.path("bus") +
                            "</listen><policy context=\"default\"><allow send_destination=\"*\"/>"
                            "<allow receive_sender=\"*\"/><allow own=\"*\"/></policy></busconfig>");
    }

    const TemporaryFolder folder_;
    ChildProcess shell_;
    Descriptor lifeline_;
    std::string address_;
};

/// The bus and the application object of the whole test program.
class BusEnvironment final : public testing::Environment {
  public:
    void SetUp() override {
        setenv("QT_QPA_PLATFORM", "offscreen", 1);
        bus_ = std::make_unique<PrivateBus>();
        application_ = std::make_unique<QGuiApplication>(count_, arguments_);
        address = bus_->address();
    }
    void TearDown() override {
        application_.reset();
        bus_.reset();
    }

    static inline std::string address;

  private:
    int count_ = 1;
    char name_[5] = "test";
    char* arguments_[2] = {name_, nullptr};
    std::unique_ptr<PrivateBus> bus_;
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
