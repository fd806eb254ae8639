// The one door from other threads to the main thread.
#pragma once

#include "interfaces/system.h"
#include "platform/descriptor.h"

#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>

class QSocketNotifier;

namespace oxlade {

/// The jobs and a pipe that is readable exactly while some are waiting. Knows
/// nothing of an event loop: a thread may go on holding it, and posting to it,
/// when the main thread has long left.
class PosixMainQueue final : public MainQueue {
  public:
    using Job = std::function<void()>;

    /// Throws std::system_error when the system has no pipe left.
    PosixMainQueue();

    void post(Job job) override;

    /// Readable while jobs are waiting.
    int readableDescriptor() const { return pipe_.first.get(); }
    /// Main thread. Runs whole jobs, oldest first, until none is left or the
    /// time is up; at least one, if there is one. A job may call it again.
    void run(std::chrono::milliseconds slice);
    /// Any thread. Drops what is waiting, and all that is posted from now on.
    void close();

  private:
    Job take();
    void clearPipe();

    std::mutex mutex_;
    std::deque<Job> jobs_;
    bool closed_ = false;
    DescriptorPair pipe_;
};

/// Runs the queue's jobs from the main thread's event loop, a slice at a time, so
/// that a flood of them leaves room for painting, clicks and timers. Nested event
/// loops go on with the jobs. Lives on the main thread, shorter than the
/// application object; closes the queue when it goes.
class MainQueuePump final {
  public:
    explicit MainQueuePump(std::shared_ptr<PosixMainQueue> queue);
    ~MainQueuePump();
    MainQueuePump(const MainQueuePump&) = delete;
    MainQueuePump& operator=(const MainQueuePump&) = delete;

  private:
    std::shared_ptr<PosixMainQueue> queue_;
    std::unique_ptr<QSocketNotifier> notifier_;
};

} // namespace oxlade
