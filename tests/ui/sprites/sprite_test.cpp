// The stored form of pictures: decoder, palette, encoder, and pictures as text.
#include "tests/ui/sprites/sprite_testing.h"
#include "ui/sprites/sprite_encoder.h"
#include "ui/sprites/stored_frames.h"

#include <array>
#include <gtest/gtest.h>
#include <random>
#include <string_view>

namespace oxlade {
namespace {

SpriteError errorOf(const Bytes& stored) { return std::get<SpriteError>(decodeSprite(stored)); }

TEST(SpriteDecoder, DecodesEachFormOfToken) {
    EXPECT_EQ(decodedLevels(bytes({1, 0, 1, 0, 0x00})), bytes({0})) << "the shortest run";
    EXPECT_EQ(decodedLevels(bytes({8, 0, 1, 0, 0x7A})), Bytes(8, 10)) << "the longest short run";
    EXPECT_EQ(decodedLevels(bytes({127, 0, 1, 0, 0xFF, 0x0F})), Bytes(127, 15));
    EXPECT_EQ(decodedLevels(bytes({2, 0, 3, 0, 0x05, 0x39, 0x01})), bytes({5, 9, 9, 9, 9, 1}))
        << "a run across rows";
    EXPECT_EQ(decodedLevels(bytes({3, 0, 1, 0, 0x02, 0x7F})), bytes({2, 15, 15}))
        << "a short run past the end";
    EXPECT_EQ(decodedLevels(bytes({3, 0, 1, 0, 0xFF, 0x06})), bytes({6, 6, 6}))
        << "a long run past the end";
}

TEST(SpriteDecoder, IgnoresTheUpperBitsOfALongTokenAndBytesAfterTheLast) {
    for (int byte = 0; byte < 256; ++byte) {
        const auto level = static_cast<std::uint8_t>(byte & 0x0F);
        EXPECT_EQ(decodedLevels(bytes({2, 0, 1, 0, 0x82, byte})), Bytes(2, level)) << byte;
        EXPECT_EQ(decodedLevels(bytes({2, 0, 1, 0, 0x80, byte, 0x04, 0x80, byte, 0x05})),
                  bytes({4, 5}))
            << "empty runs, second byte " << byte;
        EXPECT_EQ(decodedLevels(bytes({2, 0, 1, 0, 0x13, byte, byte})), bytes({3, 3})) << byte;
    }
}

TEST(SpriteDecoder, ReadsTheSizeLowByteFirst) {
    EXPECT_EQ(readSpriteSize(bytes({0x02, 0x01, 0xFF, 0xFE})), (SpriteSize{0x0102, 0xFEFF}));
    EXPECT_EQ(readSpriteSize(bytes({0x6A, 0x00, 0x4C})), std::nullopt);
}

TEST(SpriteDecoder, WritesRedGreenBlueAnd255WithoutPadding) {
    const SpriteFrame expected{3, 1,
                               bytes({18, 33, 56, 255, 212, 230, 237, 255, 121, 138, 153, 255})};
    EXPECT_EQ(std::get<SpriteFrame>(decodeSprite(bytes({3, 0, 1, 0, 0x00, 0x0F, 0x08}))), expected);
}

TEST(SpriteDecoder, APictureWithoutPixelsNeedsNoTokens) {
    for (const auto& stored : {bytes({0, 0, 0, 0}), bytes({5, 0, 0, 0}), bytes({0, 0, 5, 0, 0x80})})
        EXPECT_EQ(std::get<SpriteFrame>(decodeSprite(stored)),
                  (SpriteFrame{stored[0], stored[2], {}}));
}

TEST(SpriteDecoder, AFrameCutAtAnyByteIsAnError) {
    for (const SpriteBytes shipped : wait_girl_frames)
        for (std::size_t length = 0; length < shipped.size(); ++length) {
            const Bytes cut(shipped.data(), shipped.data() + length);
            ASSERT_EQ(errorOf(cut), length < spriteHeaderBytes ? SpriteError::headerTooShort
                                                               : SpriteError::streamTooShort)
                << "cut to " << length << " bytes";
        }
}

TEST(SpriteDecoder, AHugeSizeWithoutItsPixelsIsAnErrorNotAHugeAllocation) {
    EXPECT_EQ(errorOf(bytes({0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x0F})), SpriteError::streamTooShort);
    EXPECT_EQ(errorOf(bytes({1, 0, 1, 0, 0x80, 0x00, 0x80, 0x00})), SpriteError::streamTooShort);
}

TEST(SpriteDecoder, OnAnErrorOnlyThePixelsBeforeTheFaultAreWritten) {
    Bytes pixels(3 * spriteBytesPerPixel, 77);
    EXPECT_EQ(decodeSpritePixels(bytes({3, 0, 1, 0, 0x10}), pixels), SpriteError::streamTooShort);
    EXPECT_EQ(pixels, bytes({18, 33, 56, 255, 18, 33, 56, 255, 77, 77, 77, 77}));
}

TEST(SpritePalette, RoundsHalvesUpwardsAndValuesJustBelowThemDown) {
    EXPECT_EQ(detail::roundedByte(229.5), 230);
    EXPECT_EQ(detail::roundedByte(229.49999999999997), 229);
    EXPECT_EQ(detail::roundedByte(0.49999999999999994), 0);
    EXPECT_EQ(detail::roundedByte(255), 255);
}

TEST(SpriteEncoder, TheDecoderReturnsEveryPictureThatItStores) {
    constexpr std::array<std::size_t, 10> lengths{1, 6, 7, 8, 9, 126, 127, 128, 254, 255};
    std::mt19937 random(4000);
    for (int round = 0; round < 500; ++round) {
        Bytes levels;
        for (int runs = 0; runs < 40; ++runs) {
            const unsigned last = levels.empty() ? random() % 2 * 15 : levels.back();
            const auto level = static_cast<std::uint8_t>(15 - last);
            levels.insert(levels.end(), lengths[random() % lengths.size()], level);
        }
        SpriteEncoder<1024> encoder{{static_cast<std::uint16_t>(levels.size()), 1}};
        for (auto at = levels.begin(); at != levels.end();) {
            const auto end =
                std::find_if(at, levels.end(), [at](auto level) { return level != *at; });
            encoder.addRun(static_cast<std::size_t>(end - at), *at);
            at = end;
        }
        ASSERT_EQ(decodedLevels(encoder.bytes()), levels) << "round " << round;
        ASSERT_TRUE(followsStorageRule(encoder.bytes()));
    }
}

TEST(StorageRule, RejectsEveryOtherForm) {
    EXPECT_TRUE(followsStorageRule(bytes({0, 0, 1, 0}))) << "no pixels";
    EXPECT_FALSE(followsStorageRule(bytes({8, 0, 1, 0, 0x7F}))) << "a short token of 8";
    EXPECT_FALSE(followsStorageRule(bytes({7, 0, 1, 0, 0x87, 0x0F}))) << "a long token of 7";
    EXPECT_FALSE(followsStorageRule(bytes({8, 0, 1, 0, 0x88, 0x1F}))) << "unused bits";
    EXPECT_FALSE(followsStorageRule(bytes({1, 0, 1, 0, 0x80, 0x00, 0x0F}))) << "an empty run";
    EXPECT_FALSE(followsStorageRule(bytes({2, 0, 1, 0, 0x0F, 0x0F}))) << "a run in two";
    EXPECT_FALSE(followsStorageRule(bytes({128, 0, 1, 0, 0x0F, 0xFF, 0x0F}))) << "rest first";
    EXPECT_FALSE(followsStorageRule(bytes({1, 0, 1, 0, 0x1F}))) << "a run past the end";
    EXPECT_FALSE(followsStorageRule(bytes({1, 0, 1, 0, 0x0F, 0x00}))) << "a byte too many";
    EXPECT_FALSE(followsStorageRule(bytes({2, 0, 1, 0, 0x0F}))) << "a pixel too few";
    EXPECT_FALSE(followsStorageRule(bytes({2, 0, 1}))) << "an incomplete header";
    EXPECT_FALSE(followsStorageRule(bytes({2, 0, 1, 0, 0x0F, 0x01}))) << "level 1";
    EXPECT_FALSE(followsStorageRule(bytes({2, 0, 1, 0, 0x0E, 0x00}))) << "level 14";
}

Bytes encoded(std::string_view art) {
    const auto stored = encodeArt<SpriteSize{4, 2}>(art);
    EXPECT_EQ(stored.fault, ArtFault{}) << art;
    return {stored.encoder.bytes().begin(), stored.encoder.bytes().end()};
}

ArtFault faultOf(std::string_view art) { return encodeArt<SpriteSize{4, 2}>(art).fault; }

TEST(Art, IsEncodedWithRunsAcrossRows) {
    EXPECT_EQ(encoded("\n#...\n..##\n"), bytes({4, 0, 2, 0, 0x00, 0x4F, 0x10}));
    EXPECT_EQ(encoded("\n....\n....\n"), bytes({4, 0, 2, 0, 0x88, 0x0F}));
    EXPECT_EQ(encoded("\n####\n####\n"), bytes({4, 0, 2, 0, 0x88, 0x00}));
    const auto wide = encodeArt<SpriteSize{258, 1}>("\n" + std::string(258, '.') + "\n");
    EXPECT_EQ(readSpriteSize(wide.encoder.bytes()), (SpriteSize{258, 1}));
}

TEST(Art, ItsFirstFaultIsFoundWithItsPlace) {
    EXPECT_EQ(faultOf("\n#...\n.#.\n"), (ArtFault{ArtFault::wrongWidth, 2, 3}));
    EXPECT_EQ(faultOf("\n#....\n.#..\n"), (ArtFault{ArtFault::wrongWidth, 1, 5}));
    EXPECT_EQ(faultOf("\n#.#.#.#.#.#.#.#.#.#.\n"), (ArtFault{ArtFault::wrongWidth, 1, 20}));
    EXPECT_EQ(faultOf("\n....\n..x.\n"), (ArtFault{ArtFault::wrongCharacter, 2, 3}));
    EXPECT_EQ(faultOf("\n....\r\n....\r\n"), (ArtFault{ArtFault::wrongCharacter, 1, 5}));
    EXPECT_EQ(faultOf("\n....\n"), (ArtFault{ArtFault::wrongHeight, 1, 0}));
    EXPECT_EQ(faultOf("\n#.#.\n#.#.\n#.#.\n#.#.\n#.#.\n"), (ArtFault{ArtFault::wrongHeight, 3, 0}));
    for (const char* art : {"", "....\n....\n", "\n....\n...."})
        EXPECT_EQ(faultOf(art), (ArtFault{ArtFault::noLineFeed, 0, 0})) << art;
}

} // namespace
} // namespace oxlade
