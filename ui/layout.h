// The window's frames are written as the layout has them: in points (one point is
// one logical pixel), from the parent's bottom left corner, y upwards.
#pragma once

#include <QRect>

namespace oxlade {

/// The same rectangle counted from the parent's top left corner, y downwards.
constexpr QRect fromBottomLeft(const QRect& frame, int parentHeight) {
    return {frame.x(), parentHeight - frame.y() - frame.height(), frame.width(), frame.height()};
}

} // namespace oxlade
