// The rules of the waiting animation without Qt: which frame is shown, and where the
// picture stands in its view. Main thread.
#pragma once

#include "ui/sprites/stored_frames.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace oxlade {

/// Milliseconds from one frame to the next.
inline constexpr int frameInterval = 300;

enum class WaitingStart {
    unchanged, ///< the animation was running already: leave the timer alone
    animated,  ///< start a timer that calls tick every frameInterval
    still,     ///< one picture, no timer
};

/// Which frame is shown, and whether a timer must run:
///
///   idle     frame 0         no timer   at first, and after stopWaiting
///   intro    1, 2, 3, 4      timer      startWaiting
///   loop     5, 4, 5, 4 ...  timer      after the intro
///   still    frame 4         no timer   startWaiting with reduced motion
class FrameSequence final {
  public:
    /// 0 to 5, unless showFrame was given another index.
    std::uint64_t frameIndex() const { return frameIndex_; }

    /// Whether a timer must run.
    bool isRunning() const { return running_; }

    /// Shows a frame; the index is not checked.
    void showFrame(std::uint64_t index) { frameIndex_ = index; }

    /// Does nothing while the animation runs, whatever `reduceMotion` is.
    WaitingStart startWaiting(bool reduceMotion) {
        if (running_) return WaitingStart::unchanged;
        running_ = !reduceMotion;
        showFrame(reduceMotion ? fullBalloonFrame : introFrame);
        return reduceMotion ? WaitingStart::still : WaitingStart::animated;
    }

    /// One step; frame 4 after frame 5 and after any greater index.
    void tick() { showFrame(frameIndex_ > fullBalloonFrame ? fullBalloonFrame : frameIndex_ + 1); }

    /// Shows the idle frame from any state. The caller stops the timer.
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

/// The width of the dark frame around the screen.
inline constexpr double screenInset = 10;

/// Lower left corner and size, in layout points; y upwards. A size may be negative.
struct PictureRect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    friend bool operator==(const PictureRect&, const PictureRect&) = default;
};

struct PicturePlace {
    double scale = 1; ///< a whole number, at least 1
    PictureRect target;

    friend bool operator==(const PicturePlace&, const PicturePlace&) = default;
};

/// The screen within a view's bounds; its size is negative in a view smaller than
/// the frame.
inline PictureRect screenOf(const PictureRect& bounds) {
    return {bounds.x + screenInset, bounds.y + screenInset, bounds.width - 2 * screenInset,
            bounds.height - 2 * screenInset};
}

/// The picture within a view's bounds: scaled by the largest whole number that fits
/// the screen, at least 1, centred, and rounded down to whole points. In a small view
/// it extends over the screen.
inline PicturePlace placePicture(const PictureRect& bounds) {
    const PictureRect screen = screenOf(bounds);
    const double fit = std::min(screen.width / pictureWidth, screen.height / pictureHeight);
    const double scale = std::max(1.0, std::floor(fit));
    const double width = pictureWidth * scale;
    const double height = pictureHeight * scale;
    return {scale,
            {std::floor(bounds.x + bounds.width / 2 - width / 2),
             std::floor(bounds.y + bounds.height / 2 - height / 2), width, height}};
}

/// The device pixels of the picture, counted from the view's lower left corner, with `ratio` of
/// them to a point: the largest whole number of them for each pixel that stays within the
/// target, centred in it. Exactly the target where scale * ratio is a whole number.
inline PictureRect pixelsOf(const PicturePlace& place, double ratio) {
    const double size = std::max(1.0, std::floor(place.scale * ratio));
    const double width = pictureWidth * size;
    const double height = pictureHeight * size;
    const PictureRect& target = place.target;
    return {std::floor((target.x + target.width / 2) * ratio - width / 2),
            std::floor((target.y + target.height / 2) * ratio - height / 2), width, height};
}

} // namespace oxlade
