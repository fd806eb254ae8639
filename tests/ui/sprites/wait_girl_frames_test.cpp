// What the six shipped pictures show, as far as a machine can see it.
#include "tests/ui/sprites/sprite_testing.h"
#include "ui/sprites/sprite_rule.h"
#include "ui/sprites/wait_girl_frames.h"

#include <array>
#include <functional>
#include <gtest/gtest.h>
#include <vector>

namespace oxlade {
namespace {

constexpr int width = 106;
constexpr int height = 76;
constexpr int panelLeft = 62;
constexpr int panelRight = 98;
constexpr int ground = 72; // the row on which the soles stand

struct Point {
    int x;
    int y;
};

const std::vector<LevelPicture>& pictures() {
    static const auto all = [] {
        std::vector<LevelPicture> decoded;
        decoded.reserve(wait_girl_frames.size());
        for (const SpriteBytes stored : wait_girl_frames) decoded.push_back(decodedLevels(stored));
        return decoded;
    }();
    return all;
}

bool isDark(std::size_t frame, int x, int y) {
    return pictures()[frame]
               .levels[static_cast<std::size_t>(y) * width + static_cast<std::size_t>(x)] == 0;
}

bool isBalloonSide(Point p) { return p.x < panelLeft; }
bool isFoot(Point p) { return p.x > panelLeft && p.x < 80 && p.y >= 64; }
bool isElsewhere(Point p) { return !isBalloonSide(p) && !isFoot(p); }

using Region = std::function<bool(Point)>;

int countIn(const Region& region, const std::function<bool(int, int)>& counts) {
    int count = 0;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) count += region({x, y}) && counts(x, y);
    return count;
}

int darkIn(std::size_t frame, const Region& region) {
    return countIn(region, [=](int x, int y) { return isDark(frame, x, y); });
}

int differencesIn(std::size_t a, std::size_t b, const Region& region) {
    return countIn(region, [=](int x, int y) { return isDark(a, x, y) != isDark(b, x, y); });
}

// Their sizes, tones and encoding are proved while compiling.
TEST(WaitGirlFrames, EveryFrameFillsThePicture) {
    for (const SpriteBytes stored : wait_girl_frames)
        EXPECT_EQ(decodedLevels(stored).levels.size(), 8056U);
}

TEST(WaitGirlFrames, TheTableRefersToTheFramesInOrder) {
    const std::array<SpriteBytes, 6> frames{wait_girl_frame_0, wait_girl_frame_1,
                                            wait_girl_frame_2, wait_girl_frame_3,
                                            wait_girl_frame_4, wait_girl_frame_5};
    for (std::size_t index = 0; index < frames.size(); ++index)
        EXPECT_EQ(wait_girl_frames[index].data(), frames[index].data()) << index;
}

TEST(WaitGirlFrames, TheIdleFrameBeginsWithElevenBlankRowsAndThePanelsEdge) {
    EXPECT_EQ(darkIn(0, [](Point p) { return p.y < 11; }), 0);
    for (int x = 0; x < width; ++x)
        EXPECT_EQ(isDark(0, x, 11), x >= panelLeft && x <= panelRight) << "column " << x;
}

TEST(WaitGirlFrames, InTheIdleFrameTheLeftPartIsEmpty) { EXPECT_EQ(darkIn(0, isBalloonSide), 0); }

TEST(WaitGirlFrames, AllShareTheFigureAndThePanel) {
    for (std::size_t frame = 1; frame < 6; ++frame)
        EXPECT_EQ(differencesIn(0, frame, isElsewhere), 0) << "frame " << frame;
}

TEST(WaitGirlFrames, TheFootIsRaisedInOddFramesAndDownInEvenOnes) {
    const auto toeOnGround = [](Point p) { return isFoot(p) && p.x < 74 && p.y == ground; };
    for (std::size_t frame = 0; frame < 6; ++frame) {
        EXPECT_EQ(differencesIn(frame % 2, frame, isFoot), 0) << "frame " << frame;
        EXPECT_EQ(darkIn(frame, toeOnGround) > 0, frame % 2 == 0) << "frame " << frame;
    }
    EXPECT_GE(differencesIn(0, 1, isFoot), 30) << "a tap that can be seen";
}

TEST(WaitGirlFrames, TheLoopMovesNothingButTheFoot) {
    EXPECT_EQ(differencesIn(4, 5, [](Point p) { return !isFoot(p); }), 0);
    EXPECT_GT(differencesIn(4, 5, isFoot), 0);
}

TEST(WaitGirlFrames, TheFirstBubbleSitsOnThePanelsEdgeAtTheHeightOfTheHead) {
    const auto near = [](Point p) { return p.x >= 50 && p.x < panelLeft && p.y >= 13 && p.y < 38; };
    EXPECT_GT(darkIn(1, near), 0);
    EXPECT_EQ(darkIn(1, near), darkIn(1, isBalloonSide));
    EXPECT_GT(darkIn(1, [](Point p) { return p.x == panelLeft - 1; }), 0);
}

TEST(WaitGirlFrames, TheSecondBubbleIsLargerAndFree) {
    const auto free = [](Point p) { return p.x >= 30 && p.x < panelLeft - 3 && p.y < 38; };
    EXPECT_GT(darkIn(2, free), darkIn(1, isBalloonSide));
    EXPECT_EQ(darkIn(2, free), darkIn(2, isBalloonSide));
}

TEST(WaitGirlFrames, TheSecondLineIsAddedToTheBalloonThatIsThere) {
    const auto secondLine = [](Point p) { return p.x > 6 && p.x < 54 && p.y >= 20 && p.y < 34; };
    const auto rest = [&](Point p) { return isBalloonSide(p) && !secondLine(p); };
    EXPECT_EQ(darkIn(3, secondLine), 0);
    EXPECT_GT(darkIn(4, secondLine), 0);
    EXPECT_EQ(differencesIn(3, 4, rest), 0);
}

} // namespace
} // namespace oxlade
