#include "ui/sprites/sprite_decoder.h"

namespace oxlade {

std::variant<SpriteFrame, SpriteError> decodeSprite(SpriteBytes stored) {
    const auto nothing = [](const SpriteToken&, std::size_t) {};
    if (const auto error = visitSpriteTokens(stored, nothing)) return *error;

    const SpriteSize size = *readSpriteSize(stored);
    SpriteFrame frame{size.width, size.height,
                      std::vector<std::uint8_t>(size.pixels() * spriteBytesPerPixel)};
    decodeSpritePixels(stored, frame.pixels);
    return frame;
}

} // namespace oxlade
