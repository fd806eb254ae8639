// Keeping the computer awake through the system's login manager.
#pragma once

#include "platform/sleep_lock.h"

namespace oxlade {

/// Against sleep, idling, the closing of a lid and a shutdown; against the first two alone
/// where the system grants no more.
///
/// Asks over the system bus, on a thread of its own for each lock: a bus or a
/// service that never answers keeps nobody waiting but that thread, which gives up
/// in the end. Without an answer no lock arrives. Where the system has no login
/// manager (macOS), it never gives one.
class LoginManagerSleepLock final : public SleepLock {
  public:
    void acquire(Arrival arrived) override;
};

} // namespace oxlade
