// The Qt application, its window and its menu bar. Main thread.
#pragma once

#include "interfaces/types.h"
#include "interfaces/user_interface.h"
#include "ui/window_content.h"

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
