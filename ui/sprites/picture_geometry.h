// Where the picture stands in its view: layout points, y upwards.
#pragma once

#include <algorithm>
#include <cmath>

namespace oxlade {

/// The picture at scale 1.
inline constexpr int pictureWidth = 106;
inline constexpr int pictureHeight = 76;

/// The dark frame around the screen, on every side.
inline constexpr double screenInset = 10;

/// The lower left corner and the extent; a size may be negative.
struct PictureRect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    friend bool operator==(const PictureRect&, const PictureRect&) = default;
};

struct PicturePlace {
    double scale = 1; ///< a whole number, at least 1
    PictureRect target;

    friend bool operator==(const PicturePlace&, const PicturePlace&) = default;
};

/// The screen within a view's bounds; of negative size in a view that the frame
/// alone would fill.
inline PictureRect screenOf(const PictureRect& bounds) {
    return {bounds.x + screenInset, bounds.y + screenInset, bounds.width - 2 * screenInset,
            bounds.height - 2 * screenInset};
}

/// The picture within a view's bounds: enlarged by whole multiples only, as far
/// as the screen allows but never below its own size, centred, and moved down
/// and left to whole points. In a small view it spills over the screen.
inline PicturePlace placePicture(const PictureRect& bounds) {
    const PictureRect screen = screenOf(bounds);
    const double fit = std::min(screen.width / pictureWidth, screen.height / pictureHeight);
    const double scale = std::max(1.0, std::floor(fit));
    const double width = pictureWidth * scale;
    const double height = pictureHeight * scale;
    return {scale,
            {std::floor(bounds.x + bounds.width / 2 - width / 2),
             std::floor(bounds.y + bounds.height / 2 - height / 2), width, height}};
}

} // namespace oxlade
