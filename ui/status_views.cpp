#include "ui/status_views.h"

#include "ui/palette.h"

#include <QAccessible>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace oxlade {

void QtStatusDot::setBackgroundColor(SemanticColor color) {
    if (color == color_) return;
    color_ = color;
    update();
}

void QtStatusDot::paintEvent(QPaintEvent*) {
    QPainter painter{this};
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color(color_, palette()));
    painter.drawEllipse(rect());
}

void QtProgressIndicator::setDoubleValue(double value) {
    const double shown = std::isnan(value) ? minimum : std::clamp(value, minimum, maximum);
    if (shown == value_) return;
    const bool announced = std::floor(shown) != std::floor(value_);
    value_ = shown;
    update();
    if (!announced) return;
    QAccessibleValueChangeEvent event{this, value_};
    QAccessible::updateAccessibility(&event);
}

void QtProgressIndicator::setFailed(bool failed) {
    if (failed == failed_) return;
    failed_ = failed;
    update();
}

void QtProgressIndicator::paintEvent(QPaintEvent*) {
    constexpr double thickness = 6;
    QPainter painter{this};
    painter.setRenderHint(QPainter::Antialiasing);
    const auto fillBar = [&](double length, const QColor& fill) {
        QPainterPath shape;
        shape.addRoundedRect(0, (height() - thickness) / 2, length, thickness, thickness / 2,
                             thickness / 2);
        painter.fillPath(shape, fill);
    };
    fillBar(width(), progressGrooveColor(palette(), failed_));
    const QColor done =
        failed_ ? color(SemanticColor::systemRedColor, palette()) : markColor(palette());
    if (value_ > minimum) fillBar(std::max(thickness, width() * value_ / maximum), done);
}

} // namespace oxlade
