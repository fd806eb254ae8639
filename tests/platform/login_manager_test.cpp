// The sleep lock, from a stand-in for the login manager.
#include "platform/login_manager.h"
#include "tests/platform/private_bus.h"
#include "tests/platform/recorded_run.h"

#include <QDBusUnixFileDescriptor>
#include <QVariant>

#include <poll.h>

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
    // Answers the latest call with a lock; a pipe tells when nobody holds it any more.
    void answer() {
        auto pipe = makePipe();
        ASSERT_TRUE(pipe);
        watch_ = std::move(pipe->first);
        QDBusUnixFileDescriptor lock(pipe->second.get());
        manager_->send(manager_->calls.back().createReply(QVariant::fromValue(lock)));
    }
    bool isHeld() const {
        pollfd watched{watch_.get(), POLLIN, 0};
        return poll(&watched, 1, 0) == 0;
    }
    RecordedRun run(std::vector<std::string> arguments) {
        return {OXLADE_TEST_HELPER, std::move(arguments),
                PosixHelperProcesses(OXLADE_KEEPER, &lock_)};
    }

    const TemporaryFolder folder_;
    std::unique_ptr<StandIn> manager_;
    LoginManagerSleepLock lock_;
    Descriptor watch_;
};

TEST_F(LoginManagerTest, IsAskedToPreventSleepAndIdling) {
    startLoginManager();
    lock_.acquire([](Descriptor) {});
    ASSERT_TRUE(isAsked());
    const auto& call = manager_->calls.front();
    EXPECT_EQ(call.interface(), QStringLiteral("org.freedesktop.login1.Manager"));
    EXPECT_EQ(call.member(), QStringLiteral("Inhibit"));
    ASSERT_EQ(call.signature(), QStringLiteral("ssss"));
    EXPECT_EQ(call.arguments().at(0).toString(), QStringLiteral("sleep:idle"));
    EXPECT_EQ(call.arguments().at(1).toString(), QStringLiteral("Oxlade"));
    EXPECT_FALSE(call.arguments().at(2).toString().isEmpty());
    EXPECT_EQ(call.arguments().at(3).toString(), QStringLiteral("block"));
}

TEST_F(LoginManagerTest, TheLockArrivesAndIsTheCallersAlone) {
    startLoginManager();
    Descriptor arrived;
    lock_.acquire([&arrived](Descriptor lock) { arrived = std::move(lock); });
    ASSERT_TRUE(isAsked());
    answer();
    ASSERT_TRUE(eventuallyInEventLoop([&] { return static_cast<bool>(arrived); }));
    EXPECT_TRUE(isHeld());
    arrived.reset();
    EXPECT_TRUE(eventuallyInEventLoop([this] { return !isHeld(); }));
}

TEST_F(LoginManagerTest, ARefusalGivesNoLock) {
    startLoginManager();
    bool hasArrived = false;
    lock_.acquire([&hasArrived](Descriptor) { hasArrived = true; });
    ASSERT_TRUE(isAsked());
    const auto& call = manager_->calls.back();
    manager_->send(call.createErrorReply(QStringLiteral("org.freedesktop.DBus.Error.AccessDenied"),
                                         QStringLiteral("no")));
    lock_.acquire([](Descriptor) {}); // comes after the refusal
    ASSERT_TRUE(isAsked(2));
    answer();
    EXPECT_TRUE(eventuallyInEventLoop([this] { return !isHeld(); }));
    EXPECT_FALSE(hasArrived);
}

TEST_F(LoginManagerTest, ARunHasOneLockFromItsArrivalToTheHelpersEnd) {
    startLoginManager();
    auto going = run({"until-gone", folder_.file("lock")});
    ASSERT_EQ(going.process->launch(), std::nullopt);
    ASSERT_TRUE(isAsked());
    answer();
    ASSERT_TRUE(going.waitForText("waiting"));
    for (int i = 0; i < 20; ++i) QCoreApplication::processEvents();
    EXPECT_TRUE(isHeld());
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
    EXPECT_TRUE(manager_->calls.empty()) << "asked from the event loop, not by the launch";
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
        LoginManagerSleepLock brief;
        brief.acquire([](Descriptor) { ADD_FAILURE() << "arrived at nobody"; });
        ASSERT_TRUE(isAsked());
    }
    answer();
    EXPECT_TRUE(eventuallyInEventLoop([this] { return !isHeld(); }));
}

} // namespace
} // namespace oxlade
