// The views that only show something: the status light, the progress bar, and the
// panels that they stand on. Main thread.
#pragma once

#include "interfaces/controls.h"

#include <QWidget>

namespace oxlade {

/// A filled circle. It takes its colour's value from the palette at each paint.
class StatusLight final : public QWidget, public StatusDot {
  public:
    using QWidget::QWidget;
    void setBackgroundColor(SemanticColor color) override;
    SemanticColor backgroundColor() const { return color_; }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    SemanticColor color_ = SemanticColor::tertiaryLabelColor;
};

/// A slim bar with round ends, vertically centred in its frame; 0 to 100.
class ProgressBar final : public QWidget, public ProgressIndicator {
  public:
    using QWidget::QWidget;
    static constexpr double minimum = 0, maximum = 100;

    void setDoubleValue(double value) override;
    double doubleValue() const { return value_; }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    double value_ = minimum;
};

/// A softly bordered panel.
class CardView final : public QWidget {
  public:
    using QWidget::QWidget;
    static constexpr double cornerRadius = 12;

  protected:
    void paintEvent(QPaintEvent* event) override;
};

/// The rounded ground under the log.
class LogPanel final : public QWidget {
  public:
    using QWidget::QWidget;
    static constexpr double cornerRadius = 12;

  protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace oxlade
