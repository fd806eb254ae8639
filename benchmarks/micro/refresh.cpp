// What a recognised line costs the controller: its state, all texts of the window,
// one question for the file's size. The controls of this window do nothing.
#include "app/app_delegate.h"
#include "i18n/window_texts.h"
#include "tests/testing/fake_system.h"

#include <benchmark/benchmark.h>

using namespace oxlade;

namespace {

class QuietLabel final : public FileLabel {
  public:
    void setStringValue(std::string_view text) override { benchmark::DoNotOptimize(text); }
    void setToolTip(std::string_view text) override { benchmark::DoNotOptimize(text); }
    void setTextColor(SemanticColor color) override { benchmark::DoNotOptimize(color); }
};
class QuietDot final : public StatusDot {
    void setBackgroundColor(SemanticColor color) override { benchmark::DoNotOptimize(color); }
};
class QuietButton final : public Button {
    void setTitle(std::string_view title) override { benchmark::DoNotOptimize(title); }
    void setEnabled(bool enabled) override { benchmark::DoNotOptimize(enabled); }
};
class QuietSegments final : public SegmentedControl {
    int selectedSegment() const override { return 0; }
};
class QuietBar final : public ProgressIndicator {
    void setDoubleValue(double value) override { benchmark::DoNotOptimize(value); }
};
class QuietLog final : public LogView {
    void append(std::string_view text) override { benchmark::DoNotOptimize(text); }
};
class QuietFigure final : public WaitingFigure {
    void startWaiting() override {}
    void stopWaiting() override {}
};
class QuietWindow final : public Window {
    void makeKeyAndOrderFront() override {}
};

class QuietInterface final : public UserInterface {
    Controls buildWindow(WindowActions) override {
        return {window_, label_,  segments_, figure_, label_, dot_,   label_,
                label_,  label_,  label_,    label_,  label_, label_, button_,
                button_, button_, button_,   bar_,    log_};
    }
    void setMainMenu(const MenuTree&) override {}
    void activateIgnoringOtherApps() override {}

    QuietWindow window_;
    QuietLabel label_;
    QuietSegments segments_;
    QuietFigure figure_;
    QuietDot dot_;
    QuietButton button_;
    QuietBar bar_;
    QuietLog log_;
};

void applyProgressLine(benchmark::State& state) {
    test::Trace trace;
    test::FakeFiles files;
    files.files[test::bundledImage] = {test::validImage(3'145'728), false};
    test::FakeProcesses processes{trace};
    test::FakeDefaults defaults{trace};
    test::FakeDialogs dialogs{trace};
    QuietInterface interface;
    const auto delegate =
        std::make_shared<AppDelegate>(System{std::make_shared<test::FakeQueue>(), processes, files,
                                             files, defaults, dialogs, dialogs},
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
