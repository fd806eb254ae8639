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
    std::uint64_t frameIndex() const { return m_frameIndex; }

    /// Whether a timer has to run.
    bool isRunning() const { return m_running; }

    /// Shows any frame; the index is not checked and the timer not touched.
    void showFrame(std::uint64_t index) { m_frameIndex = index; }

    /// Begins to wait. A running animation goes on as it is; the setting is of
    /// no account then.
    WaitingStart startWaiting(bool reduceMotion) {
        if (m_running) return WaitingStart::unchanged;
        m_running = !reduceMotion;
        showFrame(reduceMotion ? fullBalloonFrame : introFrame);
        return reduceMotion ? WaitingStart::still : WaitingStart::animated;
    }

    /// One step; from the last frame, and from any index beyond it, back to the
    /// full balloon.
    void tick() {
        showFrame(m_frameIndex > fullBalloonFrame ? fullBalloonFrame : m_frameIndex + 1);
    }

    /// Back to the idle frame, whatever was going on. The timer must end.
    void stopWaiting() {
        m_running = false;
        showFrame(idleFrame);
    }

  private:
    static constexpr std::uint64_t idleFrame = 0;
    static constexpr std::uint64_t introFrame = 1;
    static constexpr std::uint64_t fullBalloonFrame = 4;

    std::uint64_t m_frameIndex = idleFrame;
    bool m_running = false;
};

} // namespace oxlade
