// What the six pictures show. Their size, levels and encoding are static assertions.
#include "tests/ui/sprites/sprite_testing.h"
#include "ui/sprites/stored_frames.h"

#include <array>
#include <functional>
#include <gtest/gtest.h>

namespace oxlade {
namespace {

constexpr int panelLeft = 62;
constexpr int panelRight = 98;
constexpr int ground = 72; // the row on which the soles stand

struct Point {
    int x;
    int y;
};
using Region = std::function<bool(Point)>;

bool isDark(std::size_t frame, Point p) {
    static const auto pictures = [] {
        std::array<Bytes, wait_girl_frames.size()> decoded;
        std::ranges::transform(wait_girl_frames, decoded.begin(), decodedLevels);
        return decoded;
    }();
    const auto row = static_cast<std::size_t>(p.y), column = static_cast<std::size_t>(p.x);
    return pictures[frame][row * pictureWidth + column] == 0;
}

bool isBalloonSide(Point p) { return p.x < panelLeft; }
bool isFoot(Point p) { return p.x > panelLeft && p.x < 80 && p.y >= 64; }
bool isBalloonOrFoot(Point p) { return isBalloonSide(p) || isFoot(p); }

int countOf(const Region& counts) {
    int count = 0;
    for (int y = 0; y < pictureHeight; ++y)
        for (int x = 0; x < pictureWidth; ++x) count += counts({x, y});
    return count;
}

int darkIn(std::size_t frame, const Region& region) {
    return countOf([&](Point p) { return region(p) && isDark(frame, p); });
}

/// The points of `region` that two frames show differently.
int differencesIn(std::size_t a, std::size_t b, const Region& region) {
    return countOf([&](Point p) { return region(p) && isDark(a, p) != isDark(b, p); });
}

TEST(WaitGirlFrames, TheIdleFrameHasThePanelsEdgeBelowElevenBlankRowsAndAnEmptyLeftPart) {
    EXPECT_EQ(darkIn(0, [](Point p) { return p.y < 11 || isBalloonSide(p); }), 0);
    EXPECT_EQ(darkIn(0, [](Point p) { return p.y == 11; }), panelRight - panelLeft + 1);
}

TEST(WaitGirlFrames, DifferInBalloonAndFootAlone) {
    for (std::size_t frame = 1; frame < 6; ++frame)
        EXPECT_EQ(differencesIn(0, frame, [](Point p) { return !isBalloonOrFoot(p); }), 0) << frame;
    EXPECT_EQ(differencesIn(4, 5, [](Point p) { return !isFoot(p); }), 0);
}

TEST(WaitGirlFrames, TheFootIsRaisedInOddFramesAndDownInEvenOnes) {
    const auto toeOnGround = [](Point p) { return isFoot(p) && p.x < 74 && p.y == ground; };
    for (std::size_t frame = 0; frame < 6; ++frame) {
        EXPECT_EQ(differencesIn(frame % 2, frame, isFoot), 0) << frame;
        EXPECT_EQ(darkIn(frame, toeOnGround) > 0, frame % 2 == 0) << frame;
    }
    EXPECT_GE(differencesIn(0, 1, isFoot), 30) << "large enough to be seen";
}

TEST(WaitGirlFrames, TheFirstBubbleTouchesThePanelAtHeadHeightAndTheSecondIsLargerAndFree) {
    const auto near = [](Point p) {
        return p.x >= 50 && isBalloonSide(p) && p.y >= 13 && p.y < 38;
    };
    const auto free = [](Point p) { return p.x >= 30 && p.x < panelLeft - 3 && p.y < 38; };
    EXPECT_EQ(darkIn(1, near), darkIn(1, isBalloonSide));
    EXPECT_GT(darkIn(1, [](Point p) { return p.x == panelLeft - 1; }), 0);
    EXPECT_EQ(darkIn(2, free), darkIn(2, isBalloonSide));
    EXPECT_GT(darkIn(2, free), darkIn(1, near));
}

TEST(WaitGirlFrames, TheSecondLineIsAddedToTheBalloon) {
    const auto secondLine = [](Point p) { return p.x > 4 && p.x < 50 && p.y >= 20 && p.y < 34; };
    const auto rest = [&](Point p) { return isBalloonSide(p) && !secondLine(p); };
    EXPECT_EQ(darkIn(3, secondLine), 0);
    EXPECT_GT(darkIn(4, secondLine), 0);
    EXPECT_EQ(differencesIn(3, 4, rest), 0);
}

} // namespace
} // namespace oxlade
