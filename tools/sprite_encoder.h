// Pictures made into stored frames.
#pragma once

#include <cstdint>
#include <vector>

namespace oxlade {

/// A picture in grey levels, one byte a pixel, rows from top to bottom.
struct LevelPicture {
    std::uint16_t width = 0;
    std::uint16_t height = 0;
    std::vector<std::uint8_t> levels; ///< width * height of them, each 0 to 15

    friend bool operator==(const LevelPicture&, const LevelPicture&) = default;
};

/// The stored form: runs as long as they go, also over the end of a row; those
/// of 1 to 7 pixels as short tokens, those of 8 to 127 as long ones, longer ones
/// as tokens of 127 and one for what is left, if anything is. A level above 15
/// loses its upper bits.
std::vector<std::uint8_t> encodeSprite(const LevelPicture& picture);

} // namespace oxlade
