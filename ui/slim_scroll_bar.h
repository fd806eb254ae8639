// A scroller that is no more than its thumb. Main thread.
#pragma once

#include <QScrollBar>

namespace oxlade {

/// Without arrow buttons: the thumb goes from one end to the other. Nothing is to be
/// seen where there is nothing to scroll.
class SlimScrollBar final : public QScrollBar {
  public:
    explicit SlimScrollBar(QWidget* parent);
    QSize sizeHint() const override;
    /// The thumb as it is drawn.
    QRect thumb() const;

  protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace oxlade
