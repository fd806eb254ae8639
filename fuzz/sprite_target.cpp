// Decodes any bytes as a stored frame: the result is all pixels or an error.
#include "fuzz/fuzz_target.h"
#include "ui/sprites/sprite_decoder.h"

#include <vector>

using namespace oxlade;
using namespace oxlade::fuzz;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // A copy of exactly this size, so that a sanitizer sees a read past the end.
    const std::vector<std::uint8_t> stored(data, data + size);
    const auto result = decodeSprite(stored);
    const auto* const frame = std::get_if<SpriteFrame>(&result);
    if (frame == nullptr) return 0;
    mustHold(frame->pixels.size() ==
                 std::size_t{frame->width} * frame->height * spriteBytesPerPixel,
             "the frame has all its pixels");
    for (std::size_t i = 3; i < frame->pixels.size(); i += spriteBytesPerPixel)
        mustHold(frame->pixels[i] == 255, "every pixel is painted");
    return 0;
}
