// One of a few choices, side by side in a rounded groove; the chosen one is raised. Main
// thread.
#pragma once

#include "interfaces/user_interface.h"

#include <QStringList>
#include <QWidget>

#include <functional>
#include <vector>

class QRadioButton;

namespace oxlade {

class QtSegmentedControl final : public QWidget, public SegmentedControl {
  public:
    /// `chosen` is the index of the segment chosen at first; any other number: none. `action`
    /// is called at each click or arrow key, also if the segment was chosen before.
    QtSegmentedControl(const QStringList& titles, int chosen, const std::function<void()>& action,
                       QWidget* parent);

    int selectedSegment() const override;

  protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    std::vector<QRadioButton*> segments_; ///< children
};

} // namespace oxlade
