// The sleep lock, from a fake login manager; and a computer without any bus.
#include "platform/desktop_settings.h"
#include "platform/sleep_lock.h"
#include "tests/platform/private_bus.h"
#include "tests/platform/recorded_run.h"
#include "tests/testing/processes.h"

#include <QDBusUnixFileDescriptor>
#include <QVariant>

#include <atomic>
#include <cstdlib>
#include <unistd.h>

namespace oxlade::test {
namespace {

class LoginManagerTest : public testing::Test {
  protected:
    void startLoginManager() {
        manager_ = std::make_unique<FakeService>(QStringLiteral("org.freedesktop.login1"),
                                                 QStringLiteral("/org/freedesktop/login1"),
                                                 [](const QDBusMessage&) { return std::nullopt; });
    }
    bool isAsked(std::size_t times = 1) {
        return eventuallyInEventLoop([&] { return manager_->calls.size() == times; });
    }
    // Answers the latest call with a lock.
    void answer() {
        given_ = WatchedLock();
        QDBusUnixFileDescriptor lock(given_.lock.get()); // a copy
        given_.lock.reset();
        manager_->send(manager_->calls.back().createReply(QVariant::fromValue(lock)));
    }
    void refuse(const char* error) {
        manager_->send(manager_->calls.back().createErrorReply(
            QStringLiteral("org.freedesktop.DBus.Error.") + QLatin1String(error),
            QStringLiteral("no")));
    }
    bool isHeld() const { return given_.isHeld(); }
    bool isReleased() const {
        return eventuallyInEventLoop([this] { return !isHeld(); });
    }

    std::unique_ptr<FakeService> manager_;
    PosixSleepLock lock_{[] { return std::string("the reason"); }};
    WatchedLock given_;
};

TEST_F(LoginManagerTest, IsAskedToPreventSleepIdlingAClosedLidAndAShutdown) {
    startLoginManager();
    lock_.acquire([](Descriptor) {});
    ASSERT_TRUE(isAsked());
    const auto& call = manager_->calls.front();
    EXPECT_EQ(call.interface(), QStringLiteral("org.freedesktop.login1.Manager"));
    EXPECT_EQ(call.member(), QStringLiteral("Inhibit"));
    ASSERT_EQ(call.signature(), QStringLiteral("ssss"));
    EXPECT_EQ(call.arguments().at(0).toString(),
              QStringLiteral("sleep:idle:handle-lid-switch:shutdown"));
    EXPECT_EQ(call.arguments().at(1).toString(), QStringLiteral("Oxlade"));
    EXPECT_EQ(call.arguments().at(2).toString(), QStringLiteral("the reason"));
    EXPECT_EQ(call.arguments().at(3).toString(), QStringLiteral("block"));
}

TEST_F(LoginManagerTest, TheLockArrivesAndIsTheCallersAlone) {
    startLoginManager();
    given_.lock.reset();
    const auto descriptors = countOf(getpid(), "fd");
    Descriptor arrived;
    std::atomic<bool> hasArrived = false;
    lock_.acquire([&](Descriptor lock) {
        arrived = std::move(lock);
        hasArrived = true;
    });
    ASSERT_TRUE(isAsked());
    answer();
    ASSERT_TRUE(eventuallyInEventLoop([&] { return hasArrived.load(); }));
    const auto link = inProc(getpid(), "fd/" + std::to_string(arrived.get()));
    EXPECT_EQ(std::filesystem::read_symlink(link), given_.name());
    arrived.reset();
    EXPECT_TRUE(isReleased());
    EXPECT_TRUE(eventually([&] { return countOf(getpid(), "fd") <= descriptors; }))
        << "the connection is closed";
}

TEST_F(LoginManagerTest, ARefusedLockIsAskedForAgainstFewerEventsOnce) {
    startLoginManager();
    std::atomic<int> arrived = 0;
    for (const bool isRefusedAgain : {true, false}) {
        lock_.acquire([&](Descriptor) { ++arrived; });
        ASSERT_TRUE(isAsked(isRefusedAgain ? 1 : 3));
        refuse(isRefusedAgain ? "AccessDenied" : "InvalidArgs");
        ASSERT_TRUE(isAsked(isRefusedAgain ? 2 : 4));
        EXPECT_EQ(manager_->calls.back().arguments().at(0).toString(),
                  QStringLiteral("sleep:idle"));
        isRefusedAgain ? refuse("AccessDenied") : answer();
    }
    EXPECT_TRUE(eventuallyInEventLoop([&] { return arrived > 0; }));
    EXPECT_EQ(arrived, 1) << "nothing comes of a lock that is refused again";
}

TEST_F(LoginManagerTest, DelaysNothingByItsSilence) {
    setenv("SYSTEMD_BUS_TIMEOUT", "infinity", 1); // whoever waits for the answer hangs
    startLoginManager();
    RecordedRun going(OXLADE_TEST_HELPER, {"print", "10", "2"}, PosixHelperProcesses({}, &lock_));
    EXPECT_EQ(going.finish(), 2);
    EXPECT_TRUE(isAsked());
}

class WithoutABus : public testing::TestWithParam<const char*> {
  protected:
    WithoutABus() {
        setenv("XDG_RUNTIME_DIR", "/nonexistent", 1);
        setenv("XDG_CONFIG_HOME", "/nonexistent", 1);
        for (const char* const bus : {"DBUS_SESSION_BUS_ADDRESS", "DBUS_SYSTEM_BUS_ADDRESS"})
            setenv(bus, GetParam(), 1);
        if (*GetParam() == '\0') unsetenv("DBUS_SESSION_BUS_ADDRESS");
    }
    ~WithoutABus() override {
        for (const char* const bus : {"DBUS_SESSION_BUS_ADDRESS", "DBUS_SYSTEM_BUS_ADDRESS"})
            setenv(bus, BusEnvironment::address.c_str(), 1);
    }
};

TEST_P(WithoutABus, ThereAreNoSettingsAndARunGoesOn) {
    const DesktopSettings desktop;
    PosixSleepLock lock{[] { return std::string("the reason"); }};
    RecordedRun going(OXLADE_TEST_HELPER, {"print", "10", "2"}, PosixHelperProcesses({}, &lock));
    EXPECT_EQ(going.finish(), 2);
    for (int i = 0; i < 20; ++i) QCoreApplication::processEvents();
    EXPECT_FALSE(desktop.shouldReduceMotion());
    EXPECT_EQ(desktop.colorScheme(), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(, WithoutABus, testing::Values("", "unix:path=/nonexistent/bus"),
                         [](const auto& test) {
                             return std::string(*test.param == '\0' ? "Unnamed" : "Gone");
                         });

} // namespace
} // namespace oxlade::test
