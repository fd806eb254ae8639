// The one window: its frame, its menu bar, and what keys and the mouse do in it
// beyond the controls. Main thread.
#pragma once

#include "ui/main_menu.h"
#include "ui/window_content.h"

#include <QMainWindow>
#include <QPoint>

#include <functional>
#include <optional>

namespace oxlade {

/// Where a window of this size, its frame not counted, is put at first: in the middle,
/// but with its title bar on the screen however small that is.
QPoint startingPlace(const QRect& available, const QSize& window);

/// Of fixed size; can be minimised, and closed, which ends the program when it is
/// the last window. Return and Enter press the flash button from anywhere in it.
/// It can be dragged by everything that is no control.
class MainWindow final : public QMainWindow, public Window {
  public:
    MainWindow(const WindowContext& context, const WindowActions& actions);

    void makeKeyAndOrderFront() override;
    /// References to its widgets.
    Controls controls();
    void setMenu(const MenuTree& menu) { menu_.install(menu); }
    WindowContent& content() const { return *content_; }
    const MainMenu& menu() const { return menu_; }

    /// Begins a drag of the window; replaceable where there is no window system.
    std::function<void()> startMove;

  protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

  private:
    void addDefaultKey(int key);

    MainMenu menu_;
    WindowContent* content_; ///< a child
    std::optional<QPoint> pressedAt_;
};

} // namespace oxlade
