// How long the main thread was away from its event loop, at most and usually.
#pragma once

#include <QElapsedTimer>
#include <QTimer>

#include <cstddef>
#include <functional>
#include <vector>

namespace oxlade::benchmarks {

/// A gap is the time between two ticks of a timer of one millisecond: whoever
/// clicks within it waits for its end.
struct Gaps {
    double longest = 0;        ///< ms
    double longestWork = 0;    ///< of it, ms of processor time of the main thread:
                               ///< the rest it was waiting, or others had the processor
    double percentile99_9 = 0; ///< ms
    std::size_t over50 = 0;    ///< longer than 50 ms
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
    std::vector<double> gaps_;
    double longest_ = 0, longestWork_ = 0;
};

} // namespace oxlade::benchmarks
