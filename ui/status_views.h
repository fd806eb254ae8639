// The views that only show a value: the status dot and the progress indicator. Main thread.
#pragma once

#include "interfaces/user_interface.h"

#include <QWidget>

namespace oxlade {

/// A filled circle. Looks its colour up in the palette at each paint.
class QtStatusDot final : public QWidget, public StatusDot {
  public:
    using QWidget::QWidget;
    void setBackgroundColor(SemanticColor color) override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    SemanticColor color_ = SemanticColor::tertiaryLabelColor;
};

/// A bar of 6 points with round ends, vertically centred in its frame. Not a QProgressBar,
/// which counts in integers and repaints the window synchronously at each value.
class QtProgressIndicator final : public QWidget, public ProgressIndicator {
  public:
    using QWidget::QWidget;
    static constexpr double minimum = 0, maximum = 100;

    void setDoubleValue(double value) override;
    double doubleValue() const { return value_; }
    /// Shows the bar in the system's red.
    void setFailed(bool failed) override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    double value_ = minimum;
    bool failed_ = false;
};

} // namespace oxlade
