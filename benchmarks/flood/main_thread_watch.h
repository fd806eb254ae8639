// How long the main thread was away from its event loop, at most and usually.
#pragma once

#include <QElapsedTimer>
#include <QTimer>

#include <cstddef>
#include <functional>
#include <vector>

namespace oxlade::benchmarks {

/// Processor seconds of the calling thread since it started.
double threadSeconds();

/// In milliseconds.
struct Spread {
    double longest = 0, percentile99_9 = 0;
};

/// A gap is the time between two ticks of a timer of one millisecond: a click within it
/// waits for its end.
struct Gaps {
    Spread time;
    Spread work; ///< the main thread's processor time in each gap; for the rest of the gap
                 ///< the thread was waiting, mostly for a processor
    std::size_t count = 0;
};

/// Main thread. Measures from its construction on.
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
