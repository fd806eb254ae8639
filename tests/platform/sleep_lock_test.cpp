// When a run asks for a sleep lock, and when it releases it.
#include "tests/platform/recorded_run.h"
#include "tests/testing/temporary_folder.h"

#include <future>

namespace oxlade::test {
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
    bool isReleased() const { return latest_.isReleased(); }

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

TEST_P(SleepLockTest, IsHeldFromItsArrivalToTheHelpersEndAlsoWhenAGrandchildHoldsThePipe) {
    auto going = run({"until-gone", folder_.file("lock"), folder_.file("lock of the child")});
    std::promise<bool> wasReleased;
    going.process->setTerminationHandler([&] { wasReleased.set_value(lock_.isReleased()); });
    ASSERT_TRUE(going.startUntil("waiting"));
    lock_.arrive();
    EXPECT_TRUE(lock_.isHeld());
    folder_.remove("lock");
    EXPECT_TRUE(wasReleased.get_future().get()) << "before the exit is reported";
    EXPECT_EQ(lock_.asked, 1);
}

TEST_P(SleepLockTest, MayArriveAfterTheRunAndIsClosedAtOnceThen) {
    auto over = run({"print", "10"});
    EXPECT_EQ(over.finish(), 0);
    lock_.arrive();
    EXPECT_FALSE(lock_.isHeld());
    over.process.reset();
    lock_.arrive();
    EXPECT_TRUE(lock_.isReleased());
}

TEST_P(SleepLockTest, IsNotAskedForWhenTheHelperDoesNotStart) {
    RecordedRun refused("/missing", {}, PosixHelperProcesses(GetParam(), &lock_));
    EXPECT_NE(refused.process->launch(), std::nullopt);
    EXPECT_EQ(lock_.asked, 0);
}

INSTANTIATE_TEST_SUITE_P(, SleepLockTest, testing::Values(OXLADE_KEEPER, ""), [](const auto& test) {
    return std::string(test.param.empty() ? "WithoutKeeper" : "WithKeeper");
});

} // namespace
} // namespace oxlade::test
