// The helper's output, cut where the input says, through the whole controller.
#include "app/chunk_decoder.h"
#include "fuzz/fuzz_target.h"
#include "i18n/string_table.h"
#include "tests/support/fake_controls.h"
#include "tests/support/fake_interface.h"
#include "tests/support/fake_system.h"

#include <algorithm>

using namespace oxlade;
using namespace oxlade::fuzz;
using namespace oxlade::test;

namespace {

/// A program in the middle of a flash.
struct Program {
    Program() {
        files.files[bundledHelper] = {"", true};
        files.files[bundledImage] = {validImage(), false};
        delegate->applicationDidFinishLaunching();
        delegate->installFirmware();
        controls.logView.text.clear();
    }
    void print(std::string_view chunk) {
        processes.last.lock()->print(chunk);
        queue->run();
        trace.take();
    }

    Trace trace;
    FakeControls controls{trace};
    FakeInterface interface { trace, controls };
    FakeFiles files;
    std::shared_ptr<FakeQueue> queue = std::make_shared<FakeQueue>();
    FakeProcesses processes{trace};
    FakeDefaults defaults{trace};
    FakeDialogs dialogs{trace};
    std::shared_ptr<AppDelegate> delegate = std::make_shared<AppDelegate>(
        System{queue, processes, files, files, defaults, dialogs, dialogs}, interface,
        "https://oxlade.example/");
};

/// What the log must hold of a chunk.
std::string logged(std::string_view chunk) {
    auto text = decodeChunk(chunk);
    mustHold(isUtf8(text), "decoded text is UTF-8");
    std::replace(text.begin(), text.end(), '\r', '\n');
    return text;
}

} // namespace

// The first byte says how many of the next ones are lengths of chunks; what is
// left after those is the last chunk.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    auto bytes = textOf(data, size);
    if (bytes.empty()) return 0;
    const std::size_t count = std::min<std::size_t>(data[0] % 32, size - 1);
    const auto lengths = bytes.substr(1, count);
    bytes.remove_prefix(1 + count);

    Program program;
    std::string expected;
    const auto print = [&](std::string_view chunk) {
        if (chunk.empty()) return;
        program.print(chunk);
        expected += logged(chunk);
        mustHold(program.controls.progress.value >= 0 && program.controls.progress.value <= 100,
                 "the bar stays in its range");
        mustHold(program.delegate->operationPercent() >= -1 &&
                     program.delegate->operationPercent() <= 100,
                 "the percentage stays in its range");
    };
    for (const char length : lengths) {
        const auto chunk = bytes.substr(0, static_cast<unsigned char>(length));
        bytes.remove_prefix(chunk.size());
        print(chunk);
    }
    print(bytes);
    mustHold(program.controls.logView.text == expected, "the log holds the decoded text");
    return 0;
}
