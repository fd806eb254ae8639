#include "tests/ui/sprites/sprite_testing.h"
#include "ui/sprites/wait_girl_frames.h"

#include <array>
#include <cstddef>
#include <gtest/gtest.h>

namespace oxlade {
namespace {

using Levels = std::vector<std::uint8_t>;

SpriteError errorOf(const StoredBytes& stored) {
    return std::get<SpriteError>(decodeSprite(stored));
}

TEST(SpriteToken, AShortOneHoldsOneToEightPixels) {
    EXPECT_EQ(readSpriteToken(bytes({0x00})), (SpriteToken{1, 0, 1}));
    EXPECT_EQ(readSpriteToken(bytes({0x6A})), (SpriteToken{7, 10, 1}));
    EXPECT_EQ(readSpriteToken(bytes({0x7F})), (SpriteToken{8, 15, 1}));
}

TEST(SpriteToken, ALongOneHoldsUpTo127PixelsAndIgnoresTheLevelsUpperBits) {
    EXPECT_EQ(readSpriteToken(bytes({0x88, 0x00})), (SpriteToken{8, 0, 2}));
    EXPECT_EQ(readSpriteToken(bytes({0xFF, 0x3F})), (SpriteToken{127, 15, 2}));
    EXPECT_EQ(readSpriteToken(bytes({0xFF, 0xF3})), (SpriteToken{127, 3, 2}));
    EXPECT_EQ(readSpriteToken(bytes({0x80, 0x07})), (SpriteToken{0, 7, 2}));
}

TEST(SpriteToken, ACutOneIsNone) {
    EXPECT_EQ(readSpriteToken({}), std::nullopt);
    EXPECT_EQ(readSpriteToken(bytes({0x80})), std::nullopt);
}

TEST(SpriteDecoder, ReadsTheSizeLowByteFirst) {
    EXPECT_EQ(readSpriteSize(bytes({0x6A, 0x00, 0x4C, 0x00})), (SpriteSize{106, 76}));
    EXPECT_EQ(readSpriteSize(bytes({0x02, 0x01, 0xFF, 0xFE})), (SpriteSize{0x0102, 0xFEFF}));
    EXPECT_EQ(readSpriteSize(bytes({0x6A, 0x00, 0x4C})), std::nullopt);
}

TEST(SpriteDecoder, WritesRedGreenBlueAnd255WithoutPadding) {
    const auto decoded = decodeSprite(bytes({3, 0, 1, 0, 0x00, 0x0F, 0x08}));
    const auto& frame = std::get<SpriteFrame>(decoded);
    EXPECT_EQ(frame.width, 3);
    EXPECT_EQ(frame.height, 1);
    EXPECT_EQ(frame.pixels, bytes({18, 33, 56, 255, 212, 230, 237, 255, 121, 138, 153, 255}));
}

TEST(SpriteDecoder, ARunGoesOnInTheNextRow) {
    const auto picture = decodedLevels(bytes({2, 0, 3, 0, 0x05, 0x39, 0x01}));
    EXPECT_EQ(picture.levels, (Levels{5, 9, 9, 9, 9, 1}));
}

TEST(SpriteDecoder, AnEmptyRunWritesNothingAndTakesTwoBytes) {
    for (int second = 0; second < 256; ++second) {
        const auto picture =
            decodedLevels(bytes({2, 0, 1, 0, 0x80, second, 0x04, 0x80, second, 0x05}));
        EXPECT_EQ(picture.levels, (Levels{4, 5})) << "second byte " << second;
    }
}

TEST(SpriteDecoder, TheLastRunIsCutAtTheLastPixel) {
    EXPECT_EQ(decodedLevels(bytes({3, 0, 1, 0, 0x02, 0x7F})).levels, (Levels{2, 15, 15}));
    EXPECT_EQ(decodedLevels(bytes({3, 0, 1, 0, 0xFF, 0x36})).levels, (Levels{6, 6, 6}));
}

TEST(SpriteDecoder, NothingIsReadBehindTheTokenThatEndsThePicture) {
    const auto whole = bytes({2, 0, 1, 0, 0x13});
    for (int next = 0; next < 256; ++next) {
        StoredBytes longer = whole;
        longer.push_back(static_cast<std::uint8_t>(next));
        EXPECT_EQ(decodeSprite(longer), decodeSprite(whole)) << "next byte " << next;
    }
}

TEST(SpriteDecoder, APictureWithoutPixelsNeedsNoTokens) {
    for (const auto& stored :
         {bytes({0, 0, 0, 0}), bytes({5, 0, 0, 0}), bytes({0, 0, 5, 0, 0x80})}) {
        const auto frame = std::get<SpriteFrame>(decodeSprite(stored));
        EXPECT_EQ(frame.width, stored[0]);
        EXPECT_EQ(frame.height, stored[2]);
        EXPECT_TRUE(frame.pixels.empty());
    }
}

TEST(SpriteDecoder, AFrameCutAtAnyByteIsAnError) {
    for (const SpriteBytes shipped : wait_girl_frames)
        for (std::size_t length = 0; length < shipped.size(); ++length) {
            const StoredBytes cut(shipped.begin(), shipped.begin() + std::ptrdiff_t(length));
            const auto expected = length < spriteHeaderBytes ? SpriteError::headerTooShort
                                                             : SpriteError::streamTooShort;
            ASSERT_EQ(errorOf(cut), expected) << "cut to " << length << " bytes";
        }
}

TEST(SpriteDecoder, AHugeSizeWithoutItsPixelsIsAnErrorNotAHugeAllocation) {
    EXPECT_EQ(errorOf(bytes({0xFF, 0xFF, 0xFF, 0xFF})), SpriteError::streamTooShort);
    EXPECT_EQ(errorOf(bytes({0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x0F})), SpriteError::streamTooShort);
}

TEST(SpriteDecoder, EmptyRunsAloneEndInAnErrorNotInALoop) {
    EXPECT_EQ(errorOf(bytes({1, 0, 1, 0, 0x80, 0x00, 0x80, 0x00})), SpriteError::streamTooShort);
}

TEST(SpriteDecoder, BeforeAFaultThePixelsAreWrittenAndBehindItLeftAlone) {
    StoredBytes pixels(3 * spriteBytesPerPixel, 77);
    EXPECT_EQ(decodeSpritePixels(bytes({3, 0, 1, 0, 0x10}), pixels), SpriteError::streamTooShort);
    EXPECT_EQ(pixels, bytes({18, 33, 56, 255, 18, 33, 56, 255, 77, 77, 77, 77}));
}

// The compiler can decode, too.
constexpr std::array<std::uint8_t, 4> decodedWhileCompiling() {
    constexpr std::array<std::uint8_t, 5> stored{1, 0, 1, 0, 0x0A};
    std::array<std::uint8_t, 4> pixels{};
    return decodeSpritePixels(stored, pixels) ? std::array<std::uint8_t, 4>{} : pixels;
}
static_assert(decodedWhileCompiling() == SpriteColor{147, 164, 177, 255});

} // namespace
} // namespace oxlade
