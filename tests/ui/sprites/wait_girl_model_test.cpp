// The sequence of the frames, and the place of the picture.
#include "ui/sprites/wait_girl_model.h"

#include <array>
#include <gtest/gtest.h>
#include <limits>
#include <ostream>
#include <vector>

namespace oxlade {

static std::ostream& operator<<(std::ostream& out, const PicturePlace& place) {
    const PictureRect& r = place.target;
    return out << "scale " << place.scale << " at " << r.x << ", " << r.y << ", " << r.width
               << " x " << r.height;
}

namespace {

using Frames = std::vector<std::uint64_t>;

/// The frame shown now, and after each of `ticks` ticks.
Frames shown(FrameSequence& sequence, int ticks) {
    Frames frames{sequence.frameIndex()};
    for (; ticks > 0; --ticks) {
        sequence.tick();
        frames.push_back(sequence.frameIndex());
    }
    return frames;
}

TEST(FrameSequence, AStartPlaysTheIntroOnceThenAlternatesTheLastTwoFrames) {
    FrameSequence sequence;
    EXPECT_EQ(sequence.frameIndex(), 0U);
    EXPECT_EQ(sequence.startWaiting(false), WaitingStart::animated);
    EXPECT_TRUE(sequence.isRunning());
    EXPECT_EQ(shown(sequence, 8), (Frames{1, 2, 3, 4, 5, 4, 5, 4, 5}));
}

TEST(FrameSequence, ATickBeyondTheLastFrameShowsFrameFour) {
    for (const std::uint64_t index :
         {std::uint64_t{6}, std::uint64_t{1} << 32, std::uint64_t{1} << 63,
          std::numeric_limits<std::uint64_t>::max()}) {
        FrameSequence sequence;
        sequence.showFrame(index);
        EXPECT_EQ(shown(sequence, 1), (Frames{index, 4}));
    }
}

TEST(FrameSequence, AStopShowsTheIdleFrameFromEveryState) {
    FrameSequence sequence;
    for (const bool reduceMotion : {false, true})
        for (int ticks = 0; ticks < 7; ++ticks) {
            const auto first = reduceMotion ? WaitingStart::still : WaitingStart::animated;
            EXPECT_EQ(sequence.startWaiting(reduceMotion), first) << "as after no stop";
            if (!reduceMotion) shown(sequence, ticks);
            sequence.stopWaiting();
            EXPECT_EQ(sequence.frameIndex(), 0U) << ticks;
            EXPECT_FALSE(sequence.isRunning()) << ticks;
        }
}

struct Placing {
    PictureRect bounds;
    PicturePlace place;
};

TEST(PictureGeometry, ScalesByWholeNumbersAndCentresOnWholePoints) {
    for (const auto& [bounds, place] : std::vector<Placing>{
             {{0, 0, 260, 184}, {2, {24, 16, 212, 152}}}, // the panel of the window
             // The scale grows when both sides of the screen allow it.
             {{0, 0, 232, 172}, {2, {10, 10, 212, 152}}},
             {{0, 0, 231, 172}, {1, {62, 48, 106, 76}}},
             {{0, 0, 232, 171}, {1, {63, 47, 106, 76}}},
             {{0, 0, 231.999, 1000}, {1, {62, 462, 106, 76}}},
             {{0, 0, 338, 248}, {3, {10, 10, 318, 228}}},
             {{0, 0, 1080, 780}, {10, {10, 10, 1060, 760}}},
             // Never below 1: the picture extends over the screen.
             {{0, 0, 126, 95}, {1, {10, 9, 106, 76}}},
             {{0, 0, 60, 40}, {1, {-23, -18, 106, 76}}},
             {{0, 0, -7, -4}, {1, {-57, -40, 106, 76}}},
             // Rounded down, after the origin is added.
             {{0, 0, 261, 185}, {2, {24, 16, 212, 152}}},
             {{0, 0, 105, 75}, {1, {-1, -1, 106, 76}}},
             {{100, 50, 260, 184}, {2, {124, 66, 212, 152}}},
             {{0.5, 0.25, 261, 185}, {2, {25, 16, 212, 152}}},
             {{-24.5, -16.5, 260, 184}, {2, {-1, -1, 212, 152}}}})
        EXPECT_EQ(placePicture(bounds), place) << bounds.width << " x " << bounds.height;
}

TEST(PictureGeometry, TheScreenIsTenPointsWithinTheView) {
    EXPECT_EQ(screenOf({3, 4, 260, 184}), (PictureRect{13, 14, 240, 164}));
    EXPECT_EQ(screenOf({0, 0, 15, 20}), (PictureRect{10, 10, -5, 0}));
}

} // namespace
} // namespace oxlade
