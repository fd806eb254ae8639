#include "platform/main_queue.h"

#include <QSocketNotifier>

#include <unistd.h>
#include <utility>

namespace oxlade {

namespace {

// Long enough for some hundred short jobs, much shorter than a frame.
constexpr std::chrono::milliseconds slice{4};

} // namespace

std::shared_ptr<PosixMainQueue> PosixMainQueue::make() {
    auto pipe = makePipe();
    return pipe ? std::make_shared<PosixMainQueue>(std::move(*pipe)) : nullptr;
}

void PosixMainQueue::post(Job job) {
    const std::lock_guard lock(mutex_);
    if (closed_) return;
    jobs_.push_back(std::move(job));
    if (jobs_.size() > 1) return;
    // The pipe is empty: this cannot block.
    uninterrupted([this] { return write(pipe_.second.get(), "", 1); });
}

PosixMainQueue::Job PosixMainQueue::take() {
    const std::lock_guard lock(mutex_);
    if (jobs_.empty()) return {};
    Job job = std::move(jobs_.front());
    jobs_.pop_front();
    if (jobs_.empty()) clearPipe();
    return job;
}

// With the lock held, when the last job was taken.
void PosixMainQueue::clearPipe() {
    char byte;
    uninterrupted([&] { return read(pipe_.first.get(), &byte, sizeof byte); });
}

// Pipe and jobs agree before a job runs: the job may run an event loop.
void PosixMainQueue::run(std::chrono::milliseconds forAtMost) {
    const auto end = std::chrono::steady_clock::now() + forAtMost;
    do {
        const Job job = take();
        if (!job) return;
        job();
    } while (std::chrono::steady_clock::now() < end);
}

void PosixMainQueue::close() {
    std::deque<Job> dropped;
    const std::lock_guard lock(mutex_);
    closed_ = true;
    if (!jobs_.empty()) clearPipe();
    dropped.swap(jobs_); // destroyed after the lock: a job may own what posts
}

MainQueuePump::MainQueuePump(std::shared_ptr<PosixMainQueue> queue)
    : queue_(std::move(queue)), notifier_(std::make_unique<QSocketNotifier>(
                                    queue_->readableDescriptor(), QSocketNotifier::Read)) {
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(),
                     [this] { queue_->run(slice); });
}

MainQueuePump::~MainQueuePump() { queue_->close(); }

} // namespace oxlade
