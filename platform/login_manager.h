// Keeping the computer awake through the system's login manager.
#pragma once

#include "platform/sleep_lock.h"

#include <QObject>

namespace oxlade {

/// Asks over the system bus. Without the bus, the service or an answer, no lock
/// arrives, and nothing waits for it. Main thread, with an event loop; once it is
/// gone, nothing arrives any more. Where the system has no login manager (macOS),
/// it never gives a lock.
class LoginManagerSleepLock final : public SleepLock {
  public:
    void acquire(Arrival arrived) override;

  private:
    void ask(const Arrival& arrived);

    QObject calls_; ///< owns those that wait for their answer
};

} // namespace oxlade
