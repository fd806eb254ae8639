#include "tests/ui/sprites/sprite_testing.h"
#include "ui/sprites/sprite_rule.h"
#include "ui/sprites/wait_girl_frames.h"

#include <algorithm>
#include <array>
#include <gtest/gtest.h>
#include <random>

namespace oxlade {
namespace {

/// A picture of one row and one level.
LevelPicture oneRun(std::uint16_t length, std::uint8_t level) {
    return {length, 1, std::vector<std::uint8_t>(length, level)};
}

StoredBytes tokensOf(const LevelPicture& picture) {
    const StoredBytes stored = encodeSprite(picture);
    return {stored.begin() + spriteHeaderBytes, stored.end()};
}

/// Runs of random length, many of them around the lengths where the form changes.
LevelPicture randomPicture(std::mt19937& random) {
    constexpr std::array<unsigned, 12> lengths{1, 2, 6, 7, 8, 9, 126, 127, 128, 254, 255, 381};
    const auto below = [&](std::size_t limit) { return static_cast<unsigned>(random() % limit); };
    LevelPicture picture{
        static_cast<std::uint16_t>(1 + below(120)), static_cast<std::uint16_t>(1 + below(40)), {}};
    const std::size_t total = std::size_t{picture.width} * picture.height;
    while (picture.levels.size() < total) {
        const unsigned run = below(2) == 0 ? lengths[below(lengths.size())] : 1 + below(20);
        picture.levels.insert(picture.levels.end(), run, std::uint8_t(below(16)));
    }
    picture.levels.resize(total);
    return picture;
}

TEST(SpriteEncoder, WritesTheSizeLowByteFirst) {
    const auto stored = encodeSprite({258, 1, std::vector<std::uint8_t>(258, 15)});
    EXPECT_EQ(StoredBytes(stored.begin(), stored.begin() + 4), bytes({0x02, 0x01, 0x01, 0x00}));
}

TEST(SpriteEncoder, UsesShortTokensUpToSevenPixelsAndLongOnesFromEight) {
    EXPECT_EQ(tokensOf(oneRun(1, 15)), bytes({0x0F}));
    EXPECT_EQ(tokensOf(oneRun(7, 3)), bytes({0x63}));
    EXPECT_EQ(tokensOf(oneRun(8, 3)), bytes({0x88, 0x03}));
    EXPECT_EQ(tokensOf(oneRun(127, 0)), bytes({0xFF, 0x00}));
}

TEST(SpriteEncoder, SplitsALongerRunIntoFullTokensAndOneForTheRest) {
    EXPECT_EQ(tokensOf(oneRun(128, 15)), bytes({0xFF, 0x0F, 0x0F}));
    EXPECT_EQ(tokensOf(oneRun(254, 15)), bytes({0xFF, 0x0F, 0xFF, 0x0F}));
    EXPECT_EQ(tokensOf(oneRun(262, 15)), bytes({0xFF, 0x0F, 0xFF, 0x0F, 0x88, 0x0F}));
    EXPECT_EQ(tokensOf(oneRun(381, 0)), bytes({0xFF, 0x00, 0xFF, 0x00, 0xFF, 0x00}));
}

TEST(SpriteEncoder, ARunGoesOnOverTheEndOfARow) {
    EXPECT_EQ(tokensOf({2, 3, {0, 15, 15, 15, 15, 0}}), bytes({0x00, 0x3F, 0x00}));
}

TEST(SpriteEncoder, APictureWithoutPixelsIsItsSizeAlone) {
    EXPECT_EQ(encodeSprite({0, 9, {}}), bytes({0, 0, 9, 0}));
}

TEST(SpriteEncoder, TheDecoderGivesBackEveryRandomPicture) {
    std::mt19937 random(4000);
    for (int round = 0; round < 500; ++round) {
        const LevelPicture picture = randomPicture(random);
        const StoredBytes stored = encodeSprite(picture);
        ASSERT_EQ(decodedLevels(stored), picture) << "round " << round;
        ASSERT_TRUE(followsStorageRule(stored)) << "round " << round;
    }
}

TEST(SpriteEncoder, EncodesTheShippedFramesAsTheyAreStored) {
    for (const SpriteBytes shipped : wait_girl_frames)
        EXPECT_TRUE(std::ranges::equal(encodeSprite(decodedLevels(shipped)), shipped));
}

TEST(StorageRule, HoldsForTheFormsThatTheEncoderUses) {
    EXPECT_TRUE(followsStorageRule(bytes({7, 0, 1, 0, 0x6F})));
    EXPECT_TRUE(followsStorageRule(bytes({8, 0, 1, 0, 0x88, 0x0F})));
    EXPECT_TRUE(followsStorageRule(bytes({128, 0, 1, 0, 0xFF, 0x0F, 0x0F})));
    EXPECT_TRUE(followsStorageRule(bytes({2, 0, 1, 0, 0x0F, 0x00})));
    EXPECT_TRUE(followsStorageRule(bytes({0, 0, 1, 0})));
}

TEST(StorageRule, RejectsEveryOtherWayToStoreAPicture) {
    EXPECT_FALSE(followsStorageRule(bytes({8, 0, 1, 0, 0x7F}))) << "a short token of 8";
    EXPECT_FALSE(followsStorageRule(bytes({7, 0, 1, 0, 0x87, 0x0F}))) << "a long token of 7";
    EXPECT_FALSE(followsStorageRule(bytes({8, 0, 1, 0, 0x88, 0x1F}))) << "bits without meaning";
    EXPECT_FALSE(followsStorageRule(bytes({1, 0, 1, 0, 0x80, 0x00, 0x0F}))) << "an empty run";
    EXPECT_FALSE(followsStorageRule(bytes({2, 0, 1, 0, 0x0F, 0x0F}))) << "a run in two";
    EXPECT_FALSE(followsStorageRule(bytes({128, 0, 1, 0, 0x0F, 0xFF, 0x0F}))) << "rest first";
    EXPECT_FALSE(followsStorageRule(bytes({1, 0, 1, 0, 0x1F}))) << "a run past the end";
    EXPECT_FALSE(followsStorageRule(bytes({1, 0, 1, 0, 0x0F, 0x00}))) << "a byte too many";
    EXPECT_FALSE(followsStorageRule(bytes({2, 0, 1, 0, 0x0F}))) << "a pixel too few";
    EXPECT_FALSE(followsStorageRule(bytes({2, 0, 1}))) << "no whole header";
}

TEST(StorageRule, TwoTonesAreTheFirstLevelAndTheLast) {
    EXPECT_TRUE(isTwoTone(bytes({2, 0, 1, 0, 0x0F, 0x00})));
    EXPECT_FALSE(isTwoTone(bytes({2, 0, 1, 0, 0x0F, 0x01})));
    EXPECT_FALSE(isTwoTone(bytes({2, 0, 1, 0, 0x0E, 0x00})));
    EXPECT_FALSE(isTwoTone(bytes({2, 0, 1, 0, 0x0F})));
}

} // namespace
} // namespace oxlade
