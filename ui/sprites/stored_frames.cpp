// Encodes the pictures of wait_girl_art.h at compile time and proves the result: a
// picture that breaks a rule does not compile, so the view needs no error path.
#include "ui/sprites/stored_frames.h"

#include "ui/sprites/sprite_encoder.h"
#include "ui/sprites/wait_girl_art.h"

#include <algorithm>
#include <initializer_list>

namespace oxlade {
namespace {

constexpr SpriteSize pictureSize{pictureWidth, pictureHeight};

constexpr bool isGoodFrame(SpriteBytes stored) {
    return readSpriteSize(stored) == pictureSize && followsStorageRule(stored);
}

constexpr std::size_t artSize = 1 + (pictureWidth + 1) * pictureHeight;
using Art = std::array<char, artSize>;

/// The idle still with the parts over it, in their order.
constexpr Art artOf(std::initializer_list<ArtPart> parts) {
    static_assert(idleArt.size() == artSize, "the idle still has the wrong size");
    Art art{};
    std::copy(idleArt.begin(), idleArt.end(), art.begin());
    for (const ArtPart& part : parts) {
        std::size_t row = part.row, column = part.column;
        for (const char pixel : part.art.substr(1)) {
            if (pixel != '\n') {
                art.at(1 + row * (pictureWidth + 1) + column++) = pixel;
                continue;
            }
            ++row;
            column = part.column;
        }
    }
    return art;
}

template <const Art& art>
constexpr auto storedFrame() {
    constexpr auto encoded = encodeArt<pictureSize>({art.data(), art.size()});
    static_assert(isGoodArt<encoded.fault>());
    std::array<std::uint8_t, encoded.encoder.bytes().size()> frame{};
    for (std::size_t at = 0; at < frame.size(); ++at) frame[at] = encoded.encoder.bytes()[at];
    return frame;
}

constexpr Art art0 = artOf({});
constexpr Art art1 = artOf({raisedFootArt, halfBubbleArt});
constexpr Art art2 = artOf({bubbleArt});
constexpr Art art3 = artOf({raisedFootArt, balloonArt, pleaseArt});
constexpr Art art4 = artOf({balloonArt, pleaseArt, waitArt});
constexpr Art art5 = artOf({raisedFootArt, balloonArt, pleaseArt, waitArt});

constexpr auto wait_girl_frame_0 = storedFrame<art0>();
constexpr auto wait_girl_frame_1 = storedFrame<art1>();
constexpr auto wait_girl_frame_2 = storedFrame<art2>();
constexpr auto wait_girl_frame_3 = storedFrame<art3>();
constexpr auto wait_girl_frame_4 = storedFrame<art4>();
constexpr auto wait_girl_frame_5 = storedFrame<art5>();

} // namespace

constexpr std::array<SpriteBytes, 6> wait_girl_frames{wait_girl_frame_0, wait_girl_frame_1,
                                                      wait_girl_frame_2, wait_girl_frame_3,
                                                      wait_girl_frame_4, wait_girl_frame_5};

namespace {

static_assert(isGoodFrame(wait_girl_frame_0));
static_assert(isGoodFrame(wait_girl_frame_1));
static_assert(isGoodFrame(wait_girl_frame_2));
static_assert(isGoodFrame(wait_girl_frame_3));
static_assert(isGoodFrame(wait_girl_frame_4));
static_assert(isGoodFrame(wait_girl_frame_5));

// Eleven blank rows and 62 pixels, the upper edge of the panel, and its two sides.
constexpr std::array<std::uint8_t, 31> idleBegins{
    0x6A, 0x00, 0x4C, 0x00, 0xFF, 0x0F, 0xFF, 0x0F, 0xFF, 0x0F, 0xFF, 0x0F, 0xFF, 0x0F, 0xFF, 0x0F,
    0xFF, 0x0F, 0xFF, 0x0F, 0xFF, 0x0F, 0xD5, 0x0F, 0xA5, 0x00, 0xC5, 0x0F, 0x00, 0xA3, 0x0F};
static_assert(std::equal(idleBegins.begin(), idleBegins.end(), wait_girl_frame_0.begin()));

constexpr std::size_t storedBytes() {
    std::size_t sum = 0;
    for (const SpriteBytes frame : wait_girl_frames) sum += frame.size();
    return sum;
}
static_assert(storedBytes() <= 8192, "the pictures are a small part of the program");

} // namespace
} // namespace oxlade
