#include "benchmarks/flood/main_thread_watch.h"

#include <algorithm>
#include <ctime>
#include <utility>

namespace oxlade::benchmarks {
namespace {

Spread spreadOf(std::vector<double> values) {
    if (values.empty()) return {};
    std::sort(values.begin(), values.end());
    return {values.back(), values[(values.size() - 1) * 999 / 1000]};
}

} // namespace

double threadSeconds() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

MainThreadWatch::MainThreadWatch(std::function<void()> look) : look_{std::move(look)} {
    times_.reserve(100'000);
    works_.reserve(100'000);
    timer_.setTimerType(Qt::PreciseTimer);
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { tick(); });
    workAtTick_ = threadSeconds();
    sinceTick_.start();
    timer_.start(1);
}

void MainThreadWatch::tick() {
    const double work = threadSeconds();
    times_.push_back(static_cast<double>(sinceTick_.nsecsElapsed()) / 1e6);
    works_.push_back((work - workAtTick_) * 1e3);
    sinceTick_.start();
    workAtTick_ = work;
    look_();
}

Gaps MainThreadWatch::gaps() const { return {spreadOf(times_), spreadOf(works_), times_.size()}; }

} // namespace oxlade::benchmarks
