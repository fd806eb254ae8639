#include "ui/sprites/frame_sequence.h"

#include <array>
#include <gtest/gtest.h>
#include <limits>
#include <vector>

namespace oxlade {
namespace {

std::uint64_t afterTick(std::uint64_t index) {
    FrameSequence sequence;
    sequence.showFrame(index);
    sequence.tick();
    return sequence.frameIndex();
}

/// What is shown now, and after each of so many ticks.
std::vector<std::uint64_t> shown(FrameSequence& sequence, int ticks) {
    std::vector<std::uint64_t> frames{sequence.frameIndex()};
    for (; ticks > 0; --ticks) {
        sequence.tick();
        frames.push_back(sequence.frameIndex());
    }
    return frames;
}

using Frames = std::vector<std::uint64_t>;

TEST(FrameSequence, IsIdleAtFirst) {
    const FrameSequence sequence;
    EXPECT_EQ(sequence.frameIndex(), 0U);
    EXPECT_FALSE(sequence.isRunning());
}

TEST(FrameSequence, StepsAreThreeTenthsOfASecond) { EXPECT_EQ(frameInterval, 300); }

TEST(FrameSequence, ATickLeadsFromEachFrameToItsNext) {
    constexpr std::array<std::uint64_t, 6> next{1, 2, 3, 4, 5, 4};
    for (std::uint64_t index = 0; index < next.size(); ++index)
        EXPECT_EQ(afterTick(index), next[index]) << "from " << index;
}

TEST(FrameSequence, ATickFromBeyondTheLastFrameLeadsToTheFullBalloon) {
    for (const std::uint64_t index :
         {std::uint64_t{6}, std::uint64_t{7}, std::uint64_t{1} << 32, std::uint64_t{1} << 63,
          std::numeric_limits<std::uint64_t>::max()})
        EXPECT_EQ(afterTick(index), 4U) << "from " << index;
}

TEST(FrameSequence, ThePreludePlaysOnceAndTheLastTwoFramesAlternate) {
    FrameSequence sequence;
    EXPECT_EQ(sequence.startWaiting(false), WaitingStart::animated);
    EXPECT_TRUE(sequence.isRunning());
    EXPECT_EQ(shown(sequence, 9), (Frames{1, 2, 3, 4, 5, 4, 5, 4, 5, 4}));
    EXPECT_TRUE(sequence.isRunning());
}

TEST(FrameSequence, AStartWhileItRunsChangesNothing) {
    FrameSequence sequence;
    sequence.startWaiting(false);
    sequence.tick();
    for (const bool reduceMotion : {false, true}) {
        EXPECT_EQ(sequence.startWaiting(reduceMotion), WaitingStart::unchanged);
        EXPECT_TRUE(sequence.isRunning());
        EXPECT_EQ(sequence.frameIndex(), 2U);
    }
    EXPECT_EQ(shown(sequence, 4), (Frames{2, 3, 4, 5, 4}));
    EXPECT_EQ(sequence.startWaiting(false), WaitingStart::unchanged) << "in the loop";
    EXPECT_EQ(shown(sequence, 2), (Frames{4, 5, 4}));
}

TEST(FrameSequence, WithReducedMotionTheFullBalloonStandsStill) {
    FrameSequence sequence;
    EXPECT_EQ(sequence.startWaiting(true), WaitingStart::still);
    EXPECT_EQ(sequence.frameIndex(), 4U);
    EXPECT_FALSE(sequence.isRunning());
    sequence.stopWaiting();
    EXPECT_EQ(sequence.frameIndex(), 0U);
    EXPECT_FALSE(sequence.isRunning());
}

TEST(FrameSequence, AStartFromTheStillPictureLooksAtTheSettingAgain) {
    FrameSequence sequence;
    sequence.startWaiting(true);
    EXPECT_EQ(sequence.startWaiting(true), WaitingStart::still);
    EXPECT_EQ(sequence.frameIndex(), 4U);
    EXPECT_EQ(sequence.startWaiting(false), WaitingStart::animated);
    EXPECT_TRUE(sequence.isRunning());
    EXPECT_EQ(shown(sequence, 4), (Frames{1, 2, 3, 4, 5}));
}

TEST(FrameSequence, AStopShowsTheIdleFrameFromEveryPointOfTheAnimation) {
    for (int ticks = 0; ticks < 8; ++ticks) {
        FrameSequence sequence;
        sequence.startWaiting(false);
        shown(sequence, ticks);
        sequence.stopWaiting();
        EXPECT_EQ(sequence.frameIndex(), 0U) << "after " << ticks << " ticks";
        EXPECT_FALSE(sequence.isRunning()) << "after " << ticks << " ticks";
    }
}

TEST(FrameSequence, AStopWithoutAStartStaysIdle) {
    FrameSequence sequence;
    sequence.stopWaiting();
    EXPECT_EQ(sequence.frameIndex(), 0U);
    EXPECT_FALSE(sequence.isRunning());
}

TEST(FrameSequence, AfterAStopANewStartBeginsWithThePrelude) {
    FrameSequence sequence;
    sequence.startWaiting(false);
    shown(sequence, 6);
    sequence.stopWaiting();
    EXPECT_EQ(sequence.startWaiting(false), WaitingStart::animated);
    EXPECT_EQ(shown(sequence, 5), (Frames{1, 2, 3, 4, 5, 4}));
}

} // namespace
} // namespace oxlade
