// The one window: its frame, its menu bar, and what keys and the mouse do in it
// beyond the controls.
#pragma once

#include "ui/main_menu.h"
#include "ui/window_content.h"

#include <QMainWindow>
#include <QPoint>

#include <optional>

namespace oxlade {

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
