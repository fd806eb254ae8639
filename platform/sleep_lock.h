// Keeping the computer awake.
#pragma once

#include "platform/descriptor.h"

#include <functional>
#include <string>

namespace oxlade {

class SleepLock {
  public:
    /// Takes a descriptor that keeps the computer awake for as long as a copy of it is open.
    using Arrival = std::function<void(Descriptor lock)>;

    virtual ~SleepLock() = default;
    /// Main thread; asks and returns at once. `arrived` is called at most once, on any
    /// thread, at any later time; never when no lock is granted.
    virtual void acquire(Arrival arrived) = 0;
};

/// The login manager's lock against sleep, idling, the closing of the lid and shutdown;
/// against the first two alone where it grants no more.
///
/// Asks over the system bus, on a thread of its own for each lock. That thread gives up
/// when the bus or the service does not answer within the bus library's time-out. Where
/// there is no login manager (macOS), no lock ever arrives.
class PosixSleepLock final : public SleepLock {
  public:
    /// `reason` is called by acquire and gives the text that the system shows to the user.
    explicit PosixSleepLock(std::function<std::string()> reason) : reason_(std::move(reason)) {}
    void acquire(Arrival arrived) override;

  private:
    const std::function<std::string()> reason_;
};

} // namespace oxlade
