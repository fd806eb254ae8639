// The window and the menu bar in Qt Widgets.
//
// Main thread; needs a QApplication, which outlives it. It owns the window.
#pragma once

#include "app/user_interface.h"
#include "ui/palette.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

class QWidget;

namespace oxlade {

class Appearance;
class KeyRepeatFilter;
class MainWindow;

/// What the window has to be told of the program.
struct WindowContext {
    std::string version;      ///< for the credit line; may be empty
    std::string websiteLabel; ///< the title of the website link: the host's name
    /// Whether the user wants less motion; asked at each start of the figure, and
    /// expected to answer at once. Empty: never.
    std::function<bool()> reduceMotion;
};

class QtUserInterface final : public UserInterface {
  public:
    /// Takes over the application's style, palette, font and the held keys that press
    /// buttons.
    explicit QtUserInterface(WindowContext context);
    ~QtUserInterface() override;

    Controls buildWindow(AppDelegate& target) override;
    void setMainMenu(const MenuTree& menu) override;
    void activateIgnoringOtherApps() override;

    /// Light or dark as the user asked the desktop for; nothing: judged by the
    /// palette that the desktop gives. May change at any time.
    void setColorScheme(std::optional<Scheme> preference);

    /// The window, or null before it is built: the parent for dialogs.
    QWidget* window() const;

  private:
    WindowContext context_;
    std::unique_ptr<Appearance> appearance_;
    std::unique_ptr<KeyRepeatFilter> keyRepeatFilter_;
    MenuTree menu_;
    std::unique_ptr<MainWindow> window_;
};

} // namespace oxlade
