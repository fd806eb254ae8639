// Controls that keep what they are told and write down what changed.
//
// A refresh is written down as one line, its changes after it; likewise an update
// of the buttons, which ends with the list of those that are enabled.
#pragma once

#include "interfaces/controls.h"
#include "tests/testing/trace.h"

#include <array>
#include <optional>
#include <utility>

namespace oxlade::test {

inline const char* nameOf(SemanticColor color) {
    switch (color) {
    case SemanticColor::labelColor:
        return "labelColor";
    case SemanticColor::secondaryLabelColor:
        return "secondaryLabelColor";
    case SemanticColor::tertiaryLabelColor:
        return "tertiaryLabelColor";
    case SemanticColor::systemGreenColor:
        return "systemGreenColor";
    case SemanticColor::systemOrangeColor:
        return "systemOrangeColor";
    case SemanticColor::systemRedColor:
        return "systemRedColor";
    default:
        return "a color that no status has";
    }
}

/// Base of all: knows its name and where to write.
class Named {
  public:
    Named(Trace& trace, std::string name) : trace_{trace}, name_{std::move(name)} {}

  protected:
    template <class Value>
    void keep(std::optional<Value>& slot, const Value& value, const std::string& line) {
        if (slot == value) return;
        slot = value;
        trace_.add("  " + name_ + ' ' + line);
    }
    Trace& trace_;
    std::string name_;
};

class FakeLabel final : public FileLabel, Named {
  public:
    using Named::Named;
    void setStringValue(std::string_view value) override {
        if (name_ == "subtitleLabel") trace_.add("refreshTexts");
        keep(text, std::string{value}, inQuotes(value));
    }
    void setToolTip(std::string_view value) override {
        keep(toolTip, std::string{value}, "tool tip " + inQuotes(value));
    }
    void setTextColor(SemanticColor value) override { keep(color, value, nameOf(value)); }

    std::optional<std::string> text, toolTip;
    std::optional<SemanticColor> color;
};

class FakeDot final : public StatusDot, Named {
  public:
    using Named::Named;
    void setBackgroundColor(SemanticColor value) override { keep(color, value, nameOf(value)); }
    std::optional<SemanticColor> color;
};

class FakeButton final : public Button, Named {
  public:
    FakeButton(Trace& trace, std::string name, std::string& enabledNow)
        : Named{trace, std::move(name)}, enabledNow_{enabledNow} {}
    void setTitle(std::string_view value) override {
        keep(title, std::string{value}, inQuotes(value));
    }
    void setEnabled(bool value) override {
        enabled = value;
        if (value) enabledNow_ += ' ' + name_;
        // The last of the four that are updated.
        if (name_ == "installButton") trace_.add("updateButtons:" + std::exchange(enabledNow_, {}));
    }
    std::optional<std::string> title;
    bool enabled = true;

  private:
    std::string& enabledNow_;
};

class FakeSegments final : public SegmentedControl {
  public:
    int selectedSegment() const override { return selected; }
    int selected = 0;
};

class FakeProgress final : public ProgressIndicator {
  public:
    explicit FakeProgress(Trace& trace) : trace_{trace} {}
    void setDoubleValue(double newValue) override {
        value = newValue;
        trace_.add("progress " + number(newValue));
    }
    double value = 0;

  private:
    Trace& trace_;
};

class FakeLog final : public LogView {
  public:
    explicit FakeLog(Trace& trace) : trace_{trace} {}
    void append(std::string_view added) override {
        text += added;
        ++appends;
        trace_.add("log " + inQuotes(added));
    }
    std::string text;
    int appends = 0;

  private:
    Trace& trace_;
};

class FakeFigure final : public WaitingFigure {
  public:
    explicit FakeFigure(Trace& trace) : trace_{trace} {}
    void startWaiting() override { trace_.add("startWaiting"); }
    void stopWaiting() override { trace_.add("stopWaiting"); }

  private:
    Trace& trace_;
};

class FakeWindow final : public Window {
  public:
    explicit FakeWindow(Trace& trace) : trace_{trace} {}
    void makeKeyAndOrderFront() override { trace_.add("makeKeyAndOrderFront"); }

  private:
    Trace& trace_;
};

struct FakeControls {
    explicit FakeControls(Trace& trace)
        : window{trace}, subtitleLabel{trace, "subtitleLabel"}, girlView{trace},
          deviceCaptionLabel{trace, "deviceCaptionLabel"}, deviceStatusDot{trace,
                                                                           "deviceStatusDot"},
          deviceStatusLabel{trace, "deviceStatusLabel"}, deviceDetailLabel{trace,
                                                                           "deviceDetailLabel"},
          firmwareCaptionLabel{trace, "firmwareCaptionLabel"}, firmwareLabel{trace,
                                                                             "firmwareLabel"},
          operationLabel{trace, "operationLabel"}, percentLabel{trace, "percentLabel"},
          logCaptionLabel{trace, "logCaptionLabel"}, checkButton{trace, "checkButton", enabledNow},
          chooseButton{trace, "chooseButton", enabledNow}, builtinButton{trace, "builtinButton",
                                                                         enabledNow},
          installButton{trace, "installButton", enabledNow}, progress{trace}, logView{trace} {}

    Controls references() {
        return {window,
                subtitleLabel,
                languageControl,
                girlView,
                deviceCaptionLabel,
                deviceStatusDot,
                deviceStatusLabel,
                deviceDetailLabel,
                firmwareCaptionLabel,
                firmwareLabel,
                operationLabel,
                percentLabel,
                logCaptionLabel,
                checkButton,
                chooseButton,
                builtinButton,
                installButton,
                progress,
                logView};
    }

    std::string enabledNow;
    FakeWindow window;
    FakeLabel subtitleLabel;
    FakeSegments languageControl;
    FakeFigure girlView;
    FakeLabel deviceCaptionLabel;
    FakeDot deviceStatusDot;
    FakeLabel deviceStatusLabel, deviceDetailLabel, firmwareCaptionLabel, firmwareLabel;
    FakeLabel operationLabel, percentLabel, logCaptionLabel;
    FakeButton checkButton, chooseButton, builtinButton, installButton;
    FakeProgress progress;
    FakeLog logView;
};

} // namespace oxlade::test
