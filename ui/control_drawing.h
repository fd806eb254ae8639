// Shapes and colours that the drawn controls share. Main thread.
#pragma once

#include <QColor>
#include <QPalette>
#include <QRectF>

class QPainter;

namespace oxlade {

/// A filled rounded rectangle with an edge of one point inside it. The colours are
/// opaque: a large translucent shape makes the toolkit start threads to fill it.
void drawPanel(QPainter& painter, const QRectF& frame, double radius, const QColor& fill,
               const QColor& edge);
/// The keyboard's focus: a ring of two points, one point outside the shape.
void drawFocusRing(QPainter& painter, const QRectF& shape, double radius, const QPalette& palette);

struct ButtonState {
    bool enabled = true;
    bool hovered = false;
    bool pressed = false;
    bool filled = false; ///< the window's or the alert's default button
};

struct ButtonColors {
    QColor fill, edge, text; ///< to be painted over what lies below
};
ButtonColors buttonColors(const QPalette& palette, const ButtonState& state);

struct SwitchColors {
    QColor trough, thumb, thumbEdge, chosenText, otherText;
};
SwitchColors switchColors(const QPalette& palette);

struct BarColors {
    QColor trough, done;
};
/// The accent as a ring or a bar on a card.
QColor markColor(const QPalette& palette);
BarColors barColors(const QPalette& palette);

} // namespace oxlade
