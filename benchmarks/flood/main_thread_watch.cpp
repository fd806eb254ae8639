#include "benchmarks/flood/main_thread_watch.h"

#include <algorithm>
#include <ctime>
#include <utility>

namespace oxlade::benchmarks {
namespace {

double workOfThread() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6;
}

} // namespace

MainThreadWatch::MainThreadWatch(std::function<void()> look) : look_{std::move(look)} {
    gaps_.reserve(1'000'000);
    timer_.setTimerType(Qt::PreciseTimer);
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { tick(); });
    workAtTick_ = workOfThread();
    sinceTick_.start();
    timer_.start(1);
}

void MainThreadWatch::tick() {
    const double gap = double(sinceTick_.nsecsElapsed()) / 1e6, work = workOfThread();
    gaps_.push_back(gap);
    if (gap > longest_) {
        longest_ = gap;
        longestWork_ = work - workAtTick_;
    }
    sinceTick_.start();
    workAtTick_ = work;
    look_();
}

Gaps MainThreadWatch::gaps() const {
    if (gaps_.empty()) return {};
    auto sorted = gaps_;
    std::sort(sorted.begin(), sorted.end());
    const auto over50 = sorted.end() - std::upper_bound(sorted.begin(), sorted.end(), 50.0);
    return {longest_, longestWork_, sorted[(sorted.size() - 1) * 999 / 1000],
            static_cast<std::size_t>(over50), sorted.size()};
}

} // namespace oxlade::benchmarks
