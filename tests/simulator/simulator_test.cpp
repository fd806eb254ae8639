// What other tests rely on: the output, the exit status and the flash of each run.
#include "tests/simulator/simulator_process.h"

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <set>
#include <string_view>

namespace oxlade::simulator::test {
namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

const std::string opening = "Searching for the MPC4000...\n"
                            "Note: this is the Oxlade simulator. No real sampler is touched.\n";
const std::string greeting = opening +
                             "MPC4000 found in OS Loader mode.\n"
                             "Flash geometry: 64 sectors of 65536 bytes (simulated MPC4000)\n";
const std::string controls =
    "zero \0 bell \a escape \x1B[31m backspace \b\n"
    "override \xE2\x80\xAEgnihsalf\xE2\x80\xAC isolate \xE2\x81\xA7now\xE2\x81\xA9\n"s;
const std::string sentence = "The sampler is well and has nothing to report at this moment.\n";
const std::string talk = "The helper's child is still here.\n";

/// The reports from 0 to `last` per cent.
std::string reports(const std::string& word, int last) {
    std::string text;
    for (int percent = 0; percent <= last; ++percent)
        text += word + " " + std::to_string(percent) + (percent == 100 ? "%\n" : "%\r");
    return text;
}

std::string repeated(const std::string& pattern, std::size_t bytes) {
    std::string text;
    while (text.size() < bytes) text += pattern;
    return text.substr(0, bytes) + "\n";
}

std::string flood(int lines) {
    std::string text;
    for (int line = 0; line < lines; ++line)
        text += "Erase " + std::to_string(100 * line / lines) + "%\n";
    return text;
}

class SimulatorTest : public testing::Test {
  protected:
    using BrokenPipe = SimulatorProcess::BrokenPipe;

    SimulatorTest() {
        std::string name = (fs::temp_directory_path() / "oxlade-sim-XXXXXX").string();
        folder = ::mkdtemp(name.data());
        for (unsigned at = 0; at < 200000; ++at)
            image += static_cast<char>((at * 2654435761U) >> 24U);
        writeFile(folder / "image.bin", image);
    }
    ~SimulatorTest() override { fs::remove_all(folder); }

    Arguments flash() const { return {"--firmware", (folder / "image.bin").string(), "--yes"}; }
    std::string gateAt(const std::string& place) const {
        return "gate=" + (folder / "gate").string() + "@" + place;
    }
    void openGate() const { writeFile(folder / "gate", ""); }

    std::string held() const { return contentsOf(folder / "flash"); }
    std::string state() const { return contentsOf(folder / "flash.state"); }
    bool isWhole() const {
        return held() == image && state() == "whole " + std::to_string(image.size()) + "\n";
    }
    /// The flash when that much of the image is written; it has four sectors.
    std::string partOfImage(std::size_t percent) const {
        const std::size_t bytes = image.size() * percent / 100;
        return image.substr(0, bytes) + std::string(262144 - bytes, '\xFF');
    }
    pid_t child() const {
        const std::string trace = contentsOf(folder / "trace");
        const auto at = trace.find("\nchild ");
        return at == std::string::npos ? -1 : std::stoi(trace.substr(at + 7));
    }

    fs::path folder;
    std::string image;
    const Arguments check{"--info"};
};

const std::string flashed = greeting + reports("Erase", 100) + reports("Write", 100) +
                            "Verifying... ok\nOS upload complete.\n";

TEST_F(SimulatorTest, EachWordOfACheckHasItsOutputAndStatus) {
    const std::string noDevice =
        "Cannot open the MPC4000. Is it connected, and in its OS Loader mode?\n";
    std::string line = controls;
    std::erase(line, '\n');
    struct Row {
        std::string words;
        std::string output;
        int status = 0;
    };
    for (const auto& [words, output, status] : std::vector<Row>{
             {"", greeting},
             {",exit=255", greeting, 255},
             {"no-device", opening + noDevice, 1},
             {"no-device,exit=9", opening + noDevice, 9},
             {"signal=15", greeting, -SIGTERM},
             {"signal=9@first-line", "Searching for the MPC4000...\n", -SIGKILL},
             {"invalid-utf8", greeting + "Sampler f\xFCr Ger\xE4te\ncut short \xE2\x82\nnever seen "
                                         "\xC0\xFE\xFF\n"},
             {"nul", greeting + controls},
             {"nul-bytes=200000", greeting + repeated(controls, 199999)},
             {"nul-line=200000", greeting + repeated(line, 200000)},
             {"long-line=100003", greeting + repeated("abcdefghijklmnopqrstuvwxyz", 100003)},
             {"flood-bytes=1", greeting + "\n"},
             {"flood-bytes=200000", greeting + repeated(sentence, 199999)},
             {"flood=50000", greeting + flood(50000)},
             {"flood=3,flood-bytes=2,long-line=1,nul,invalid-utf8",
              greeting + "Sampler f\xFCr Ger\xE4te\ncut short \xE2\x82\nnever seen \xC0\xFE\xFF\n" +
                  controls + "a\nT\n" + flood(3)},
             {"gate=/no\\,folder/x@info", greeting + "Cannot create /no,folder/x.waiting\n", 73},
             {"grandchild=0.01", greeting}}) {
        SimulatorProcess run(folder, "speed=max," + words, check);
        EXPECT_EQ(run.readToEnd(), output) << words;
        EXPECT_EQ(run.wait(), status) << words;
    }
    EXPECT_FALSE(fs::exists(folder / "flash"));
}

TEST_F(SimulatorTest, AFlashReportsEveryPercentAndLeavesTheImage) {
    for (const std::string& before : {""s, "old"s, std::string(1000000, 'o')}) {
        writeFile(folder / "flash", before);
        SimulatorProcess run(folder, "speed=max,exit=3", {"--yes", flash()[0], flash()[1]});
        EXPECT_EQ(run.readToEnd(), flashed);
        EXPECT_EQ(run.wait(), 3);
        EXPECT_TRUE(isWhole());
        EXPECT_TRUE(run.hasNoted("done 3"));
    }
}

TEST_F(SimulatorTest, AFlashThatFailsOrIsKilledLeavesWhatWasWritten) {
    SimulatorProcess failing(folder, "speed=max,fail-write=60", flash());
    EXPECT_EQ(failing.readToEnd(), greeting + reports("Erase", 100) + reports("Write", 60) +
                                       "Error: the flash cannot be written.\n");
    EXPECT_EQ(failing.wait(), 1);
    EXPECT_EQ(held(), partOfImage(60));
    EXPECT_EQ(state(), "writing\n");
    SimulatorProcess killed(folder, "speed=max,signal=13@erase:50", flash(), BrokenPipe::isIgnored);
    EXPECT_EQ(killed.readToEnd(), greeting + reports("Erase", 50));
    EXPECT_EQ(killed.wait(), -SIGPIPE);
    EXPECT_TRUE(killed.hasNoted("signal 13"));
    EXPECT_EQ(held(), std::string(131072, '\xFF') + partOfImage(60).substr(131072));
    EXPECT_EQ(state(), "erasing\n");
}

TEST_F(SimulatorTest, AFlashIsVerified) {
    SimulatorProcess run(folder, "speed=max," + gateAt("write:100"), flash());
    ASSERT_TRUE(eventually([&] { return run.hasNoted("waiting write:100"); }));
    writeFile(folder / "flash", image.substr(1));
    openGate();
    EXPECT_THAT(run.readToEnd(), EndsWith("Verifying... failed: the flash is not the image.\n"));
    EXPECT_EQ(run.wait(), 1);
    EXPECT_EQ(state(), "writing\n");
}

TEST_F(SimulatorTest, PausesLastAsLongAsTheSpeedSays) {
    for (const auto& [words, least] : std::map<std::string, int>{{"", 800}, {"speed=0.5", 1600}}) {
        const auto start = std::chrono::steady_clock::now();
        SimulatorProcess(folder, words, check).readToEnd();
        EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(least));
    }
}

TEST_F(SimulatorTest, AGateStopsTheRunUntilItIsOpened) {
    for (const std::string place : {"first-line", "erase:0", "between", "write:99", "end"}) {
        SimulatorProcess run(folder, "speed=max," + gateAt(place), flash());
        ASSERT_TRUE(eventually([&] { return run.hasNoted("waiting " + place); })) << place;
        EXPECT_TRUE(fs::remove(folder / "gate.waiting"));
        EXPECT_FALSE(run.hasNoted("done 0")) << place;
        EXPECT_EQ(isWhole(), place == "end");
        openGate();
        EXPECT_EQ(run.readToEnd(), flashed);
        EXPECT_EQ(run.wait(), 0);
        EXPECT_TRUE(isWhole()) << place;
        fs::remove_all(folder / "gate");
        fs::remove(folder / "flash");
    }
}

TEST_F(SimulatorTest, AHangLastsUntilTheRunIsKilled) {
    for (const auto& [words, place] :
         std::map<std::string, std::string>{{"hang", "first-line"}, {"hang@info", "info"}}) {
        SimulatorProcess run(folder, "speed=max," + words, check);
        ASSERT_TRUE(eventually([&, place = place] { return run.hasNoted("waiting " + place); }));
        run.kill();
        EXPECT_THAT(run.readToEnd(), StartsWith("Searching for the MPC4000...\n"));
        EXPECT_EQ(run.wait(), -SIGKILL);
    }
}

TEST_F(SimulatorTest, SplitLinesComeInTwoReads) {
    const auto reads = [this](const std::string& words) {
        SimulatorProcess run(folder, "speed=max," + words, check);
        std::vector<std::string> chunks;
        for (auto chunk = run.readOnce(); !chunk.empty(); chunk = run.readOnce())
            chunks.push_back(chunk);
        return chunks;
    };
    EXPECT_EQ(reads("split=7"), (std::vector<std::string>{
                                    "Searchi", "ng for the MPC4000...\n", "Note: t",
                                    "his is the Oxlade simulator. No real sampler is touched.\n",
                                    "MPC4000", " found in OS Loader mode.\n", "Flash g",
                                    "eometry: 64 sectors of 65536 bytes (simulated MPC4000)\n"}));
    const auto everywhere = reads("split=all");
    ASSERT_EQ(everywhere.size(), 8U);
    for (const std::size_t line : {0U, 1U, 2U, 3U})
        EXPECT_EQ(everywhere[2 * line].size(), line + 1);
}

TEST_F(SimulatorTest, AFailedWriteOfOutputIsIgnoredOrEndsAStrictRun) {
    const auto statusOf = [this](const std::string& words, BrokenPipe brokenPipe) {
        SimulatorProcess run(folder, "speed=max," + gateAt("write:50") + words, flash(),
                             brokenPipe);
        EXPECT_TRUE(eventually([&] { return run.hasNoted("waiting write:50"); }));
        run.closeOutput();
        openGate();
        const int status = run.wait();
        EXPECT_EQ(run.hasNoted("write-failed 32"), status == 74);
        fs::remove(folder / "gate");
        return status;
    };
    EXPECT_EQ(statusOf("", BrokenPipe::kills), -SIGPIPE);
    EXPECT_EQ(statusOf(",strict", BrokenPipe::isIgnored), 74);
    EXPECT_EQ(held(), partOfImage(51));
    EXPECT_EQ(statusOf("", BrokenPipe::isIgnored), 0);
    EXPECT_TRUE(isWhole());
}

TEST_F(SimulatorTest, AChildKeepsTheOutputOpenAfterTheEndInSilenceOrTalking) {
    for (const std::string words : {"grandchild=600", "chatter=600"}) {
        fs::remove(folder / "trace");
        SimulatorProcess run(folder, "speed=max,signal=9@write:50," + words, flash());
        EXPECT_EQ(run.wait(), -SIGKILL);
        ASSERT_GT(child(), 0);
        EXPECT_EQ(::kill(child(), 0), 0) << words;
        EXPECT_THAT(run.readOnce(), HasSubstr("Searching for the MPC4000...\n"));
        for (int line = 0; line < (words == "chatter=600" ? 3 : 0); ++line)
            EXPECT_THAT(run.readOnce(), HasSubstr(talk));
        ::kill(child(), SIGKILL);
        const std::string rest = run.readToEnd();
        EXPECT_TRUE(words == "chatter=600" || rest.empty()) << rest;
    }
}

TEST_F(SimulatorTest, ABadWordIsNamedAndABadCommandLineRefused) {
    for (const std::string word : {"sped=1",
                                   "Strict",
                                   " strict",
                                   "strict=1",
                                   "exit",
                                   "exit=",
                                   "exit=256",
                                   "exit=1x",
                                   "exit@end",
                                   "fail-write=101",
                                   "speed=0",
                                   "speed=nan",
                                   "speed=1.",
                                   "speed=1.5x",
                                   "signal=0",
                                   "signal=65",
                                   "signal=19",
                                   "signal=9@",
                                   "signal=9@erase:101",
                                   "signal=9@write",
                                   "hang=write:5",
                                   "hang@somewhere",
                                   "gate=/a",
                                   "gate=@end",
                                   "split=0",
                                   "flood=0",
                                   "flood-bytes=-1",
                                   "long-line=99999999999999999999",
                                   "grandchild=-1",
                                   "chatter=x",
                                   "step=1"}) {
        SimulatorProcess run(folder, "speed=max," + word + ",nul", flash());
        EXPECT_THAT(run.readToEnd(), StartsWith("oxlade: \"" + word + "\": "));
        EXPECT_EQ(run.wait(), 64) << word;
    }
    for (const auto& arguments :
         std::vector<Arguments>{{},
                                {"--inf"},
                                {"--info", "--yes"},
                                {"--yes"},
                                {"--firmware"},
                                {"--firmware", "/dev/null"},
                                {"--firmware", "/dev/null", "--yes", "--yes"}}) {
        SimulatorProcess run(folder, "speed=max", arguments);
        EXPECT_THAT(run.readToEnd(), StartsWith("oxlade: "));
        EXPECT_EQ(run.wait(), 64);
    }
    for (const std::string& path : {(folder / "missing").string(), folder.string(), ""s}) {
        SimulatorProcess run(folder, "speed=max", {"--firmware", path, "--yes"});
        EXPECT_EQ(run.readToEnd(), "Cannot read the OS image: " + path + "\n");
        EXPECT_EQ(run.wait(), 66);
    }
    EXPECT_FALSE(fs::exists(folder / "flash"));
}

TEST_F(SimulatorTest, TheTraceTellsHowTheRunWasStarted) {
    SimulatorProcess run(folder, "", {"/a b,%\xC3\xA9\n", "", "--yes"}, BrokenPipe::isIgnored);
    run.readToEnd();
    EXPECT_EQ(run.wait(), 64);
    const std::string pid = " pid=" + std::to_string(run.pid());
    EXPECT_THAT(contentsOf(folder / "trace"),
                testing::MatchesRegex("start" + pid +
                                      " argc=3 argv=/a%20b%2C%25%C3%A9%0A,,--yes fds=0,1,2[0-9,]*"
                                      " sigpipe=ignored session=inherited cwd=/[^ ]*\ndone 64" +
                                      pid + "\n"));
}

TEST_F(SimulatorTest, AGeneratedImagePassesForAnImageAndSaysThatItIsNone) {
    const std::string program = OXLADE_MAKE_IMAGE " ";
    const fs::path file = folder / "generated";
    ASSERT_EQ(std::system((program + file.string()).c_str()), 0);
    const std::string generated = contentsOf(file);
    EXPECT_EQ(generated.size(), 3145728U);
    EXPECT_EQ(generated.substr(32, 24), "MPC4000 Operating System");
    EXPECT_EQ(generated.substr(56, 45), "\nThis file is for the Oxlade simulator only. ");
    std::set<std::string> sectors;
    for (std::size_t at = 0; at < generated.size(); at += 65536) {
        sectors.insert(generated.substr(at + 1024, 1024));
        EXPECT_THAT(generated.substr(at, 200), HasSubstr("never be written to a real sampler"));
    }
    EXPECT_EQ(sectors.size(), 48U) << "no two sectors are equal";
    EXPECT_NE(std::system((program + "/nowhere/at/all 2>/dev/null").c_str()), 0);
}

} // namespace
} // namespace oxlade::simulator::test
