// The picture beside an alert's text.
#pragma once

#include "app/system.h"

#include <QPixmap>

namespace oxlade {

/// 48 points square, drawn for the given ratio of device pixels to points.
QPixmap alertIcon(AlertStyle style, double devicePixelRatio);

} // namespace oxlade
