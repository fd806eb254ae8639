// When a run asks for a sleep lock, and when it lets go of it.
#include "tests/platform/recorded_run.h"
#include "tests/platform/temporary_folder.h"
#include "tests/platform/watched_lock.h"

#include <gtest/gtest.h>

namespace oxlade {
namespace {

// Gives a lock when the test says so.
class SleepLockByHand final : public SleepLock {
  public:
    void acquire(Arrival arrived) override {
        ++asked;
        arrived_ = std::move(arrived);
    }
    void arrive() {
        latest_ = WatchedLock();
        arrived_(std::move(latest_.lock));
    }
    bool isHeld() const { return latest_.isHeld(); }

    int asked = 0;

  private:
    Arrival arrived_;
    WatchedLock latest_;
};

class SleepLockTest : public testing::TestWithParam<std::string> {
  protected:
    RecordedRun run(std::vector<std::string> arguments) {
        return {OXLADE_TEST_HELPER, std::move(arguments), PosixHelperProcesses(GetParam(), &lock_)};
    }

    const TemporaryFolder folder_;
    SleepLockByHand lock_;
};

TEST_P(SleepLockTest, IsHeldFromItsArrivalToTheHelpersEnd) {
    auto going = run({"until-gone", folder_.file("lock")});
    ASSERT_EQ(going.process->launch(), std::nullopt);
    ASSERT_TRUE(going.waitForText("waiting"));
    lock_.arrive();
    EXPECT_TRUE(lock_.isHeld());
    folder_.remove("lock");
    EXPECT_TRUE(going.waitForExit());
    EXPECT_TRUE(eventually([&] { return !lock_.isHeld(); }));
    EXPECT_EQ(lock_.asked, 1);
}

TEST_P(SleepLockTest, IsReleasedAlsoWhenAGrandchildHoldsThePipe) {
    auto over = run({"until-gone", folder_.file("lock"), folder_.file("lock of the child")});
    ASSERT_EQ(over.process->launch(), std::nullopt);
    ASSERT_TRUE(over.waitForText("waiting"));
    lock_.arrive();
    folder_.remove("lock");
    EXPECT_TRUE(over.waitForExit());
    EXPECT_TRUE(eventually([&] { return !lock_.isHeld(); }));
}

TEST_P(SleepLockTest, IsReleasedWhileTheExitIsStillBeingHandled) {
    auto over = run({"until-gone", folder_.file("lock")});
    std::atomic<bool> wasReleased{false};
    std::atomic<bool> isDone{false};
    over.process->setTerminationHandler([&] { // as long as an alert stays open
        wasReleased = eventually([&] { return !lock_.isHeld(); });
        isDone = true;
    });
    ASSERT_EQ(over.process->launch(), std::nullopt);
    ASSERT_TRUE(over.waitForText("waiting"));
    lock_.arrive();
    folder_.remove("lock");
    EXPECT_TRUE(eventually([&] { return isDone.load(); }, 2 * patience));
    EXPECT_TRUE(wasReleased);
}

TEST_P(SleepLockTest, ThatArrivesTooLateIsClosedAtOnce) {
    auto over = run({"print", "10"});
    ASSERT_EQ(over.process->launch(), std::nullopt);
    EXPECT_TRUE(over.waitForExit());
    lock_.arrive();
    EXPECT_FALSE(lock_.isHeld());
    over.process.reset();
    lock_.arrive();
    EXPECT_TRUE(eventually([&] { return !lock_.isHeld(); }));
}

TEST_P(SleepLockTest, IsNotAskedForWhenTheHelperDoesNotStart) {
    RecordedRun refused("/missing", {}, PosixHelperProcesses(GetParam(), &lock_));
    EXPECT_NE(refused.process->launch(), std::nullopt);
    EXPECT_EQ(lock_.asked, 0);
}

TEST_P(SleepLockTest, ThatNeverArrivesIsNotMissed) {
    auto going = run({"print", "10", "2"});
    ASSERT_EQ(going.process->launch(), std::nullopt);
    EXPECT_TRUE(going.waitForExit());
    EXPECT_EQ(going.process->terminationStatus(), 2);
}

INSTANTIATE_TEST_SUITE_P(, SleepLockTest, testing::Values(OXLADE_KEEPER, ""), [](const auto& test) {
    return std::string(test.param.empty() ? "WithoutKeeper" : "WithKeeper");
});

} // namespace
} // namespace oxlade
