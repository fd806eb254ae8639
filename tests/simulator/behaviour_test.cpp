#include "simulator/behaviour.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdexcept>

namespace oxlade::simulator {
namespace {

TEST(Behaviour, IsAllRightWhenNothingIsAskedFor) {
    for (const char* text : {"", ",", ",,"}) {
        const Behaviour behaviour = parseBehaviour(text);
        EXPECT_EQ(behaviour.pace, 1.0);
        EXPECT_EQ(behaviour.step, 1U);
        EXPECT_EQ(behaviour.geometry, "64 sectors of 65536 bytes (simulated MPC4000)");
        EXPECT_FALSE(behaviour.noDevice || behaviour.noGeometry || behaviour.strict);
        EXPECT_FALSE(behaviour.noLineEnds || behaviour.oneWrite || behaviour.noFlush);
        EXPECT_FALSE(behaviour.failErase || behaviour.failWrite || behaviour.exitStatus);
        EXPECT_FALSE(behaviour.signal || behaviour.hang);
        EXPECT_TRUE(behaviour.gates.empty());
        EXPECT_LT(behaviour.childSeconds, 0);
    }
}

TEST(Behaviour, TakesEveryFlag) {
    const Behaviour behaviour =
        parseBehaviour("no-device,no-geometry,strict,no-line-ends,progress=one-write,no-flush,"
                       "invalid-utf8,nul");
    EXPECT_TRUE(behaviour.noDevice);
    EXPECT_TRUE(behaviour.noGeometry);
    EXPECT_TRUE(behaviour.strict);
    EXPECT_TRUE(behaviour.noLineEnds);
    EXPECT_TRUE(behaviour.oneWrite);
    EXPECT_TRUE(behaviour.noFlush);
    EXPECT_TRUE(behaviour.invalidUtf8);
    EXPECT_TRUE(behaviour.nul);
}

TEST(Behaviour, TakesEveryAmount) {
    const Behaviour behaviour =
        parseBehaviour("long-line=1000000,flood-bytes=2,flood=3,step=10,"
                       "nul-bytes=4,nul-line=5,fail-erase=0,fail-write=100,exit=255");
    EXPECT_EQ(behaviour.longLine, 1000000U);
    EXPECT_EQ(behaviour.floodBytes, 2U);
    EXPECT_EQ(behaviour.nulBytes, 4U);
    EXPECT_EQ(behaviour.nulLine, 5U);
    EXPECT_EQ(behaviour.flood, 3U);
    EXPECT_EQ(behaviour.step, 10U);
    EXPECT_EQ(behaviour.failErase, 0U);
    EXPECT_EQ(behaviour.failWrite, 100U);
    EXPECT_EQ(behaviour.exitStatus, 255);
}

TEST(Behaviour, TurnsASpeedIntoTheLengthOfAPause) {
    EXPECT_EQ(parseBehaviour("speed=20").pace, 0.05);
    EXPECT_EQ(parseBehaviour("speed=0.5").pace, 2.0);
    EXPECT_EQ(parseBehaviour("speed=max").pace, 0.0);
}

TEST(Behaviour, PlacesASignalAHangAndEachGate) {
    const Behaviour behaviour =
        parseBehaviour("signal=9@write:60,hang@between,gate=/a@b@erase:50,gate=c@first-line");
    ASSERT_TRUE(behaviour.signal);
    EXPECT_EQ(behaviour.signal->number, 9);
    EXPECT_EQ(behaviour.signal->at, (Place{Stage::Write, 60}));
    EXPECT_EQ(behaviour.hang, (Place{Stage::Between, 0}));
    ASSERT_EQ(behaviour.gates.size(), 2U);
    EXPECT_EQ(behaviour.gates[0].path, "/a@b");
    EXPECT_EQ(behaviour.gates[0].at, (Place{Stage::Erase, 50}));
    EXPECT_EQ(behaviour.gates[1].at, (Place{Stage::FirstLine, 0}));
}

TEST(Behaviour, HasAPlaceForASignalAndAHangThatNameNone) {
    EXPECT_EQ(parseBehaviour("signal=15").signal->at, (Place{Stage::End, 0}));
    EXPECT_EQ(parseBehaviour("hang").hang, (Place{Stage::FirstLine, 0}));
}

TEST(Behaviour, CutsLinesAtOnePlaceOrEverywhere) {
    EXPECT_EQ(parseBehaviour("split=7").splitAt, 7U);
    EXPECT_FALSE(parseBehaviour("split=7").splitEverywhere);
    EXPECT_TRUE(parseBehaviour("split=all").splitEverywhere);
}

TEST(Behaviour, GivesTheHelperAChildThatIsSilentOrTalks) {
    EXPECT_EQ(parseBehaviour("grandchild=0.5").childSeconds, 0.5);
    EXPECT_FALSE(parseBehaviour("grandchild=0.5").childTalks);
    EXPECT_EQ(parseBehaviour("chatter=3").childSeconds, 3.0);
    EXPECT_TRUE(parseBehaviour("chatter=3").childTalks);
}

TEST(Behaviour, KeepsAnEscapedCommaWithinAWord) {
    EXPECT_EQ(parseBehaviour("geometry=8 sectors\\, 2 banks\\\\=@,strict").geometry,
              "8 sectors, 2 banks\\=@");
    EXPECT_TRUE(parseBehaviour("geometry=a\\,b,strict").strict);
}

class RefusedWord : public testing::TestWithParam<const char*> {};

TEST_P(RefusedWord, IsNamedInTheReason) {
    try {
        parseBehaviour(std::string("speed=max,") + GetParam() + ",strict");
        FAIL() << "nothing was wrong with " << GetParam();
    } catch (const std::invalid_argument& error) {
        EXPECT_THAT(error.what(), testing::HasSubstr('"' + std::string(GetParam()) + '"'));
    }
}

INSTANTIATE_TEST_SUITE_P(
    Behaviour, RefusedWord,
    testing::Values("sped=1", "Strict", " strict", "strict=1", "strict@end", "exit",
                    "exit=", "exit=256", "exit=-1", "exit=1x", "exit@end", "fail-write=101",
                    "fail-erase=", "speed=0", "speed=fast", "speed=nan", "step=0", "step=101",
                    "signal=0", "signal=65", "signal=19", "signal=9@", "signal=9@erase:101",
                    "signal=9@write", "signal=9@write:5%", "hang=write:5", "hang@",
                    "hang@somewhere", "gate=/a", "gate=@end", "gate", "split=0", "split=none",
                    "flood=0", "flood-bytes=-1", "long-line=99999999999999999999", "grandchild=-1",
                    "chatter=x", "progress=two-writes", "geometry="));

TEST(Place, HasANameThatReadsAsTheSamePlace) {
    for (const char* name :
         {"first-line", "info", "erase:0", "erase:100", "between", "write:7", "end"}) {
        const auto place = parsePlace(name);
        ASSERT_TRUE(place) << name;
        EXPECT_EQ(nameOf(*place), name);
    }
}

} // namespace
} // namespace oxlade::simulator
