#include "ui/status_views.h"

#include "ui/control_drawing.h"
#include "ui/palette.h"

#include <QAccessible>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace oxlade {

void StatusLight::setBackgroundColor(SemanticColor color) {
    if (color == color_) return;
    color_ = color;
    update();
}

void StatusLight::paintEvent(QPaintEvent*) {
    QPainter painter{this};
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color(color_, palette()));
    painter.drawEllipse(rect());
}

void ProgressBar::setDoubleValue(double value) {
    const double shown = std::isnan(value) ? minimum : std::clamp(value, minimum, maximum);
    if (shown == value_) return;
    const bool heard = std::floor(shown) != std::floor(value_);
    value_ = shown;
    update();
    if (!heard) return;
    QAccessibleValueChangeEvent event{this, value_};
    QAccessible::updateAccessibility(&event);
}

void ProgressBar::paintEvent(QPaintEvent*) {
    constexpr double thickness = 6;
    QPainter painter{this};
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const BarColors colors = barColors(palette());
    const QRectF trough{0, (height() - thickness) / 2, double(width()), thickness};
    QPainterPath shape;
    shape.addRoundedRect(trough, thickness / 2, thickness / 2);
    painter.fillPath(shape, colors.trough);
    if (value_ <= minimum) return;
    QPainterPath done;
    const double length = std::max(thickness, trough.width() * value_ / maximum);
    done.addRoundedRect(QRectF{trough.topLeft(), QSizeF{length, thickness}}, thickness / 2,
                        thickness / 2);
    painter.fillPath(done, colors.done);
}

void CardView::paintEvent(QPaintEvent*) {
    QPainter painter{this};
    const QColor fill = cardColor(schemeOf(palette()));
    drawPanel(painter, rect(), cornerRadius, fill,
              over(color(SemanticColor::separatorColor, palette()), fill));
}

void LogPanel::paintEvent(QPaintEvent*) {
    QPainter painter{this};
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(logColor(schemeOf(palette())));
    painter.drawRoundedRect(rect(), cornerRadius, cornerRadius);
}

} // namespace oxlade
