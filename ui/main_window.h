// The one window: its frame, its menu bar and its default button. Main thread.
#pragma once

#include "ui/main_menu.h"
#include "ui/window_content.h"

#include <QMainWindow>
#include <QPoint>

namespace oxlade {

/// The first position of a window of this size: centred, but with its top left corner on the
/// screen however small that is.
QPoint startingPlace(const QRect& available, const QSize& window);

/// Of fixed size; can be minimised, and closed, which ends the program when it is the last
/// window. Return and Enter press the flash button from anywhere in it, unless the control
/// with the focus has a use for them.
class MainWindow final : public QMainWindow, public Window {
  public:
    /// Built hidden, in its place on the screen.
    MainWindow(const WindowContext& context, const WindowActions& actions, const MenuTree& menu);

    /// When it gets its frame, moves so that this is centred, unless the window manager has
    /// placed it elsewhere. The first frame painted, sets the application's icon from the
    /// resources: ":/icon/ID-SIZE.png", ID being the name of the desktop entry.
    void makeKeyAndOrderFront() override;
    /// Itself and its children.
    Controls controls();
    void setMenu(const MenuTree& menu) { menu_.install(menu); }

  protected:
    /// Gets the keys that the control with the focus has no use for.
    void keyPressEvent(QKeyEvent* event) override;
    /// Refused while an alert is open.
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void centreFrame();

    MainMenu menu_;
    WindowContent* content_; ///< a child
};

} // namespace oxlade
