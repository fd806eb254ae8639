// A scroller that is no more than its thumb.
#pragma once

#include <QScrollBar>

namespace oxlade {

class SlimScrollBar final : public QScrollBar {
  public:
    explicit SlimScrollBar(QWidget* parent);
    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace oxlade
