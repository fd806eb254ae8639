// Fake controls: each keeps what it is told and traces what changed.
//
// A refresh is traced as one line, followed by its changes; an update of the buttons as one
// line that lists those that are enabled.
#pragma once

#include "interfaces/user_interface.h"
#include "tests/testing/trace.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace oxlade::test {

inline const char* nameOf(SemanticColor color) {
    static const std::vector<const char*> names{"labelColor",         "secondaryLabelColor",
                                                "tertiaryLabelColor", "systemGreenColor",
                                                "systemOrangeColor",  "systemRedColor"};
    return names.at(static_cast<std::size_t>(color)); // a status has no other
}

/// What a fake writes to: the trace, and the names of the buttons enabled so far.
struct Recorder {
    Trace& trace;
    std::string enabledButtons;
};

class FakeControl {
  public:
    FakeControl(Recorder& recorder, std::string name)
        : recorder_{recorder}, name_{std::move(name)} {}

  protected:
    void add(const std::string& line) { recorder_.trace.add(line); }
    template <class Value>
    void keep(std::optional<Value>& slot, const Value& value, const std::string& line) {
        if (slot == value) return;
        slot = value;
        add("  " + name_ + ' ' + line);
    }
    Recorder& recorder_;
    std::string name_;
};

/// The fake of an interface.
template <class Interface>
class Fake;

template <>
class Fake<FileLabel> : public FileLabel, FakeControl {
  public:
    using FakeControl::FakeControl;
    void setStringValue(std::string_view value) override {
        if (name_ == "subtitleLabel") add("refreshTexts");
        keep(text, std::string{value}, inQuotes(value));
    }
    void setToolTip(std::string_view value) override {
        keep(toolTip, std::string{value}, "tool tip " + inQuotes(value));
    }
    void setTextColor(SemanticColor value) override { keep(color, value, nameOf(value)); }

    std::optional<std::string> text, toolTip;
    std::optional<SemanticColor> color;
};

template <>
class Fake<Label> final : public Fake<FileLabel> {
    using Fake<FileLabel>::Fake;
};

template <>
class Fake<StatusDot> final : public StatusDot, FakeControl {
  public:
    using FakeControl::FakeControl;
    void setBackgroundColor(SemanticColor value) override { keep(color, value, nameOf(value)); }
    std::optional<SemanticColor> color;
};

template <>
class Fake<Button> final : public Button, FakeControl {
  public:
    using FakeControl::FakeControl;
    void setTitle(std::string_view value) override {
        keep(title, std::string{value}, inQuotes(value));
    }
    void setEnabled(bool value) override {
        enabled = value;
        if (value) recorder_.enabledButtons += ' ' + name_;
        // The last of the four that are updated.
        if (name_ == "installButton")
            add("updateButtons:" + std::exchange(recorder_.enabledButtons, {}));
    }
    std::optional<std::string> title;
    bool enabled = true;
};

template <>
class Fake<SegmentedControl> final : public SegmentedControl, FakeControl {
  public:
    using FakeControl::FakeControl;
    int selectedSegment() const override { return selected; }
    int selected = 0;
};

template <>
class Fake<ProgressIndicator> final : public ProgressIndicator, FakeControl {
  public:
    using FakeControl::FakeControl;
    void setDoubleValue(double newValue) override {
        value = newValue;
        add("progress " + number(newValue));
    }
    void setFailed(bool isFailed) override {
        if (std::exchange(failed, isFailed) != isFailed)
            add(isFailed ? "  failed" : "  not failed");
    }
    double value = 0;
    bool failed = false;
};

template <>
class Fake<LogView> final : public LogView, FakeControl {
  public:
    using FakeControl::FakeControl;
    void append(std::string_view added) override {
        text += added;
        ++appends;
        add("log " + inQuotes(added));
    }
    std::string text;
    int appends = 0;
};

template <>
class Fake<WaitingFigure> final : public WaitingFigure, FakeControl {
  public:
    using FakeControl::FakeControl;
    void startWaiting() override { add("startWaiting"); }
    void stopWaiting() override { add("stopWaiting"); }
};

template <>
class Fake<Window> final : public Window, FakeControl {
  public:
    using FakeControl::FakeControl;
    void makeKeyAndOrderFront() override { add("makeKeyAndOrderFront"); }
};

/// A fake for each control, by its name.
struct FakeControls {
    explicit FakeControls(Trace& trace) : recorder{trace, {}} {}

    Controls pointers() {
        Controls result;
// NOLINTNEXTLINE(bugprone-macro-parentheses): a name takes none
#define OXLADE_CONTROL(Interface, name) result.name = &name;
        OXLADE_FOR_EACH_CONTROL(OXLADE_CONTROL)
#undef OXLADE_CONTROL
        return result;
    }

    Recorder recorder;
// NOLINTNEXTLINE(bugprone-macro-parentheses): a name takes none
#define OXLADE_CONTROL(Interface, name) Fake<Interface> name{recorder, #name};
    OXLADE_FOR_EACH_CONTROL(OXLADE_CONTROL)
#undef OXLADE_CONTROL
};

} // namespace oxlade::test
