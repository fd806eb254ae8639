// The sleep lock, from a stand-in for the login manager.
#include "platform/sleep_lock.h"
#include "tests/platform/private_bus.h"
#include "tests/platform/processes.h"
#include "tests/platform/recorded_run.h"
#include "tests/platform/watched_lock.h"

#include <QDBusUnixFileDescriptor>
#include <QVariant>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace oxlade {
namespace {

const auto* const environment = testing::AddGlobalTestEnvironment(new BusEnvironment);

class LoginManagerTest : public testing::Test {
  protected:
    void startLoginManager() {
        manager_ = std::make_unique<StandIn>(QStringLiteral("org.freedesktop.login1"),
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
    void refuse() {
        manager_->send(manager_->calls.back().createErrorReply(
            QStringLiteral("org.freedesktop.DBus.Error.AccessDenied"), QStringLiteral("no")));
    }
    bool isHeld() const { return given_.isHeld(); }
    // Not the bus through which it came, and so not on its way only.
    bool isHeldByAKeeper() const {
        const auto keepers = processesOf(OXLADE_KEEPER);
        return std::any_of(keepers.begin(), keepers.end(),
                           [this](pid_t keeper) { return hasOpen(keeper, given_.name()); });
    }
    RecordedRun run(std::vector<std::string> arguments) {
        return {OXLADE_TEST_HELPER, std::move(arguments),
                PosixHelperProcesses(OXLADE_KEEPER, &lock_)};
    }

    const TemporaryFolder folder_;
    std::unique_ptr<StandIn> manager_;
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
    EXPECT_FALSE(call.arguments().at(2).toString().isEmpty());
    EXPECT_EQ(call.arguments().at(3).toString(), QStringLiteral("block"));
}

TEST_F(LoginManagerTest, TheLockArrivesAndIsTheCallersAlone) {
    startLoginManager();
    Descriptor arrived;
    std::atomic<bool> hasArrived = false;
    lock_.acquire([&](Descriptor lock) {
        arrived = std::move(lock);
        hasArrived = true;
    });
    ASSERT_TRUE(isAsked());
    answer();
    ASSERT_TRUE(eventuallyInEventLoop([&] { return hasArrived.load(); }));
    EXPECT_EQ(openAs(getpid(), arrived.get()), given_.name());
    arrived.reset();
    EXPECT_TRUE(eventuallyInEventLoop([this] { return !isHeld(); }));
}

class RefusedLock : public LoginManagerTest {
  protected:
    // Asked for, refused, and asked for once more.
    RefusedLock() {
        startLoginManager();
        lock_.acquire([this](Descriptor) { hasArrived_ = true; });
        EXPECT_TRUE(isAsked());
        refuse();
        EXPECT_TRUE(isAsked(2));
    }
    std::atomic<bool> hasArrived_ = false;
};

TEST_F(RefusedLock, IsAskedForWithFewerReasons) {
    EXPECT_EQ(manager_->calls.back().arguments().at(0).toString(), QStringLiteral("sleep:idle"));
    answer();
    EXPECT_TRUE(eventuallyInEventLoop([this] { return hasArrived_.load(); }));
}

TEST_F(RefusedLock, NeverArrivesWhenItIsRefusedAgain) {
    refuse();
    lock_.acquire([](Descriptor) {}); // comes after the refusals
    ASSERT_TRUE(isAsked(3));
    answer();
    EXPECT_TRUE(eventuallyInEventLoop([this] { return !isHeld(); }));
    EXPECT_FALSE(hasArrived_);
}

TEST_F(LoginManagerTest, ARunHasOneLockFromItsArrivalToTheHelpersEnd) {
    startLoginManager();
    auto going = run({"until-gone", folder_.file("lock")});
    ASSERT_EQ(going.process->launch(), std::nullopt);
    ASSERT_TRUE(isAsked());
    answer();
    ASSERT_TRUE(going.waitForText("waiting"));
    EXPECT_TRUE(eventuallyInEventLoop([this] { return isHeldByAKeeper(); }));
    folder_.remove("lock");
    EXPECT_TRUE(going.waitForExit());
    EXPECT_TRUE(eventuallyInEventLoop([this] { return !isHeld(); }));
    EXPECT_EQ(manager_->calls.size(), 1u);
}

TEST_F(LoginManagerTest, ALockThatComesAfterTheRunIsClosed) {
    startLoginManager();
    auto over = run({"print", "10"});
    ASSERT_EQ(over.process->launch(), std::nullopt);
    ASSERT_TRUE(isAsked());
    EXPECT_TRUE(over.waitForExit());
    answer();
    EXPECT_TRUE(eventuallyInEventLoop([this] { return !isHeld(); }));
}

TEST_F(LoginManagerTest, ASilentOneDelaysNothing) {
    startLoginManager();
    auto going = run({"print", "10", "2"});
    const auto start = std::chrono::steady_clock::now();
    ASSERT_EQ(going.process->launch(), std::nullopt);
    ASSERT_TRUE(isAsked());
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
    EXPECT_TRUE(going.waitForExit());
    EXPECT_EQ(going.process->terminationStatus(), 2);
}

TEST_F(LoginManagerTest, WithoutOneTheRunGoesOn) {
    auto going = run({"print", "10", "2"});
    ASSERT_EQ(going.process->launch(), std::nullopt);
    for (int i = 0; i < 20; ++i) QCoreApplication::processEvents();
    EXPECT_TRUE(going.waitForExit());
    EXPECT_EQ(going.process->terminationStatus(), 2);
}

TEST_F(LoginManagerTest, AnAnswerMayComeWhenNobodyWaitsAnyMore) {
    startLoginManager();
    {
        auto brief = run({"print", "10"});
        ASSERT_EQ(brief.process->launch(), std::nullopt);
        ASSERT_TRUE(isAsked());
        EXPECT_TRUE(brief.waitForExit());
    }
    answer();
    EXPECT_TRUE(eventuallyInEventLoop([this] { return !isHeld(); }));
}

// A bus that takes connections and never says a word.
TEST_F(LoginManagerTest, ASilentBusDelaysNothing) {
    const auto path = folder_.path("silent");
    const Descriptor listening(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    ASSERT_EQ(bind(listening.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address),
              0);
    ASSERT_EQ(listen(listening.get(), 1), 0);
    const std::string before = getenv("DBUS_SYSTEM_BUS_ADDRESS");
    setenv("DBUS_SYSTEM_BUS_ADDRESS", ("unix:path=" + path).c_str(), 1);

    auto going = run({"print", "10", "2"});
    const auto start = std::chrono::steady_clock::now();
    ASSERT_EQ(going.process->launch(), std::nullopt);
    EXPECT_TRUE(going.waitForExit());
    for (int i = 0; i < 20; ++i) QCoreApplication::processEvents();
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
    pollfd asked{listening.get(), POLLIN, 0};
    EXPECT_EQ(poll(&asked, 1, 5000), 1) << "the bus was asked";
    setenv("DBUS_SYSTEM_BUS_ADDRESS", before.c_str(), 1);
}

} // namespace
} // namespace oxlade
