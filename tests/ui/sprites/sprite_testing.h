// What several tests of the sprites need.
#pragma once

#include "tools/sprite_encoder.h"
#include "ui/sprites/sprite_decoder.h"

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <map>
#include <vector>

namespace oxlade {

using StoredBytes = std::vector<std::uint8_t>;

/// Bytes of their own, so that a sanitizer sees a read past the last of them.
inline StoredBytes bytes(std::initializer_list<int> values) {
    StoredBytes out;
    for (const int value : values) out.push_back(static_cast<std::uint8_t>(value));
    return out;
}

/// The levels of a decoded frame, found by their colours; 255 for a colour that
/// is in no palette.
inline LevelPicture levelsOf(const SpriteFrame& frame) {
    std::map<SpriteColor, std::uint8_t> levels;
    for (std::size_t level = 0; level < spriteLevels; ++level)
        levels[spritePalette[level]] = static_cast<std::uint8_t>(level);

    LevelPicture picture{frame.width, frame.height, {}};
    for (std::size_t at = 0; at + 3 < frame.pixels.size(); at += spriteBytesPerPixel) {
        const std::uint8_t* p = &frame.pixels[at];
        const auto found = levels.find(SpriteColor{p[0], p[1], p[2], p[3]});
        picture.levels.push_back(found == levels.end() ? std::uint8_t{255} : found->second);
    }
    return picture;
}

/// Decodes what must be good, and gives its levels.
inline LevelPicture decodedLevels(SpriteBytes stored) {
    return levelsOf(std::get<SpriteFrame>(decodeSprite(stored)));
}

} // namespace oxlade
