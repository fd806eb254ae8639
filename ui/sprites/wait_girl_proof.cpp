// The compiler proves the shipped frames: a picture that breaks a rule does not
// build, so the program needs no error path for its own data.
#include "ui/sprites/picture_geometry.h"
#include "ui/sprites/sprite_rule.h"
#include "ui/sprites/wait_girl_frames.h"

#include <algorithm>
#include <array>

namespace oxlade {
namespace {

constexpr bool isGoodFrame(SpriteBytes stored) {
    return readSpriteSize(stored) == SpriteSize{pictureWidth, pictureHeight} && isTwoTone(stored) &&
           followsStorageRule(stored);
}

static_assert(wait_girl_frames.size() == 6);
static_assert(isGoodFrame(wait_girl_frame_0));
static_assert(isGoodFrame(wait_girl_frame_1));
static_assert(isGoodFrame(wait_girl_frame_2));
static_assert(isGoodFrame(wait_girl_frame_3));
static_assert(isGoodFrame(wait_girl_frame_4));
static_assert(isGoodFrame(wait_girl_frame_5));

// Eleven blank rows and 62 pixels, the panel's upper edge, and its two sides.
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
