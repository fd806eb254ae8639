// The picture beside an alert's text. Main thread.
#pragma once

#include "interfaces/system.h"

#include <QPixmap>

namespace oxlade {

/// The empty rows above the drawn shape, in points.
inline constexpr int alertIconInset = 3;

/// 48 points square, drawn for the given ratio of device pixels to points.
QPixmap alertIcon(AlertStyle style, double devicePixelRatio);

} // namespace oxlade
