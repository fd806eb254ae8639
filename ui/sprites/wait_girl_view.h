// The picture panel: a dark frame, a pale screen, and the figure on it, scaled by
// whole numbers without smoothing. Main thread.
#pragma once

#include "interfaces/user_interface.h"
#include "ui/sprites/wait_girl_model.h"

#include <QImage>
#include <QWidget>

#include <functional>
#include <memory>
#include <vector>

class QTimer;

namespace oxlade {

class WaitGirlView final : public QWidget, public WaitingFigure {
  public:
    /// Decodes the frames. `reduceMotion` is called at each start of the animation; if
    /// empty, motion is never reduced.
    WaitGirlView(std::function<bool()> reduceMotion, QWidget* parent);
    ~WaitGirlView() override;

    void startWaiting() override;
    void stopWaiting() override;

    /// The index is not checked; no figure is drawn for one out of range.
    void showFrame(std::uint64_t index);
    /// Called by the timer.
    void tick();

    std::uint64_t frameIndex() const { return sequence_.frameIndex(); }
    const std::vector<QImage>& frames() const { return frames_; }
    /// Null unless the animation runs.
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
