// Whole runs against a model that is told the rules in the plainest words: both must
// end in the same state, whatever was printed and however it was cut.
#include "tests/testing/fixture.h"
#include "tests/testing/run_model.h"

#include <filesystem>
#include <fstream>
#include <random>

namespace oxlade::test {

namespace {

using Chunks = std::vector<std::string>;

std::string transcript() {
    std::string text = "MPC4000 found.\nFlash geometry: 64 sectors of 65536 bytes\n";
    for (const char* phase : {"Erase", "Write"}) {
        for (int percent = 0; percent <= 100; percent += 3)
            text += std::string{phase} + ' ' + std::to_string(percent) + "%\r";
        text += '\n';
    }
    return text + "Verifying... ok\nOS upload complete.\n";
}

/// A recorded run: the chunks as they were read, each after its length in a line of
/// its own.
Chunks recorded(const std::filesystem::path& file) {
    std::ifstream stream{file, std::ios::binary};
    Chunks chunks;
    for (std::string length; std::getline(stream, length);) {
        std::string chunk(std::stoul(length), '\0');
        stream.read(chunk.data(), static_cast<std::streamsize>(chunk.size()));
        chunks.push_back(std::move(chunk));
        stream.ignore(); // the line feed after it
    }
    return chunks;
}

} // namespace

class Replay : public ControllerTest {
  protected:
    Replay() { startReady(); }

    void begin() {
        delegate->setDeviceGeometry({});
        delegate->installFirmware();
        logBefore_ = controls.logView.text.size();
        model_ = {};
    }
    void take(const std::string& chunk) {
        print(chunk);
        model_.take(chunk);
        ASSERT_EQ(controls.progress.value, model_.bar);
        ASSERT_EQ(delegate->operationKey(), model_.key);
        ASSERT_EQ(delegate->operationPercent(), model_.percent);
        ASSERT_EQ(delegate->deviceGeometry(), model_.geometry);
        ASSERT_EQ(controls.operationLabel.text, std::string{L(model_.key)});
        ASSERT_EQ(controls.percentLabel.text,
                  model_.percent < 0 ? "" : std::to_string(model_.percent) + '%');
        ASSERT_GE(controls.progress.value, 0);
        ASSERT_LE(controls.progress.value, 100);
    }
    void play(const Chunks& chunks) {
        begin();
        for (const auto& chunk : chunks) ASSERT_NO_FATAL_FAILURE(take(chunk));
        ASSERT_EQ(controls.logView.text.substr(logBefore_), model_.log);
        exit(0);
        trace.take();
    }

  private:
    RunModel model_;
    std::size_t logBefore_ = 0;
};

TEST_F(Replay, RunsThatWereRecordedEndAsTheModelSays) {
    int runs = 0;
    for (const auto& entry : std::filesystem::directory_iterator{OXLADE_RECORDED_RUNS}) {
        SCOPED_TRACE(entry.path().filename());
        const auto chunks = recorded(entry.path());
        ASSERT_FALSE(chunks.empty());
        ASSERT_NO_FATAL_FAILURE(play(chunks));
        ++runs;
    }
    EXPECT_GE(runs, 8);
}

TEST_F(Replay, ARunCutIntoTwoAtEveryByteEndsAsTheModelSays) {
    const auto text = transcript();
    for (std::size_t cut = 1; cut < text.size(); ++cut)
        ASSERT_NO_FATAL_FAILURE(play({text.substr(0, cut), text.substr(cut)}));
}

TEST_F(Replay, ARunCutAtRandomEndsAsTheModelSays) {
    std::mt19937 random{4000}; // NOLINT: the same cuts in each run
    const auto text = transcript();
    for (int round = 0; round < 300; ++round) {
        Chunks chunks;
        for (std::size_t at = 0; at < text.size();) {
            const std::size_t length = 1 + random() % 60;
            chunks.push_back(text.substr(at, length));
            at += length;
        }
        ASSERT_NO_FATAL_FAILURE(play(chunks));
    }
}

TEST_F(Replay, AnyBytesAreTakenAsTheModelTakesThem) {
    std::mt19937 random{1}; // NOLINT: the same bytes in each run
    const std::vector<std::string> parts{"Erase",
                                         "Write",
                                         " ",
                                         "\t",
                                         "\v",
                                         "+",
                                         "-",
                                         "7",
                                         "42",
                                         "100",
                                         "4294967295",
                                         "99999999999",
                                         "%",
                                         "\r",
                                         "\n",
                                         "\f",
                                         "\u0085",
                                         "\u2028",
                                         "\u2029",
                                         "\u00A0",
                                         "\u3000",
                                         "\xE9",
                                         "\xC3",
                                         "\xA9",
                                         "\xE2\x80",
                                         "\xC1\xBF",
                                         "\xE0\x9F\xBF",
                                         "\xED\xA0\x80",
                                         "\xF0\x8F\xBF\xBF",
                                         "\xF4\x90\x80\x80",
                                         "Flash geometry:",
                                         "OS upload complete",
                                         "é",
                                         "\U0001F3B9",
                                         "\u202E",
                                         "x",
                                         std::string(1, '\0')};
    for (int round = 0; round < 300; ++round) {
        Chunks chunks(1 + random() % 20);
        for (auto& chunk : chunks)
            for (auto count = 1 + random() % 12; count > 0; --count)
                chunk += parts[random() % parts.size()];
        ASSERT_NO_FATAL_FAILURE(play(chunks));
    }
}

TEST_F(Replay, BytesWithoutAnySenseAreTakenAsTheModelTakesThem) {
    std::mt19937 random{2}; // NOLINT: the same bytes in each run
    for (int round = 0; round < 300; ++round) {
        Chunks chunks(1 + random() % 10);
        for (auto& chunk : chunks)
            for (auto count = 1 + random() % 200; count > 0; --count)
                chunk += static_cast<char>(random() % 256);
        ASSERT_NO_FATAL_FAILURE(play(chunks));
    }
}

} // namespace oxlade::test
