// The colours of the sixteen grey levels: dark navy at 0, pale blue-grey at 15.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace oxlade {

/// Red, green, blue, and 255 for the byte that nobody looks at.
using SpriteColor = std::array<std::uint8_t, 4>;

inline constexpr std::size_t spriteLevels = 16;

namespace detail {

/// Rounds a non-negative value, halves upwards. The fraction is taken by itself:
/// adding a half to the value could carry a fraction just below it over the edge.
constexpr std::uint8_t roundedByte(double value) {
    const auto whole = static_cast<unsigned>(value);
    return static_cast<std::uint8_t>(value - whole >= 0.5 ? whole + 1 : whole);
}

constexpr std::uint8_t mixed(double dark, double light, double v) {
    return roundedByte((dark + v * (light - dark)) * 255);
}

constexpr SpriteColor colorOfLevel(std::size_t level) {
    const double v = static_cast<double>(level) / 15;
    return {mixed(0.07, 0.83, v), mixed(0.13, 0.90, v), mixed(0.22, 0.93, v), 255};
}

constexpr std::array<SpriteColor, spriteLevels> makeSpritePalette() {
    std::array<SpriteColor, spriteLevels> palette{};
    for (std::size_t level = 0; level < spriteLevels; ++level) palette[level] = colorOfLevel(level);
    return palette;
}

} // namespace detail

/// The colour of each level.
inline constexpr std::array<SpriteColor, spriteLevels> spritePalette = detail::makeSpritePalette();

static_assert(spritePalette[0] == SpriteColor{18, 33, 56, 255});
static_assert(spritePalette[5] == SpriteColor{82, 99, 116, 255});
static_assert(spritePalette[10] == SpriteColor{147, 164, 177, 255});
static_assert(spritePalette[15] == SpriteColor{212, 230, 237, 255}, "229.5 rounds to 230");

} // namespace oxlade
