// Sleep locks that a test gives out.
#pragma once

#include "platform/descriptor.h"
#include "platform/sleep_lock.h"

#include <poll.h>
#include <string>
#include <sys/stat.h>
#include <utility>

namespace oxlade {

/// Tells whether anybody has the lock still.
class WatchedLock final {
  public:
    /// To be given away; `watch` knows whether anybody holds it.
    Descriptor lock;

    WatchedLock() {
        if (auto pipe = makePipe()) {
            watch_ = std::move(pipe->first);
            lock = std::move(pipe->second);
        }
    }
    /// Also while it is only on its way to somebody.
    bool isHeld() const { return !isReleasedWithin(0); }
    bool isReleasedWithin(int milliseconds) const {
        pollfd watched{watch_.get(), POLLIN, 0};
        return poll(&watched, 1, milliseconds) != 0;
    }
    /// As /proc names it.
    std::string name() const {
        struct stat facts {};
        fstat(watch_.get(), &facts);
        return "pipe:[" + std::to_string(facts.st_ino) + ']';
    }

  private:
    Descriptor watch_;
};

/// Arrives as soon as it is asked for; never, if there is none.
class LockAtOnce final : public SleepLock {
  public:
    explicit LockAtOnce(Descriptor lock) : lock_{std::move(lock)} {}
    void acquire(Arrival arrived) override {
        if (lock_) arrived(std::move(lock_));
    }

  private:
    Descriptor lock_;
};

} // namespace oxlade
