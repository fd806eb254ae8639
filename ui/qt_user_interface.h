// The window and the menu bar in Qt Widgets. Main thread.
#pragma once

#include "interfaces/types.h"
#include "interfaces/user_interface.h"
#include "ui/window_content.h"

#include <memory>
#include <optional>

class QObject;
class QWidget;

namespace oxlade {

class Appearance;
class MainWindow;

/// Owns the window. The QApplication must outlive it.
class QtUserInterface final : public UserInterface {
  public:
    /// Sets the application's style, palette and font, and filters repeated keys. Ends the
    /// event loops, without a question, when the session ends.
    explicit QtUserInterface(WindowContext context);
    ~QtUserInterface() override;

    Controls buildWindow(WindowActions actions) override;
    void setMainMenu(const MenuTree& menu) override;
    void activateIgnoringOtherApps() override;

    /// The appearance that the user chose for the desktop; nullopt: that of the desktop's
    /// palette. Can be called at any time.
    void setColorScheme(std::optional<ColorScheme> preference);

    /// The window, or null before it is built: the parent of dialogs.
    QWidget* window() const;

  private:
    WindowContext context_;
    std::unique_ptr<Appearance> appearance_;
    std::unique_ptr<QObject> keyRepeatFilter_, quitFilter_;
    MenuTree menu_;
    std::unique_ptr<MainWindow> window_;
};

} // namespace oxlade
