// The waiting animation without its clock: which frame is shown, and whether a
// timer has to run. Main thread.
//
//   idle     frame 0         no timer   at first, and after stopWaiting
//   intro    1, 2, 3, 4      timer      startWaiting
//   loop     5, 4, 5, 4 ...  timer      when the intro is over
//   still    frame 4         no timer   startWaiting with reduced motion
#pragma once

#include <cstdint>

namespace oxlade {

/// Milliseconds from one frame to the next.
inline constexpr int frameInterval = 300;

enum class WaitingStart {
    unchanged, ///< the animation was running already: leave the timer alone
    animated,  ///< start a timer that calls tick every frameInterval
    still,     ///< one picture, no timer
};

class FrameSequence final {
  public:
    /// 0 to 5, unless showFrame was given something else.
    std::uint64_t frameIndex() const { return frameIndex_; }

    /// Whether a timer has to run.
    bool isRunning() const { return running_; }

    /// Shows any frame; the index is not checked and the timer not touched.
    void showFrame(std::uint64_t index) { frameIndex_ = index; }

    /// Begins to wait. A running animation goes on as it is; the setting is of
    /// no account then.
    WaitingStart startWaiting(bool reduceMotion) {
        if (running_) return WaitingStart::unchanged;
        running_ = !reduceMotion;
        showFrame(reduceMotion ? fullBalloonFrame : introFrame);
        return reduceMotion ? WaitingStart::still : WaitingStart::animated;
    }

    /// One step; from the last frame, and from any index beyond it, back to the
    /// full balloon.
    void tick() { showFrame(frameIndex_ > fullBalloonFrame ? fullBalloonFrame : frameIndex_ + 1); }

    /// Back to the idle frame, whatever was going on. The timer must end.
    void stopWaiting() {
        running_ = false;
        showFrame(idleFrame);
    }

  private:
    static constexpr std::uint64_t idleFrame = 0;
    static constexpr std::uint64_t introFrame = 1;
    static constexpr std::uint64_t fullBalloonFrame = 4;

    std::uint64_t frameIndex_ = idleFrame;
    bool running_ = false;
};

} // namespace oxlade
