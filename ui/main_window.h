// The one window: its frame, its menu bar and its default button. Main thread.
#pragma once

#include "ui/main_menu.h"
#include "ui/window_content.h"

#include <QMainWindow>
#include <QPoint>

namespace oxlade {

/// The first position of a window of this size, its frame not counted: centred, but with its
/// title bar on the screen however small that is.
QPoint startingPlace(const QRect& available, const QSize& window);

/// Of fixed size; can be minimised, and closed, which ends the program when it is the last
/// window. Return and Enter press the flash button from anywhere in it.
class MainWindow final : public QMainWindow, public Window {
  public:
    /// Built hidden, in its place on the screen.
    MainWindow(const WindowContext& context, const WindowActions& actions, const MenuTree& menu);

    void makeKeyAndOrderFront() override { show(); }
    /// Itself and its children.
    Controls controls();
    void setMenu(const MenuTree& menu) { menu_.install(menu); }

  private:
    void addDefaultKey(int key);

    MainMenu menu_;
    WindowContent* content_; ///< a child
};

} // namespace oxlade
