// The window, its controls and the menu bar as the controller uses them. Implemented by widgets,
// and in tests by fakes that record.
//
// Main thread only. Texts are UTF-8 and plain: no control reads markup in them. Setting a
// value that is set already has no effect and costs next to nothing.
#pragma once

#include "interfaces/types.h"

#include <functional>
#include <string_view>

namespace oxlade {

class Window {
  public:
    virtual ~Window() = default;
    /// Shows the window in front of the program's other windows. Which program is active does
    /// not change: see UserInterface::activateIgnoringOtherApps.
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
    /// 0 to 100, fractions included; clamped to this range, and NaN is shown as 0.
    virtual void setDoubleValue(double value) = 0;
    /// Whether what it shows has failed.
    virtual void setFailed(bool failed) = 0;
};

class LogView {
  public:
    virtual ~LogView() = default;
    /// Appends the text as it is, without adding a line ending, and scrolls to the end.
    /// `text` is not empty.
    virtual void append(std::string_view text) = 0;
};

class WaitingFigure {
  public:
    virtual ~WaitingFigure() = default;
    virtual void startWaiting() = 0;
    virtual void stopWaiting() = 0;
};

/// Every control that the controller uses: its interface and its name in the window. The
/// only list of them: what has one entry for each control is made from it.
#define OXLADE_FOR_EACH_CONTROL(CONTROL)                                                           \
    CONTROL(Window, window)                                                                        \
    CONTROL(Label, subtitleLabel)                                                                  \
    CONTROL(SegmentedControl, languageControl)                                                     \
    CONTROL(WaitingFigure, girlView)                                                               \
    CONTROL(Label, deviceCaptionLabel)                                                             \
    CONTROL(StatusDot, deviceStatusDot)                                                            \
    CONTROL(Label, deviceStatusLabel)                                                              \
    CONTROL(Label, deviceDetailLabel)                                                              \
    CONTROL(Label, firmwareCaptionLabel)                                                           \
    CONTROL(FileLabel, firmwareLabel)                                                              \
    CONTROL(Label, operationLabel)                                                                 \
    CONTROL(Label, percentLabel)                                                                   \
    CONTROL(Label, logCaptionLabel)                                                                \
    CONTROL(Button, checkButton)                                                                   \
    CONTROL(Button, chooseButton)                                                                  \
    CONTROL(Button, builtinButton)                                                                 \
    CONTROL(Button, installButton)                                                                 \
    CONTROL(ProgressIndicator, progress)                                                           \
    CONTROL(LogView, logView)

/// The controls of one window, which owns them and outlives their use. None is null once the
/// window is built.
struct Controls {
#define OXLADE_CONTROL(Interface, name) Interface* name = nullptr;
    OXLADE_FOR_EACH_CONTROL(OXLADE_CONTROL)
#undef OXLADE_CONTROL
};

/// What the controls call, on the main thread. None is empty.
struct WindowActions {
    std::function<void()> checkDevice, useBundledFirmware, chooseFirmware, installFirmware,
        languageChanged, openWebsite;
};

/// Builds the window and the menu bar for the controller.
class UserInterface {
  public:
    virtual ~UserInterface() = default;
    /// Builds the window and its controls: hidden, in its place on the screen, without the
    /// texts that depend on language or state. What the actions refer to must outlive the
    /// window. Called once.
    virtual Controls buildWindow(WindowActions actions) = 0;
    /// Replaces the whole menu bar. Called before the window is built and at each language
    /// switch.
    virtual void setMainMenu(const MenuTree& menu) = 0;
    /// Makes this program the active one and gives its window the keyboard. No effect before
    /// the window is built.
    virtual void activateIgnoringOtherApps() = 0;
};

} // namespace oxlade
