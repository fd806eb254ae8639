// Whole runs, cut in every way, against a model that is told the rules in the
// plainest words: both must end in the same state.
#include "app/chunk_decoder.h"
#include "tests/support/fixture.h"

#include <cstdio>
#include <random>

namespace oxlade::test {

namespace {

/// What a run should leave behind. Knows of lines only that '\n' ends them, so it
/// is fed with transcripts that have no other.
struct Model {
    double bar = 0;
    std::string key = "op.flashing", geometry, log;
    int percent = 0;

    void take(std::string chunk) {
        for (auto& c : chunk)
            if (c == '\r') c = '\n';
        log += chunk;
        for (std::size_t at = 0; at <= chunk.size();) {
            const auto end = std::min(chunk.find('\n', at), chunk.size());
            line(chunk.substr(at, end - at));
            at = end + 1;
        }
    }
    void line(std::string text) {
        text.erase(0, text.find_first_not_of(" \t"));
        text.erase(text.find_last_not_of(" \t") + 1);
        unsigned n = 0;
        if (std::sscanf(text.c_str(), "Erase %u%%", &n) == 1)
            set(std::min(n * 0.5, 50.0), "op.erase", static_cast<int>(std::min(n, 100U)));
        else if (std::sscanf(text.c_str(), "Write %u%%", &n) == 1)
            set(50 + std::min(n * 0.5, 50.0), "op.write", static_cast<int>(std::min(n, 100U)));
        else if (text.find("Flash geometry:") != std::string::npos)
            geometry = text;
        else if (text.find("OS upload complete") != std::string::npos)
            set(100, "op.done", -1);
    }
    void set(double newBar, const char* newKey, int newPercent) {
        bar = newBar;
        key = newKey;
        percent = newPercent;
    }
};

std::string transcript() {
    std::string text = "MPC4000 found.\nFlash geometry: 64 sectors of 65536 bytes\n";
    for (const char* phase : {"Erase", "Write"}) {
        for (int percent = 0; percent <= 100; percent += 3)
            text += std::string{phase} + ' ' + std::to_string(percent) + "%\r";
        text += '\n';
    }
    return text + "Verifying... ok\nOS upload complete.\n";
}

} // namespace

class Replay : public ControllerTest {
  protected:
    void play(const std::vector<std::string>& chunks) {
        startReady();
        delegate->installFirmware();
        const auto before = controls.logView.text;
        Model model;
        for (const auto& chunk : chunks) {
            print(chunk);
            model.take(chunk);
            EXPECT_GE(controls.progress.value, 0);
            EXPECT_LE(controls.progress.value, 100);
        }
        EXPECT_EQ(controls.progress.value, model.bar);
        EXPECT_EQ(delegate->operationKey(), model.key);
        EXPECT_EQ(delegate->operationPercent(), model.percent);
        EXPECT_EQ(delegate->deviceGeometry(), model.geometry);
        EXPECT_EQ(controls.logView.text, before + model.log);
        exit(0);
        trace.take();
    }
};

TEST_F(Replay, ARunCutIntoTwoAtEveryByteEndsAsTheModelSays) {
    const auto text = transcript();
    for (std::size_t cut = 0; cut < text.size(); ++cut) {
        std::vector<std::string> chunks{text.substr(0, cut), text.substr(cut)};
        if (chunks.front().empty()) chunks.erase(chunks.begin());
        delegate->setDeviceGeometry({});
        play(chunks);
    }
}

TEST_F(Replay, ARunCutAtRandomEndsAsTheModelSays) {
    std::mt19937 random{4000}; // NOLINT: the same cuts in each run
    const auto text = transcript();
    for (int round = 0; round < 300; ++round) {
        std::vector<std::string> chunks;
        for (std::size_t at = 0; at < text.size();) {
            const std::size_t length = 1 + random() % 60;
            chunks.push_back(text.substr(at, length));
            at += length;
        }
        delegate->setDeviceGeometry({});
        play(chunks);
    }
}

TEST_F(Replay, AnyBytesKeepTheBarInItsRangeAndTheLogDecoded) {
    std::mt19937 random{1}; // NOLINT: the same bytes in each run
    startReady();
    delegate->installFirmware();
    for (int round = 0; round < 3000; ++round) {
        std::string bytes;
        for (auto count = 1 + random() % 30; count > 0; --count) {
            static const std::string alphabet =
                "EraseWrite 0123456789%-+\r\n\x85\xE9\xC3\xA9\xE2\x80\xA8";
            bytes += random() % 8 == 0 ? static_cast<char>(random() % 256)
                                       : alphabet[random() % alphabet.size()];
        }
        const auto before = controls.logView.text.size();
        print(bytes);
        auto expected = decodeChunk(bytes);
        for (auto& c : expected)
            if (c == '\r') c = '\n';
        ASSERT_EQ(controls.logView.text.substr(before), expected);
        ASSERT_GE(controls.progress.value, 0);
        ASSERT_LE(controls.progress.value, 100);
        ASSERT_LE(delegate->operationPercent(), 100);
    }
}

} // namespace oxlade::test
