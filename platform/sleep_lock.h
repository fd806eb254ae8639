// Keeping the computer awake, as seen by whoever needs it awake.
#pragma once

#include "platform/descriptor.h"

#include <functional>

namespace oxlade {

class SleepLock {
  public:
    /// Gets a descriptor that keeps the computer awake for as long as it is open
    /// anywhere.
    using Arrival = std::function<void(Descriptor lock)>;

    virtual ~SleepLock() = default;
    /// Main thread; asks and returns at once. `arrived` is called at most once, on
    /// any thread, also when the asker is long gone; never when there is no lock to
    /// be had.
    virtual void acquire(Arrival arrived) = 0;
};

} // namespace oxlade
