// The picture beside an alert's texts. Main thread.
#pragma once

#include "interfaces/system.h"

class QPainter;
class QPointF;

namespace oxlade {

/// The side of the square that the picture has, and the empty rows above its drawn part, in
/// points.
inline constexpr int alertIconSide = 48, alertIconInset = 3;

/// Draws a disc or a triangle with its mark; `at` is the square's top left corner. The same in
/// both appearances.
void drawAlertIcon(QPainter& painter, const QPointF& at, AlertStyle style);

} // namespace oxlade
