#include "ui/alert_icon.h"

#include "ui/palette.h"

#include <QPainter>
#include <QPainterPath>

namespace oxlade {
namespace {

constexpr double middle = alertIconSide / 2.0;

QColor iconColor(AlertStyle style) {
    switch (style) {
    case AlertStyle::informational:
        return accentColor(ColorScheme::light);
    case AlertStyle::warning:
        return color(SemanticColor::systemOrangeColor, ColorScheme::light);
    case AlertStyle::critical:
        return color(SemanticColor::systemRedColor, ColorScheme::light);
    }
    return {};
}

/// A triangle whose corners are rounded by the pen's joins.
void drawTriangle(QPainter& painter, const QColor& colour) {
    QPainterPath path;
    path.moveTo(24, 6);
    path.lineTo(42, 38);
    path.lineTo(6, 38);
    path.closeSubpath();
    painter.setPen(QPen{colour, 6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin});
    painter.setBrush(colour);
    painter.drawPath(path);
}

/// An exclamation mark, or with `inverted` the letter i.
void drawMark(QPainter& painter, double top, double bottom, bool inverted) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::white);
    constexpr double thickness = 5, dot = thickness + 0.5, gap = 2.5;
    const double stemTop = inverted ? top + dot + gap : top;
    const double stemBottom = inverted ? bottom : bottom - dot - gap;
    painter.drawRoundedRect(
        QRectF{middle - thickness / 2, stemTop, thickness, stemBottom - stemTop}, thickness / 2,
        thickness / 2);
    painter.drawEllipse(QRectF{middle - dot / 2, inverted ? top : bottom - dot, dot, dot});
}

} // namespace

void drawAlertIcon(QPainter& painter, const QPointF& at, AlertStyle style) {
    painter.save();
    painter.translate(at);
    painter.setRenderHint(QPainter::Antialiasing);
    if (style == AlertStyle::informational) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(iconColor(style));
        painter.drawEllipse(QPointF{middle, middle}, middle - alertIconInset,
                            middle - alertIconInset);
        drawMark(painter, 12, 36, true);
    } else {
        drawTriangle(painter, iconColor(style));
        drawMark(painter, 12, 37, false);
    }
    painter.restore();
}

} // namespace oxlade
