#include "tests/simulator/simulator_fixture.h"

#include <chrono>
#include <filesystem>

namespace oxlade::simulator::test {
namespace {

using testing::HasSubstr;
using testing::MatchesRegex;
using testing::StartsWith;

std::string everyReport(const std::string& word) {
    std::string text;
    for (int percent = 0; percent < 100; ++percent)
        text += word + " " + std::to_string(percent) + "%\r";
    return text + word + " 100%\n";
}

TEST_F(SimulatorTest, DescribesTheDevice) {
    auto run = check();
    EXPECT_EQ(run.readToEnd(), greeting);
    EXPECT_EQ(run.wait(), 0);
    EXPECT_FALSE(std::filesystem::exists(folder.path("flash")));
}

TEST_F(SimulatorTest, FlashesTheImageAndReportsEveryPercent) {
    auto run = flash();
    EXPECT_EQ(run.readToEnd(), greeting + everyReport("Erase") + everyReport("Write") +
                                   "Verifying... ok\nOS upload complete.\n");
    EXPECT_EQ(run.wait(), 0);
    EXPECT_TRUE(flashIsWhole());
}

// A run may take longer on a busy machine, never shorter.
TEST_F(SimulatorTest, TakesItsTimeAtTheSpeedAskedFor) {
    using namespace std::chrono_literals;
    const auto lasts = [this](const std::vector<std::string>& arguments, const char* behaviour) {
        const auto started = std::chrono::steady_clock::now();
        Options options;
        options.behaviour = behaviour;
        HelperRun run(folder, arguments, options);
        run.readToEnd();
        return std::chrono::steady_clock::now() - started;
    };
    EXPECT_GE(lasts({"--info"}, ""), 800ms);
    EXPECT_GE(lasts({"--info"}, "speed=0.5"), 1600ms);
    EXPECT_GE(lasts({"--firmware", imagePath, "--yes"}, "speed=8"), 500ms);
}

TEST_F(SimulatorTest, PutsOnlyItsNoticeOnStandardError) {
    Options options = with("step=100");
    options.joined = false;
    EXPECT_EQ(flash(options).readToEnd(),
              "Searching for the MPC4000...\nMPC4000 found in OS Loader mode.\n"
              "Flash geometry: 64 sectors of 65536 bytes (simulated MPC4000)\n"
              "Erase 0%\rErase 100%\nWrite 0%\rWrite 100%\n"
              "Verifying... ok\nOS upload complete.\n");
}

TEST_F(SimulatorTest, TakesYesBeforeTheImageToo) {
    HelperRun run(folder, {"--yes", "--firmware", imagePath});
    run.readToEnd();
    EXPECT_EQ(run.wait(), 0);
    EXPECT_TRUE(flashIsWhole());
}

TEST_F(SimulatorTest, FlashesAFileWithAnyBytesInItsName) {
    imagePath = folder.path("--yes \xFF\xFE,%\n\"'.bin");
    writeFile(imagePath, image);
    auto run = flash();
    run.readToEnd();
    EXPECT_EQ(run.wait(), 0);
    EXPECT_TRUE(flashIsWhole());
}

class BadUsage : public SimulatorTest,
                 public testing::WithParamInterface<std::vector<std::string>> {};

TEST_P(BadUsage, IsRefusedBeforeAnythingIsTouched) {
    HelperRun run(folder, GetParam());
    EXPECT_THAT(run.readToEnd(), StartsWith("oxlade: "));
    EXPECT_EQ(run.wait(), 64);
    EXPECT_FALSE(std::filesystem::exists(folder.path("flash")));
}

using Words = std::vector<std::string>;
INSTANTIATE_TEST_SUITE_P(Simulator, BadUsage,
                         testing::Values(Words{}, Words{"--inf"}, Words{"--info", "--yes"},
                                         Words{"--yes"}, Words{"--firmware"},
                                         Words{"--firmware", "/dev/null"},
                                         Words{"--firmware", "/dev/null", "yes"},
                                         Words{"--firmware", "/dev/null", "--yes", "--yes"}));

TEST_F(SimulatorTest, NamesAnUnknownWordOfItsBehaviour) {
    auto run = flash(with("strct"));
    EXPECT_EQ(run.readToEnd(), "oxlade: \"strct\": there is no such word\n");
    EXPECT_EQ(run.wait(), 64);
    EXPECT_FALSE(std::filesystem::exists(folder.path("flash")));
}

TEST_F(SimulatorTest, LeavesTheFlashAloneWhenTheImageCannotBeRead) {
    for (const std::string& path : {folder.path("missing"), folder.path(""), std::string()}) {
        HelperRun run(folder, {"--firmware", path, "--yes"});
        EXPECT_EQ(run.readToEnd(), "Cannot read the OS image: " + path + "\n");
        EXPECT_EQ(run.wait(), 66);
        EXPECT_FALSE(std::filesystem::exists(folder.path("flash")));
    }
}

TEST_F(SimulatorTest, FlashesAnEmptyFile) {
    image.clear();
    writeFile(imagePath, "");
    auto run = flash();
    run.readToEnd();
    EXPECT_EQ(run.wait(), 0);
    EXPECT_TRUE(flashIsWhole());
}

TEST_F(SimulatorTest, ReplacesABiggerFlash) {
    writeFile(folder.path("flash"), std::string(1000000, 'o'));
    auto run = flash();
    run.readToEnd();
    EXPECT_EQ(run.wait(), 0);
    EXPECT_TRUE(flashIsWhole());
}

TEST_F(SimulatorTest, TracesHowItWasStartedAndHowItEnded) {
    Options options;
    options.ignoreBrokenPipe = true;
    options.ownSession = true;
    options.extraDescriptor = 9;
    HelperRun run(folder, {"--firmware", "/a b,%\xC3\xA9\n", "", "--yes"}, options);
    run.readToEnd();
    EXPECT_EQ(run.wait(), 64);
    const std::string pid = " pid=" + std::to_string(run.pid());
    EXPECT_THAT(bytesOf(folder.path("trace")),
                MatchesRegex("start" + pid +
                             " argc=4 argv=--firmware,/a%20b%2C%25%C3%A9%0A,,--yes fds=0,1,2,9"
                             " sigpipe=ignored session=own cwd=/[^ ]*\ndone 64" +
                             pid + "\n"));
}

TEST_F(SimulatorTest, TracesAPlainStartAsOne) {
    auto run = check();
    run.readToEnd();
    run.wait();
    EXPECT_THAT(bytesOf(folder.path("trace")),
                HasSubstr(" argc=1 argv=--info fds=0,1,2 sigpipe=default session=inherited cwd="));
    EXPECT_TRUE(run.noted("done 0"));
}

} // namespace
} // namespace oxlade::simulator::test
