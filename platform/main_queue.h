// Jobs from other threads, run on the main thread.
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

/// The jobs, and a pipe that is readable exactly while some are waiting. Independent of an
/// event loop: a thread may hold it, and post to it, after the main thread's loop has ended.
class PosixMainQueue final : public MainQueue {
  public:
    using Job = std::function<void()>;

    /// Null when the system has no pipe left; errno says why.
    static std::shared_ptr<PosixMainQueue> make();
    explicit PosixMainQueue(DescriptorPair pipe) : pipe_(std::move(pipe)) {}

    void post(Job job) override;

    /// Readable while jobs are waiting.
    int readableDescriptor() const { return pipe_.first.get(); }
    /// Main thread. Runs whole jobs, oldest first, until none is left or the time is up; at
    /// least one, if there is one. A job may call it again.
    void run(std::chrono::milliseconds slice);
    /// Any thread. Drops the waiting jobs, and all that are posted from now on.
    void close();

  private:
    Job take();
    void clearPipe();

    std::mutex mutex_;
    std::deque<Job> jobs_;
    bool closed_ = false;
    DescriptorPair pipe_;
};

/// Runs the queue's jobs from the main thread's event loop, a slice at a time, so that
/// painting, clicks and timers are handled between them. Nested event loops run jobs, too.
/// Main thread; destroyed before the application object; its destructor closes the queue.
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
