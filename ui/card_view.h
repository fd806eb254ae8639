// A softly bordered panel with round corners, on which related controls stand. Main thread.
#pragma once

#include "ui/interface_style.h"
#include "ui/palette.h"

#include <QPainter>
#include <QWidget>

namespace oxlade {

/// Follows the palette. Its background role is the colour that it fills itself with.
class CardView final : public QWidget {
  public:
    explicit CardView(QWidget* parent) : QWidget{parent} { setBackgroundRole(QPalette::Button); }

  protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter{this};
        const QColor fill = palette().color(QPalette::Active, backgroundRole());
        drawPanel(painter, rect(), panelRadius, fill,
                  over(color(SemanticColor::separatorColor, palette()), fill));
    }
};

} // namespace oxlade
