#include "ui/alert_icon.h"

#include "ui/palette.h"

#include <QPainter>
#include <QPainterPath>

#include <cmath>

namespace oxlade {
namespace {

constexpr int side = 48;

QColor fill(AlertStyle style) {
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

/// A triangle with soft corners: the pen's round joins make them.
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
    constexpr double thickness = 5;
    const double x = side / 2.0 - thickness / 2, dot = thickness + 0.5;
    const double stemTop = inverted ? top + dot + 2.5 : top;
    const double stemBottom = inverted ? bottom : bottom - dot - 2.5;
    painter.drawRoundedRect(QRectF{x, stemTop, thickness, stemBottom - stemTop}, thickness / 2,
                            thickness / 2);
    const double dotTop = inverted ? top : bottom - dot;
    painter.drawEllipse(QRectF{side / 2.0 - dot / 2, dotTop, dot, dot});
}

} // namespace

QPixmap alertIcon(AlertStyle style, double devicePixelRatio) {
    QPixmap result{QSize{side, side} * devicePixelRatio};
    result.setDevicePixelRatio(devicePixelRatio);
    result.fill(Qt::transparent);
    QPainter painter{&result};
    painter.setRenderHint(QPainter::Antialiasing);
    if (style == AlertStyle::informational) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(fill(style));
        painter.drawEllipse(QRectF{3, 3, side - 6.0, side - 6.0});
        drawMark(painter, 12, 36, true);
    } else {
        drawTriangle(painter, fill(style));
        drawMark(painter, 12, 37, false);
    }
    return result;
}

} // namespace oxlade
