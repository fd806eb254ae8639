// The picture panel: a dark frame, a pale screen, and on it the figure in whole
// pixels. It moves only while something runs; at other times no timer exists.
// Main thread.
#pragma once

#include "interfaces/controls.h"
#include "ui/sprites/frame_sequence.h"

#include <QImage>
#include <QWidget>

#include <functional>
#include <memory>
#include <vector>

class QTimer;

namespace oxlade {

class WaitGirlView final : public QWidget, public WaitingFigure {
  public:
    /// Decodes the frames once. `reduceMotion` is asked at each start; empty: never.
    WaitGirlView(std::function<bool()> reduceMotion, QWidget* parent);
    ~WaitGirlView() override;

    void startWaiting() override;
    void stopWaiting() override;

    /// The index is not checked; one that is not there shows no figure.
    void showFrame(std::uint64_t index);
    /// The timer's step.
    void tick();

    std::uint64_t frameIndex() const { return sequence_.frameIndex(); }
    const std::vector<QImage>& frames() const { return frames_; }
    /// Null while nothing is animated.
    const QTimer* timer() const { return timer_.get(); }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    std::function<bool()> reduceMotion_;
    std::vector<QImage> frames_;
    FrameSequence sequence_;
    std::unique_ptr<QTimer> timer_;
};

} // namespace oxlade
