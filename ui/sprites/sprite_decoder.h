// Stored frames made into pixels.
#pragma once

#include "ui/sprites/sprite_format.h"
#include "ui/sprites/sprite_palette.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <variant>
#include <vector>

namespace oxlade {

inline constexpr std::size_t spriteBytesPerPixel = std::tuple_size_v<SpriteColor>;

/// A decoded frame, which owns its pixels: four bytes each (red, green, blue,
/// 255), rows from top to bottom and without padding.
struct SpriteFrame {
    std::uint16_t width = 0;
    std::uint16_t height = 0;
    std::vector<std::uint8_t> pixels;

    friend bool operator==(const SpriteFrame&, const SpriteFrame&) = default;
};

/// Writes the pixels of a stored frame into `pixels`, which must have room for
/// all that its header declares. On an error the pixels before the fault are
/// written and the others left as they were. Allocates nothing, so that frames
/// in the program's own data can be decoded by the compiler.
constexpr std::optional<SpriteError> decodeSpritePixels(SpriteBytes stored,
                                                        std::span<std::uint8_t> pixels) {
    const std::size_t total = readSpriteSize(stored).value_or(SpriteSize{}).pixels();
    const auto paint = [=](const SpriteToken& token, std::size_t pixel) {
        const SpriteColor& color = spritePalette[token.level];
        const std::size_t end = std::min(total, pixel + token.run);
        for (; pixel < end; ++pixel)
            for (std::size_t part = 0; part < spriteBytesPerPixel; ++part)
                pixels[pixel * spriteBytesPerPixel + part] = color[part];
    };
    return visitSpriteTokens(stored, paint);
}

/// Decodes a stored frame. Bytes that end too soon are an error, found before
/// any memory is taken: a short file cannot ask for gigabytes by its header.
std::variant<SpriteFrame, SpriteError> decodeSprite(SpriteBytes stored);

} // namespace oxlade
