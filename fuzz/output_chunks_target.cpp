// The helper's output, cut where the input says, through the whole controller.
#include "fuzz/fuzz_target.h"
#include "i18n/string_table.h"
#include "tests/testing/fake_program.h"
#include "tests/testing/run_model.h"

#include <algorithm>

using namespace oxlade;
using namespace oxlade::fuzz;
using namespace oxlade::test;

namespace {

/// A program in the middle of a flash.
struct FlashingProgram : FakeProgram {
    FlashingProgram() : FakeProgram{validImage()} { // a small one: it is made for each input
        delegate->applicationDidFinishLaunching();
        delegate->installFirmware();
        controls.logView.text.clear();
    }
};

} // namespace

// The first byte says how many of the next ones are lengths of chunks; what is
// left after those is the last chunk.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    auto bytes = textOf(data, size);
    if (bytes.empty()) return 0;
    const std::size_t count = std::min<std::size_t>(data[0] % 32, size - 1);
    const auto lengths = bytes.substr(1, count);
    bytes.remove_prefix(1 + count);

    FlashingProgram program;
    RunModel model;
    const auto print = [&](std::string_view chunk) {
        if (chunk.empty()) return;
        program.print(chunk);
        program.trace.take();
        model.take(chunk);
        mustHold(program.controls.progress.value == model.bar, "the bar stands as the model's");
        mustHold(model.bar >= 0 && model.bar <= 100, "the bar stays in its range");
        mustHold(program.delegate->operationKey() == model.key, "the operation is the model's");
        mustHold(program.delegate->operationPercent() == model.percent,
                 "the percentage is the model's");
        mustHold(program.delegate->deviceGeometry() == model.geometry,
                 "the geometry is the model's");
    };
    for (const char length : lengths) {
        const auto chunk = bytes.substr(0, static_cast<unsigned char>(length));
        bytes.remove_prefix(chunk.size());
        print(chunk);
    }
    print(bytes);
    mustHold(program.controls.logView.text == model.log, "the log holds the decoded text");
    return 0;
}
