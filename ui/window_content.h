// The controls of the window, built once. Main thread.
#pragma once

#include "interfaces/user_interface.h"

#include <QRect>
#include <QSize>
#include <QWidget>

#include <functional>
#include <string>

class QPushButton;

namespace oxlade {

class LogScrollView;
class QtLogView;

/// What the window shows and asks of the program.
struct WindowContext {
    std::string version;      ///< for the credit line; may be empty
    std::string websiteLabel; ///< the title of the website link: the host's name
    /// Whether the user wants reduced motion; called at each start of the waiting figure.
    /// Empty: never.
    std::function<bool()> reduceMotion;
};

/// Converts a frame from the layout's coordinates, which are in points (logical pixels) and
/// count y upwards from the parent's bottom edge, to Qt's.
constexpr QRect fromBottomLeft(const QRect& frame, int parentHeight) {
    return {frame.x(), parentHeight - frame.y() - frame.height(), frame.width(), frame.height()};
}

/// In points.
inline constexpr QSize contentSize{760, 620};

/// Everything below the menu bar. No control has a text that depends on the language or the
/// state yet. Dragging anything that is not a control moves the window.
class WindowContent final : public QWidget {
  public:
    WindowContent(const WindowContext& context, const WindowActions& actions, QWidget* parent);

    /// Its children, whose object names are the members' names; `window` is null.
    const Controls& controls() const { return controls_; }

  protected:
    void mousePressEvent(QMouseEvent* event) override;
    /// Draws the focus rings that have no room within their controls.
    void paintEvent(QPaintEvent* event) override;

  private:
    void buildHeader(const WindowContext& context, const WindowActions& actions);
    void buildDeviceCard(const WindowActions& actions);
    void buildFirmwareCard(const WindowActions& actions);
    void buildProgressCard(const WindowActions& actions);
    void buildLog();
    void buildCreditLine(const WindowContext& context, const WindowActions& actions);

    Controls controls_;
    LogScrollView* logScrollView_ = nullptr; ///< this and the next two are children
    QtLogView* logView_ = nullptr;
    QPushButton* websiteLink_ = nullptr;
};

} // namespace oxlade
