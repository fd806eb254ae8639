// A softly bordered panel with round corners, on which related controls stand. Main thread.
#pragma once

#include <QWidget>

namespace oxlade {

/// Follows the palette. Its background role is the colour that it fills itself with.
class CardView final : public QWidget {
  public:
    explicit CardView(QWidget* parent);

  protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace oxlade
