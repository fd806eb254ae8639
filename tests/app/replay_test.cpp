// Whole runs beside a model of them: both must end in the same state, whatever the helper
// prints and however its output is cut into chunks.
#include "tests/testing/fixture.h"
#include "tests/testing/run_model.h"

#include <random>

namespace oxlade::test {

using namespace std::string_view_literals;

class Replay : public ControllerTest {
  protected:
    Replay() { startReady(); }

    void play(const std::vector<std::string>& chunks) {
        delegate->setDeviceGeometry({});
        delegate->installFirmware();
        controls.logView.text.clear();
        RunModel model;
        for (const auto& chunk : chunks) {
            print(chunk);
            model.take(chunk);
            ASSERT_EQ(controls.progress.value, model.bar);
            ASSERT_EQ(delegate->operationKey(), model.key);
            ASSERT_EQ(delegate->operationPercent(), model.percent);
            ASSERT_EQ(delegate->deviceGeometry(), model.geometry);
        }
        ASSERT_EQ(controls.logView.text, model.log);
        exit(0);
        trace.take();
    }
};

TEST_F(Replay, AnyBytesAreTakenAsTheModelTakesThem) {
    std::mt19937 random{1}; // NOLINT: the same bytes in each run
    std::vector<std::string> parts(1);
    for (const char c :
         "Erase|Write|erase| |\t|\v|+|-|7|007|42|100|4294967295|99999999999|%|\r|\n|\f|\u0085|"
         "\u2028|\u2029|\u00A0|\u3000|\xE9|\xC3|\xA9|\xE2\x80|\xC1\xBF|\xE0\x9F\xBF|\xED\xA0\x80|"
         "\xF0\x8F\xBF\xBF|\xF4\x90\x80\x80|Flash geometry:|OS upload complete|é|\U0001F3B9|x|\0"sv)
        if (c == '|')
            parts.emplace_back();
        else
            parts.back() += c;
    for (int round = 0; round < 600; ++round) {
        std::vector<std::string> chunks(1 + random() % 20);
        for (auto& chunk : chunks)
            for (auto count = 1 + random() % 12; count > 0; --count)
                if (round % 2 == 0)
                    chunk += parts[random() % parts.size()];
                else
                    chunk += static_cast<char>(random());
        ASSERT_NO_FATAL_FAILURE(play(chunks));
    }
}

} // namespace oxlade::test
