// Keeping the computer awake through the system's login manager.
#pragma once

#include "platform/sleep_lock.h"

namespace oxlade {

/// Asks over the system bus. Without the bus, the service or an answer, no lock
/// arrives, and nothing waits for it. Main thread, with an event loop. Elsewhere
/// than on Linux it never gives a lock.
class LoginManagerSleepLock final : public SleepLock {
  public:
    void acquire(Arrival arrived) override;
};

} // namespace oxlade
