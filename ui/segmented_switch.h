// One of a few, side by side in a rounded trough: the chosen one is raised.
// Main thread.
#pragma once

#include "interfaces/controls.h"
#include "ui/focus_ring.h"

#include <QRadioButton>
#include <QStringList>
#include <QWidget>

#include <functional>
#include <vector>

namespace oxlade {

class SegmentedSwitch;

/// A radio button to everything but the eye: keys and accessibility are its.
class Segment final : public QRadioButton {
  public:
    Segment(const QString& title, SegmentedSwitch& parent);

  protected:
    bool event(QEvent* event) override;
    bool hitButton(const QPoint& at) const override { return rect().contains(at); }
    void paintEvent(QPaintEvent* event) override;

  private:
    FocusRing focusRing_;
};

class SegmentedSwitch final : public QWidget, public SegmentedControl {
  public:
    /// `chosen` is the index of the segment chosen at first; none for any index
    /// that is not there. `action` is called at each click or arrow key, also for
    /// the segment that is chosen already.
    SegmentedSwitch(const QStringList& titles, int chosen, const std::function<void()>& action,
                    QWidget* parent);

    int selectedSegment() const override;

  protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    std::vector<Segment*> segments_; ///< children
};

} // namespace oxlade
