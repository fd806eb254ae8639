// Stored frames as bytes and pictures as levels, for tests.
#pragma once

#include "ui/sprites/sprite_decoder.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <variant>
#include <vector>

namespace oxlade {

using Bytes = std::vector<std::uint8_t>;

/// On the heap, so that a sanitizer sees a read past the last byte.
inline Bytes bytes(std::initializer_list<int> values) {
    Bytes out;
    for (const int value : values) out.push_back(static_cast<std::uint8_t>(value));
    return out;
}

/// The levels of a frame that decodes without error, found by their colours; 16 for
/// a colour that is not in the palette.
inline Bytes decodedLevels(SpriteBytes stored) {
    const auto decoded = decodeSprite(stored);
    const auto& pixels = std::get<SpriteFrame>(decoded).pixels;
    Bytes levels;
    for (std::size_t at = 0; at < pixels.size(); at += spriteBytesPerPixel) {
        const SpriteColor color{pixels[at], pixels[at + 1], pixels[at + 2], pixels[at + 3]};
        const auto* const found = std::ranges::find(spritePalette, color);
        levels.push_back(static_cast<std::uint8_t>(found - spritePalette.begin()));
    }
    return levels;
}

} // namespace oxlade
