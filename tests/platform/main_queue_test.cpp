// The queue by itself, and with an event loop.
#include "platform/main_queue.h"
#include "tests/testing/eventually.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

#include <cerrno>
#include <chrono>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/resource.h>
#include <thread>
#include <vector>

using namespace std::chrono_literals;

namespace oxlade::test {
namespace {

class MainQueueTest : public testing::Test {
  protected:
    // Runs the event loop until a job ends it.
    void runEventLoop() {
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, [] {
            ADD_FAILURE() << "the deadline has passed";
            QCoreApplication::exit(1);
        });
        timer.start(deadline);
        QCoreApplication::exec();
    }
    static bool isReadable(const PosixMainQueue& queue) {
        pollfd watched{queue.readableDescriptor(), POLLIN, 0};
        return poll(&watched, 1, 0) == 1;
    }

    int argumentCount_ = 1;
    char name_[5] = "test";
    char* arguments_[2] = {name_, nullptr};
    QCoreApplication application_{argumentCount_, arguments_};
    std::shared_ptr<PosixMainQueue> queue_ = PosixMainQueue::make();
};

TEST_F(MainQueueTest, IsReadableExactlyWhileJobsWait) {
    EXPECT_FALSE(isReadable(*queue_));
    queue_->post([] {});
    queue_->post([] {});
    EXPECT_TRUE(isReadable(*queue_));
    queue_->run(0ms);
    EXPECT_TRUE(isReadable(*queue_)) << "a slice of no length runs one job";
    queue_->run(0ms);
    EXPECT_FALSE(isReadable(*queue_));
    queue_->run(0ms);
    for (int i = 0; i < 3; ++i) queue_->post([] {});
    queue_->run(1h);
    EXPECT_FALSE(isReadable(*queue_)) << "a long slice runs all jobs";
    queue_->post([] {});
    queue_->close();
    EXPECT_FALSE(isReadable(*queue_));
}

TEST_F(MainQueueTest, JobsOfEachThreadRunOnTheMainThreadInTheOrderOfPosting) {
    const MainQueuePump pump(queue_);
    constexpr int threads = 4;
    constexpr int jobs = 5000;
    std::vector<std::vector<int>> seen(threads);
    const auto mainThread = std::this_thread::get_id();
    int left = threads * jobs;
    std::vector<std::thread> posters;
    posters.reserve(threads);
    for (int thread = 0; thread < threads; ++thread)
        posters.emplace_back([&, thread] {
            for (int job = 0; job < jobs; ++job)
                queue_->post([&, thread, job] {
                    EXPECT_EQ(std::this_thread::get_id(), mainThread);
                    seen[static_cast<std::size_t>(thread)].push_back(job);
                    if (--left == 0) QCoreApplication::quit();
                });
        });
    runEventLoop();
    for (auto& poster : posters) poster.join();
    for (const auto& order : seen) {
        ASSERT_EQ(order.size(), static_cast<std::size_t>(jobs));
        EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
    }
}

TEST_F(MainQueueTest, AnEventLoopInAJobRunsTheOthersInOrder) {
    const MainQueuePump pump(queue_);
    std::vector<int> order;
    queue_->post([&] {
        order.push_back(0);
        QEventLoop alert;
        queue_->post([&] {
            order.push_back(2);
            QEventLoop nestedAlert;
            queue_->post([&] {
                order.push_back(3);
                nestedAlert.quit();
            });
            nestedAlert.exec();
            order.push_back(4);
            alert.quit();
        });
        alert.exec();
        order.push_back(5);
        QCoreApplication::quit();
    });
    queue_->post([&] { order.push_back(1); });
    runEventLoop();
    EXPECT_EQ(order, (std::vector{0, 1, 2, 3, 4, 5}));
}

TEST_F(MainQueueTest, TimersRunBetweenTheJobsOfAFlood) {
    const MainQueuePump pump(queue_);
    int jobsBetweenTicks = 0;
    int mostJobsBetweenTicks = 0;
    int ticks = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
        mostJobsBetweenTicks = std::max(mostJobsBetweenTicks, jobsBetweenTicks);
        jobsBetweenTicks = 0;
        if (++ticks == 20) QCoreApplication::quit();
    });
    timer.start(1ms);
    // Each job takes a millisecond and posts another.
    std::function<void()> job = [&] {
        ++jobsBetweenTicks;
        const auto end = std::chrono::steady_clock::now() + 1ms;
        while (std::chrono::steady_clock::now() < end) {
        }
        queue_->post(job);
    };
    for (int i = 0; i < 1000; ++i) queue_->post(job);
    runEventLoop();
    EXPECT_EQ(ticks, 20);
    EXPECT_LE(mostJobsBetweenTicks, 100) << "without slices a tick waits for a thousand jobs";
}

TEST_F(MainQueueTest, JobsPostedAfterThePumpIsDestroyedAreDropped) {
    int runs = 0;
    const auto witness = std::make_shared<int>(0);
    {
        const MainQueuePump pump(queue_);
        queue_->post([&runs, witness] { ++runs; });
    }
    EXPECT_EQ(witness.use_count(), 1) << "waiting jobs are destroyed";
    queue_->post([&runs, witness] { ++runs; });
    EXPECT_EQ(witness.use_count(), 1);
    QCoreApplication::processEvents();
    queue_->run(1ms);
    EXPECT_EQ(runs, 0);
}

TEST_F(MainQueueTest, AThreadMayOwnTheQueueLongest) {
    auto pump = std::make_unique<MainQueuePump>(queue_);
    std::thread poster([queue = queue_] {
        for (int i = 0; i < 100000; ++i) queue->post([] {});
    });
    queue_.reset();
    QCoreApplication::processEvents();
    pump.reset();
    poster.join();
}

TEST(MainQueue, IsNotMadeWithoutDescriptors) {
    rlimit before{};
    getrlimit(RLIMIT_NOFILE, &before);
    rlimit none = before;
    none.rlim_cur = 0;
    setrlimit(RLIMIT_NOFILE, &none);
    EXPECT_EQ(PosixMainQueue::make(), nullptr);
    EXPECT_EQ(errno, EMFILE);
    setrlimit(RLIMIT_NOFILE, &before);
}

} // namespace
} // namespace oxlade::test
