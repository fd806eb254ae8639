// The window and the menu bar in Qt Widgets.
//
// Main thread; needs a QApplication, which outlives it. It owns the window.
#pragma once

#include "interfaces/colors.h"
#include "interfaces/user_interface.h"
#include "ui/window_content.h"

#include <memory>
#include <optional>

class QWidget;

namespace oxlade {

class Appearance;
class KeyRepeatFilter;
class MainWindow;

class QtUserInterface final : public UserInterface {
  public:
    /// Takes over the application's style, palette, font and the held keys that press
    /// buttons.
    explicit QtUserInterface(WindowContext context);
    ~QtUserInterface() override;

    Controls buildWindow(WindowActions actions) override;
    void setMainMenu(const MenuTree& menu) override;
    void activateIgnoringOtherApps() override;

    /// Light or dark as the user asked the desktop for; nothing: judged by the
    /// palette that the desktop gives. May change at any time.
    void setColorScheme(std::optional<ColorScheme> preference);

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
