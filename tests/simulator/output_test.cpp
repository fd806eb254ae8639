#include "tests/simulator/simulator_fixture.h"

#include <algorithm>
#include <cctype>
#include <chrono>
#include <csignal>

namespace oxlade::simulator::test {
namespace {

using namespace std::string_view_literals;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

std::vector<std::string> reads(HelperRun& run) {
    std::vector<std::string> chunks;
    for (std::string chunk = run.readOnce(); !chunk.empty(); chunk = run.readOnce())
        chunks.push_back(chunk);
    return chunks;
}

// What a check says after the geometry line.
std::string after(const std::string& greeting, const std::string& text) {
    EXPECT_THAT(text, StartsWith(greeting));
    return text.substr(std::min(greeting.size(), text.size()));
}

TEST_F(SimulatorTest, CutsEachLineInTwoReads) {
    auto run = flash(with("step=100,split=7"));
    const std::vector<std::string> expected{
        "Searchi", "ng for the MPC4000...\n",
        "Note: t", "his is the Oxlade simulator. No real sampler is touched.\n",
        "MPC4000", " found in OS Loader mode.\n",
        "Flash g", "eometry: 64 sectors of 65536 bytes (simulated MPC4000)\n",
        "Erase 0", "%\r",
        "Erase 1", "00%\n",
        "Write 0", "%\r",
        "Write 1", "00%\n",
        "Verifyi", "ng... ok\n",
        "OS uplo", "ad complete.\n"};
    EXPECT_EQ(reads(run), expected);
    EXPECT_EQ(run.wait(), 0);
}

TEST_F(SimulatorTest, CutsLinesEverywhereInTurn) {
    auto run = check(with("split=all"));
    const auto chunks = reads(run);
    ASSERT_EQ(chunks.size(), 8U);
    for (const std::size_t line : {0U, 1U, 2U, 3U}) EXPECT_EQ(chunks[2 * line].size(), line + 1);
    std::string whole;
    for (const std::string& chunk : chunks) whole += chunk;
    EXPECT_EQ(whole, greeting);
}

TEST_F(SimulatorTest, PutsNothingBetweenReports) {
    EXPECT_THAT(flash(with("step=50,no-line-ends")).readToEnd(),
                HasSubstr("\nErase 0%Erase 50%Erase 100%\nWrite 0%Write 50%Write 100%\nVerif"));
}

TEST_F(SimulatorTest, SendsTheReportsOfAPhaseTogether) {
    auto run = flash(with("step=50,progress=one-write," + gateAt("write:99")));
    ASSERT_TRUE(eventually([&] { return run.noted("waiting write:99"); }));
    EXPECT_EQ(run.readAvailable(), greeting + std::string("Erase 0%\rErase 50%\rErase 100%\n"));
    openGate();
    EXPECT_EQ(run.readToEnd(),
              "Write 0%\rWrite 50%\rWrite 100%\nVerifying... ok\nOS upload complete.\n");
}

TEST_F(SimulatorTest, HoldsItsStandardOutputBackWhenItDoesNotFlush) {
    auto run = flash(with("step=100,no-flush," + gateAt("write:100")));
    ASSERT_TRUE(eventually([&] { return run.noted("waiting write:100"); }));
    EXPECT_EQ(run.readAvailable(),
              "Note: this is the Oxlade simulator. No real sampler is touched.\n");
    openGate();
    const std::string rest = run.readToEnd();
    EXPECT_THAT(rest, StartsWith("Searching for the MPC4000...\nMPC4000 found"));
    EXPECT_THAT(rest, EndsWith("Verifying... ok\nOS upload complete.\n"));
}

TEST_F(SimulatorTest, SaysWhatItHeldBackAfterAFailureToo) {
    auto run = flash(with("step=100,no-flush,fail-write=0"));
    EXPECT_THAT(run.readToEnd(), EndsWith("Error: the flash cannot be written.\n"
                                          "Searching for the MPC4000...\n"
                                          "MPC4000 found in OS Loader mode.\n"
                                          "Flash geometry: 64 sectors of 65536 bytes (simulated "
                                          "MPC4000)\nErase 0%\rErase 100%\nWrite 0%\r"));
}

TEST_F(SimulatorTest, PrintsWhatIsNoUtf8) {
    EXPECT_EQ(after(greeting, check(with("invalid-utf8")).readToEnd()),
              "Sampler f\xFCr Ger\xE4te\ncut short \xE2\x82\nnever seen \xC0\xFE\xFF\n");
}

TEST_F(SimulatorTest, PrintsControlCharacters) {
    EXPECT_EQ(after(greeting, check(with("nul")).readToEnd()),
              "zero \0 bell \a escape \x1B[31m backspace \b\n"
              "override \xE2\x80\xAEgnihsalf\xE2\x80\xAC isolate \xE2\x81\xA7now\xE2\x81\xA9\n"sv);
}

TEST_F(SimulatorTest, PrintsControlCharactersOverAndOver) {
    const std::string text = after(greeting, check(with("nul-bytes=200000")).readToEnd());
    EXPECT_EQ(text.size(), 200000U);
    EXPECT_THAT(text, EndsWith("\n"));
    EXPECT_GT(std::count(text.begin(), text.end(), '\0'), 2000);
    EXPECT_GT(std::count(text.begin(), text.end(), '\n'), 4000);
}

TEST_F(SimulatorTest, PrintsOneLongLineOfControlCharacters) {
    const std::string line = after(greeting, check(with("nul-line=200000")).readToEnd());
    EXPECT_EQ(line.size(), 200001U);
    EXPECT_GT(std::count(line.begin(), line.end(), '\0'), 2000);
    EXPECT_EQ(line.find('\n'), 200000U);
}

TEST_F(SimulatorTest, PrintsOneLongLine) {
    const std::string line = after(greeting, check(with("long-line=1000003")).readToEnd());
    ASSERT_EQ(line.size(), 1000004U);
    EXPECT_EQ(line.back(), '\n');
    EXPECT_TRUE(std::all_of(line.begin(), line.end() - 1,
                            [](unsigned char letter) { return std::islower(letter) != 0; }));
}

TEST_F(SimulatorTest, PrintsAsManyBytesOfTextAsAskedFor) {
    for (const std::size_t bytes : {1U, 100U, 200000U}) {
        const auto words = with("flood-bytes=" + std::to_string(bytes));
        const std::string text = after(greeting, check(words).readToEnd());
        EXPECT_EQ(text.size(), bytes);
        EXPECT_EQ(text.back(), '\n');
    }
}

TEST_F(SimulatorTest, PrintsAsManyProgressLinesAsAskedFor) {
    const std::string text = after(greeting, check(with("flood=100000")).readToEnd());
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 100000);
    EXPECT_THAT(text, StartsWith("Erase 0%\nErase 0%\n"));
    EXPECT_THAT(text, HasSubstr("Erase 49%\nErase 50%\n"));
    EXPECT_THAT(text, EndsWith("Erase 99%\n"));
}

class ChildTest : public SimulatorTest {
  protected:
    // The process id that the trace gives for the helper's child.
    pid_t child() const {
        const std::string trace = bytesOf(folder.path("trace"));
        const auto at = trace.find("\nchild ");
        return at == trace.npos ? -1 : std::stoi(trace.substr(at + 7));
    }
};

TEST_F(ChildTest, HoldsTheOutputOpenInSilence) {
    auto run = flash(with("step=100,grandchild=600"));
    EXPECT_EQ(run.wait(), 0);
    EXPECT_THAT(run.readAvailable(), EndsWith("OS upload complete.\n"));
    ASSERT_GT(child(), 0);
    EXPECT_EQ(::kill(child(), 0), 0);
    EXPECT_EQ(run.readAvailable(), "");
    ::kill(child(), SIGKILL);
    EXPECT_EQ(run.readToEnd(), "");
}

TEST_F(ChildTest, StaysForItsTimeAndGoes) {
    const auto started = std::chrono::steady_clock::now();
    auto run = check(with("grandchild=0.3"));
    EXPECT_EQ(run.readToEnd(), greeting);
    EXPECT_GE(std::chrono::steady_clock::now() - started, std::chrono::milliseconds(300));
}

TEST_F(ChildTest, OutlivesAHelperThatIsKilled) {
    auto run = flash(with("grandchild=600,signal=9@write:50"));
    EXPECT_EQ(run.wait(), -SIGKILL);
    ASSERT_GT(child(), 0);
    EXPECT_EQ(::kill(child(), 0), 0);
    ::kill(child(), SIGKILL);
    EXPECT_THAT(run.readToEnd(), EndsWith("Write 50%\r"));
}

TEST_F(ChildTest, TalksWhileTheHelperRuns) {
    auto run = check(with("chatter=0," + gateAt("info")));
    std::string said;
    EXPECT_TRUE(eventually([&] {
        said += run.readAvailable();
        return said.find("The helper's child is still here.\n") != said.npos;
    }));
    openGate();
    run.readToEnd();
    EXPECT_EQ(run.wait(), 0);
}

TEST_F(ChildTest, TalksOnWhenTheHelperHasEnded) {
    auto run = check(with("chatter=600"));
    EXPECT_EQ(run.wait(), 0);
    run.readAvailable();
    for (int line = 0; line < 5; ++line)
        EXPECT_THAT(run.readOnce(), HasSubstr("The helper's child is still here.\n"));
    ASSERT_GT(child(), 0);
    ::kill(child(), SIGKILL);
    run.readToEnd();
}

} // namespace
} // namespace oxlade::simulator::test
