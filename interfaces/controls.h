// The window's controls as the controller sees them: only what it does with
// each. The real ones are widgets, those of the tests record.
//
// Everything here belongs to the main thread. Texts are UTF-8 and plain: no
// control reads markup in them. Setting what is set already costs next to
// nothing and changes nothing.
#pragma once

#include "interfaces/colors.h"

#include <string_view>

namespace oxlade {

class Window {
  public:
    virtual ~Window() = default;
    /// Shows the window in front of the others and gives it the keyboard.
    virtual void makeKeyAndOrderFront() = 0;
};

class Label {
  public:
    virtual ~Label() = default;
    virtual void setStringValue(std::string_view text) = 0;
};

/// The firmware line: a label whose tool tip and colour follow the selection.
class FileLabel : public Label {
  public:
    virtual void setToolTip(std::string_view text) = 0;
    virtual void setTextColor(SemanticColor color) = 0;
};

class StatusDot {
  public:
    virtual ~StatusDot() = default;
    virtual void setBackgroundColor(SemanticColor color) = 0;
};

class Button {
  public:
    virtual ~Button() = default;
    virtual void setTitle(std::string_view title) = 0;
    virtual void setEnabled(bool enabled) = 0;
};

class SegmentedControl {
  public:
    virtual ~SegmentedControl() = default;
    /// The index of the chosen segment from 0, or -1 when none is chosen.
    virtual int selectedSegment() const = 0;
};

class ProgressIndicator {
  public:
    virtual ~ProgressIndicator() = default;
    /// 0 to 100, fractions included; values outside are shown as the nearer end, and
    /// what is no number as 0.
    virtual void setDoubleValue(double value) = 0;
};

class LogView {
  public:
    virtual ~LogView() = default;
    /// Adds the text at the end as it is, without a line ending of its own, and
    /// scrolls there, wherever the user had scrolled to. `text` is not empty.
    virtual void append(std::string_view text) = 0;
};

class WaitingFigure {
  public:
    virtual ~WaitingFigure() = default;
    virtual void startWaiting() = 0;
    virtual void stopWaiting() = 0;
};

/// The controls by their names in the window. They outlive the controller's use
/// of them: the window stands until the program ends.
struct Controls {
    Window& window;
    Label& subtitleLabel;
    SegmentedControl& languageControl;
    WaitingFigure& girlView;
    Label& deviceCaptionLabel;
    StatusDot& deviceStatusDot;
    Label& deviceStatusLabel;
    Label& deviceDetailLabel;
    Label& firmwareCaptionLabel;
    FileLabel& firmwareLabel;
    Label& operationLabel;
    Label& percentLabel;
    Label& logCaptionLabel;
    Button& checkButton;
    Button& chooseButton;
    Button& builtinButton;
    Button& installButton;
    ProgressIndicator& progress;
    LogView& logView;
};

} // namespace oxlade
