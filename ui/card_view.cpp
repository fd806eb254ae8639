#include "ui/card_view.h"

#include "ui/interface_style.h"
#include "ui/palette.h"

#include <QPainter>

namespace oxlade {

CardView::CardView(QWidget* parent) : QWidget{parent} { setBackgroundRole(QPalette::Button); }

void CardView::paintEvent(QPaintEvent*) {
    QPainter painter{this};
    const QColor fill = palette().color(QPalette::Active, backgroundRole());
    drawPanel(painter, rect(), panelRadius, fill,
              over(color(SemanticColor::separatorColor, palette()), fill));
}

} // namespace oxlade
