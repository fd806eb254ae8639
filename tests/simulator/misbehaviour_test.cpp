#include "tests/simulator/simulator_fixture.h"

#include <csignal>
#include <filesystem>

namespace oxlade::simulator::test {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

TEST_F(SimulatorTest, FindsNoDevice) {
    auto checking = check(with("no-device"));
    EXPECT_EQ(checking.readToEnd(),
              "Searching for the MPC4000...\n"
              "Note: this is the Oxlade simulator. No real sampler is touched.\n"
              "Cannot open the MPC4000. Is it connected, and in its OS Loader mode?\n");
    EXPECT_EQ(checking.wait(), 1);
    auto flashing = flash(with("no-device,exit=9"));
    EXPECT_THAT(flashing.readToEnd(), HasSubstr("Cannot open the MPC4000."));
    EXPECT_EQ(flashing.wait(), 9);
    EXPECT_FALSE(std::filesystem::exists(folder.path("flash")));
}

TEST_F(SimulatorTest, DescribesTheGeometryAsAskedFor) {
    EXPECT_THAT(check(with("no-geometry")).readToEnd(), Not(HasSubstr("Flash geometry:")));
    EXPECT_THAT(check(with("geometry=8 sectors\\, or so")).readToEnd(),
                EndsWith("\nFlash geometry: 8 sectors, or so\n"));
}

TEST_F(SimulatorTest, FailsWhileErasing) {
    auto run = flash(with("step=20,fail-erase=40"));
    EXPECT_EQ(run.readToEnd(), greeting + std::string("Erase 0%\rErase 20%\rErase 40%\r"
                                                      "Error: the flash cannot be erased.\n"));
    EXPECT_EQ(run.wait(), 1);
    EXPECT_EQ(flashBytes(), std::string(flashExtent * 40 / 100, '\xFF'));
    EXPECT_EQ(flashState(), "erasing\n");
}

TEST_F(SimulatorTest, FailsWhileWritingWithTheStatusAskedFor) {
    auto run = flash(with("step=50,fail-write=60,exit=3"));
    EXPECT_EQ(run.readToEnd(),
              greeting + std::string("Erase 0%\rErase 50%\rErase 100%\nWrite 0%\rWrite 50%\r"
                                     "Error: the flash cannot be written.\n"));
    EXPECT_EQ(run.wait(), 3);
    EXPECT_EQ(flashBytes(), partOfImage(60));
    EXPECT_EQ(flashState(), "writing\n");
}

TEST_F(SimulatorTest, EndsAGoodRunWithAnyStatus) {
    for (const int status : {0, 1, 127, 255}) {
        auto run = flash(with("exit=" + std::to_string(status)));
        EXPECT_THAT(run.readToEnd(), EndsWith("OS upload complete.\n"));
        EXPECT_EQ(run.wait(), status);
        EXPECT_TRUE(run.noted("done " + std::to_string(status)));
    }
    EXPECT_TRUE(flashIsWhole());
}

TEST_F(SimulatorTest, DiesByASignalAtTheEnd) {
    auto run = check(with("signal=15"));
    EXPECT_EQ(run.readToEnd(), greeting);
    EXPECT_EQ(run.wait(), -SIGTERM);
    EXPECT_TRUE(run.noted("signal 15"));
}

TEST_F(SimulatorTest, DiesByASignalHalfWay) {
    Options options = with("step=100,signal=13@write:30");
    options.ignoreBrokenPipe = true;
    auto run = flash(options);
    EXPECT_EQ(run.readToEnd(), greeting + std::string("Erase 0%\rErase 100%\nWrite 0%\r"));
    EXPECT_EQ(run.wait(), -SIGPIPE);
    EXPECT_EQ(flashBytes(), partOfImage(30));
}

TEST_F(SimulatorTest, HangsUntilItIsKilled) {
    auto run = flash(with("hang@write:60"));
    ASSERT_TRUE(eventually([&] { return run.noted("waiting write:60"); }));
    EXPECT_TRUE(run.isAlive());
    EXPECT_EQ(flashBytes(), partOfImage(60));
    EXPECT_THAT(run.readAvailable(), EndsWith("Write 60%\r"));
    ::kill(run.pid(), SIGKILL);
    EXPECT_EQ(run.wait(), -SIGKILL);
    EXPECT_EQ(flashState(), "writing\n");
}

TEST_F(SimulatorTest, HangsInACheck) {
    for (const char* word : {"hang", "hang@info"}) {
        auto run = check(with(word));
        EXPECT_TRUE(eventually([&] {
            return run.noted("waiting first-line") || run.noted("waiting info");
        })) << word;
        EXPECT_TRUE(run.isAlive());
    }
}

class GateTest : public SimulatorTest, public testing::WithParamInterface<const char*> {};

TEST_P(GateTest, HoldsTheRunUpUntilItIsOpened) {
    auto run = flash(with(gateAt(GetParam())));
    EXPECT_FALSE(run.noted("done 0"));
    ASSERT_TRUE(eventually([&] { return std::filesystem::exists(folder.path("gate.waiting")); }));
    ASSERT_TRUE(eventually([&] { return run.noted(std::string("waiting ") + GetParam()); }));
    EXPECT_TRUE(run.isAlive());
    EXPECT_FALSE(run.noted("done 0"));
    openGate();
    run.readToEnd();
    EXPECT_EQ(run.wait(), 0);
    EXPECT_TRUE(flashIsWhole());
}

INSTANTIATE_TEST_SUITE_P(Simulator, GateTest,
                         testing::Values("first-line", "erase:0", "erase:50", "between", "write:0",
                                         "write:99", "write:100", "end"));

TEST_F(SimulatorTest, ShowsItsProgressUpToTheGate) {
    auto run = flash(with("step=50," + gateAt("erase:50")));
    ASSERT_TRUE(eventually([&] { return run.noted("waiting erase:50"); }));
    EXPECT_EQ(run.readAvailable(), greeting + std::string("Erase 0%\rErase 50%\r"));
    EXPECT_EQ(flashBytes(), std::string(flashExtent / 2, '\xFF'));
    openGate();
    run.readToEnd();
    EXPECT_EQ(run.wait(), 0);
}

TEST_F(SimulatorTest, ComplainsOfAGateThatItCannotShow) {
    auto run = check(with("gate=/nowhere/at/all@info"));
    EXPECT_THAT(run.readToEnd(), EndsWith("Cannot create /nowhere/at/all.waiting\n"));
    EXPECT_EQ(run.wait(), 73);
}

class ClosedPipe : public SimulatorTest {
  protected:
    // Flashes with nobody reading from the middle of the writing on.
    int flashUnread(Options options, const std::string& words) {
        options.behaviour = "speed=max," + gateAt("write:50") + words;
        auto run = flash(options);
        EXPECT_TRUE(eventually([&] { return run.noted("waiting write:50"); }));
        run.closeOutput();
        openGate();
        return run.wait();
    }
    std::string trace() const { return bytesOf(folder.path("trace")); }
};

TEST_F(ClosedPipe, EndsAStrictRunInTheMiddleOfTheFlash) {
    Options options;
    options.ignoreBrokenPipe = true;
    EXPECT_EQ(flashUnread(options, ",strict"), 74);
    EXPECT_THAT(trace(), HasSubstr("\nwrite-failed 32 pid="));
    EXPECT_THAT(trace(), HasSubstr("\ndone 74 pid="));
    EXPECT_EQ(flashBytes(), partOfImage(51));
    EXPECT_EQ(flashState(), "writing\n");
}

TEST_F(ClosedPipe, IsNoMatterToAnOrdinaryRunThatIgnoresTheSignal) {
    Options options;
    options.ignoreBrokenPipe = true;
    EXPECT_EQ(flashUnread(options, ""), 0);
    EXPECT_TRUE(flashIsWhole());
}

TEST_F(ClosedPipe, KillsARunThatDoesNotIgnoreTheSignal) {
    EXPECT_EQ(flashUnread({}, ""), -SIGPIPE);
    EXPECT_FALSE(flashIsWhole());
}

} // namespace
} // namespace oxlade::simulator::test
