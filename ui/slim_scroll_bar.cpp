#include "ui/slim_scroll_bar.h"

#include "ui/palette.h"

#include <QPainter>
#include <QStyle>
#include <QStyleOptionSlider>

namespace oxlade {

SlimScrollBar::SlimScrollBar(QWidget* parent) : QScrollBar{Qt::Vertical, parent} {
    setAttribute(Qt::WA_Hover);
    setAttribute(Qt::WA_OpaquePaintEvent, false);
}

QSize SlimScrollBar::sizeHint() const { return {12, QScrollBar::sizeHint().height()}; }

void SlimScrollBar::paintEvent(QPaintEvent*) {
    QStyleOptionSlider option;
    initStyleOption(&option);
    const QRectF slider =
        style()->subControlRect(QStyle::CC_ScrollBar, &option, QStyle::SC_ScrollBarSlider, this);
    QPainter painter{this};
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const bool awake = isSliderDown() || underMouse();
    painter.setBrush(color(
        awake ? SemanticColor::secondaryLabelColor : SemanticColor::tertiaryLabelColor, palette()));
    const double thickness = 6;
    const QRectF thumb{(width() - thickness) / 2, slider.top(), thickness, slider.height()};
    painter.drawRoundedRect(thumb, thickness / 2, thickness / 2);
}

} // namespace oxlade
