// The Qt application, its window and its menu bar. Main thread.
#pragma once

#include "interfaces/types.h"
#include "interfaces/user_interface.h"
#include "ui/window_content.h"

#include <functional>
#include <memory>
#include <optional>
#include <string_view>

class QApplication;
class QObject;
class QWidget;

namespace oxlade {

class Appearance;
class MainWindow;

/// The Qt application as the desktop knows it. `programPath` is argv[0]; `desktopId` is the name
/// of the desktop entry without its extension, and that of the icons in the resources. There are
/// no options, not even Qt's own, and closing the last window does not end it. Call once. The
/// caller includes <QApplication>.
std::unique_ptr<QApplication> makeApplication(std::string_view programPath,
                                              std::string_view desktopId);

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

    /// Runs the event loop until the program ends. `didFinishLaunching` is called in it: an exit
    /// during an alert at the start counts. The close of the last window ends it at once if asked
    /// for, so no alert can open after that.
    void run(const std::function<void()>& didFinishLaunching, bool terminateAfterLastWindowClosed);

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
