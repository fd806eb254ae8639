#include "platform/main_queue.h"

#include <QSocketNotifier>

#include <cerrno>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace oxlade {

namespace {

// Long enough to get through some hundred short jobs, short enough not to be seen.
constexpr std::chrono::milliseconds slice{4};

DescriptorPair pipeOrThrow() {
    auto pipe = makePipe();
    if (!pipe) throw std::system_error(errno, std::system_category());
    return std::move(*pipe);
}

} // namespace

PosixMainQueue::PosixMainQueue() : pipe_(pipeOrThrow()) {}

void PosixMainQueue::post(Job job) {
    const std::lock_guard lock(mutex_);
    if (closed_) return;
    jobs_.push_back(std::move(job));
    if (jobs_.size() > 1) return;
    // The pipe is empty: this cannot block.
    while (write(pipe_.second.get(), "", 1) < 0 && errno == EINTR) {
    }
}

PosixMainQueue::Job PosixMainQueue::take() {
    const std::lock_guard lock(mutex_);
    if (jobs_.empty()) return {};
    Job job = std::move(jobs_.front());
    jobs_.pop_front();
    if (jobs_.empty()) clearPipe();
    return job;
}

// With the lock held, when the last job has gone.
void PosixMainQueue::clearPipe() {
    char byte;
    while (read(pipe_.first.get(), &byte, 1) < 0 && errno == EINTR) {
    }
}

// Pipe and jobs agree before a job runs, so an event loop within it finds the
// queue as it is.
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

MainQueuePump::~MainQueuePump() {
    notifier_.reset();
    queue_->close();
}

} // namespace oxlade
