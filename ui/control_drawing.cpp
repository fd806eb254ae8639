#include "ui/control_drawing.h"

#include "ui/palette.h"

#include <QPainter>

namespace oxlade {
namespace {

QColor ink(ColorScheme scheme, double alpha) {
    QColor result = scheme == ColorScheme::dark ? Qt::white : Qt::black;
    result.setAlphaF(static_cast<float>(alpha));
    return result;
}

QColor shade(const QColor& fill, double blackness) {
    return over(ink(ColorScheme::light, blackness), fill);
}

ButtonColors filledColors(const QPalette& palette, const ButtonState& state) {
    const ColorScheme scheme = schemeOf(palette);
    if (!state.enabled)
        return {ink(scheme, 0.07), ink(scheme, 0.03),
                color(SemanticColor::tertiaryLabelColor, scheme)};
    const QColor accent = palette.color(QPalette::Active, QPalette::Highlight);
    // Towards whatever makes the text on it clearer, never away from it.
    const QColor text = textOn(accent);
    const double depth = state.pressed ? 0.16 : state.hovered ? 0.06 : 0;
    QColor veil = text == QColor{Qt::white} ? QColor{Qt::black} : QColor{Qt::white};
    veil.setAlphaF(static_cast<float>(depth));
    const QColor fill = over(veil, accent);
    return {fill, shade(fill, 0.10), text};
}

ButtonColors plainColors(const QPalette& palette, const ButtonState& state) {
    const ColorScheme scheme = schemeOf(palette);
    const bool dark = scheme == ColorScheme::dark;
    if (!state.enabled)
        return {ink(scheme, dark ? 0.04 : 0.02), ink(scheme, 0.06),
                color(SemanticColor::tertiaryLabelColor, scheme)};
    const QColor text = color(SemanticColor::labelColor, scheme);
    const QColor edge = ink(scheme, dark ? 0.12 : 0.15);
    if (dark) return {ink(scheme, state.pressed ? 0.22 : state.hovered ? 0.15 : 0.11), edge, text};
    return {state.pressed   ? QColor{0xE2, 0xE2, 0xE6}
            : state.hovered ? QColor{0xF6, 0xF6, 0xF8}
                            : QColor{Qt::white},
            edge, text};
}

} // namespace

void drawPanel(QPainter& painter, const QRectF& frame, double radius, const QColor& fill,
               const QColor& edge) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill);
    painter.drawRoundedRect(frame, radius, radius);
    painter.setPen(QPen{edge, 1});
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(frame.adjusted(0.5, 0.5, -0.5, -0.5), radius - 0.5, radius - 0.5);
}

void drawFocusRing(QPainter& painter, const QRectF& shape, double radius, const QPalette& palette) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen{markColor(palette), 2});
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(shape.adjusted(-2, -2, 2, 2), radius + 2, radius + 2);
}

ButtonColors buttonColors(const QPalette& palette, const ButtonState& state) {
    return state.filled ? filledColors(palette, state) : plainColors(palette, state);
}

SwitchColors switchColors(const QPalette& palette) {
    const ColorScheme scheme = schemeOf(palette);
    const bool dark = scheme == ColorScheme::dark;
    return {ink(scheme, dark ? 0.09 : 0.07), dark ? QColor{0x62, 0x62, 0x68} : QColor{Qt::white},
            ink(ColorScheme::light, dark ? 0.20 : 0.10), color(SemanticColor::labelColor, scheme),
            color(SemanticColor::secondaryLabelColor, scheme)};
}

QColor markColor(const QPalette& palette) {
    return seenOn(cardColor(schemeOf(palette)),
                  palette.color(QPalette::Active, QPalette::Highlight));
}

BarColors barColors(const QPalette& palette) {
    return {ink(schemeOf(palette), 0.10), markColor(palette)};
}

} // namespace oxlade
