// How long the main thread was away from its event loop, at most and usually.
#pragma once

#include <QElapsedTimer>
#include <QTimer>

#include <cstddef>
#include <functional>
#include <vector>

namespace oxlade::benchmarks {

/// In milliseconds.
struct Spread {
    double longest = 0, percentile99_9 = 0;
};

/// A gap is the time between two ticks of a timer of one millisecond: whoever
/// clicks within it waits for its end.
struct Gaps {
    Spread time;
    Spread work; ///< the main thread's processor time in each: the rest of a gap it
                 ///< was waiting, mostly for a processor that others had
    std::size_t count = 0;
};

/// Main thread; measures from its making on.
class MainThreadWatch final {
  public:
    /// `look` is called at each tick.
    explicit MainThreadWatch(std::function<void()> look);
    Gaps gaps() const;

  private:
    void tick();

    std::function<void()> look_;
    QTimer timer_;
    QElapsedTimer sinceTick_;
    double workAtTick_ = 0;
    std::vector<double> times_, works_;
};

} // namespace oxlade::benchmarks
