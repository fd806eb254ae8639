// What a recognised line costs the controller: its state, all texts of the window,
// one question for the file's size. The controls of this window do nothing.
#include "app/app_delegate.h"
#include "i18n/window_texts.h"
#include "tests/testing/fake_system.h"

#include <benchmark/benchmark.h>

using namespace oxlade;

namespace {

/// Any control of the window: does nothing.
class QuietControl final : public Window,
                           public FileLabel,
                           public StatusDot,
                           public Button,
                           public SegmentedControl,
                           public ProgressIndicator,
                           public LogView,
                           public WaitingFigure {
  public:
    void makeKeyAndOrderFront() override {}
    void setStringValue(std::string_view text) override { benchmark::DoNotOptimize(text); }
    void setToolTip(std::string_view text) override { benchmark::DoNotOptimize(text); }
    void setTextColor(SemanticColor color) override { benchmark::DoNotOptimize(color); }
    void setBackgroundColor(SemanticColor color) override { benchmark::DoNotOptimize(color); }
    void setTitle(std::string_view title) override { benchmark::DoNotOptimize(title); }
    void setEnabled(bool enabled) override { benchmark::DoNotOptimize(enabled); }
    int selectedSegment() const override { return 0; }
    void setDoubleValue(double value) override { benchmark::DoNotOptimize(value); }
    void setFailed(bool failed) override { benchmark::DoNotOptimize(failed); }
    void append(std::string_view text) override { benchmark::DoNotOptimize(text); }
    void startWaiting() override {}
    void stopWaiting() override {}
};

class QuietInterface final : public UserInterface {
    Controls buildWindow(WindowActions) override {
        Controls controls;
#define OXLADE_CONTROL(Interface, name) controls.name = &control_;
        OXLADE_FOR_EACH_CONTROL(OXLADE_CONTROL)
#undef OXLADE_CONTROL
        return controls;
    }
    void setMainMenu(const MenuTree&) override {}
    void activateIgnoringOtherApps() override {}

    QuietControl control_;
};

void applyProgressLine(benchmark::State& state) {
    test::Trace trace;
    test::FakeFiles files;
    files.files[test::bundledImage] = {test::validImage(3'145'728), false};
    test::FakeProcesses processes{trace};
    test::FakeDefaults defaults{trace};
    test::FakeDialogs dialogs{trace};
    test::FakeSession session;
    QuietInterface interface;
    const auto delegate =
        std::make_shared<AppDelegate>(System{std::make_shared<test::FakeQueue>(), processes, files,
                                             files, defaults, dialogs, dialogs, session},
                                      interface, "https://oxlade.example/");
    delegate->applicationDidFinishLaunching();
    for (auto turn : state) {
        static_cast<void>(turn);
        delegate->parseProgressFromText("Write 42%\n");
    }
    if (delegate->operationPercent() != 42) state.SkipWithError("The line was not applied.");
}
BENCHMARK(applyProgressLine);

void makeWindowTexts(benchmark::State& state) {
    const WindowState shown{.deviceState = DeviceState::ready,
                            .deviceGeometry = "Flash geometry: 64 sectors of 64 KB",
                            .firmwarePath = test::bundledImage,
                            .firmwareSize = 3'145'728,
                            .operationKey = "op.write",
                            .operationPercent = 42};
    for (auto turn : state) {
        static_cast<void>(turn);
        benchmark::DoNotOptimize(windowTexts(shown));
    }
}
BENCHMARK(makeWindowTexts);

} // namespace
