// The menu bar, made from its description. Main thread.
//
// Copy and Select All act on the log, and are enabled while it has the keyboard.
// A menu that is opened by keyboard takes the keyboard itself: then the control
// that had it before counts.
#pragma once

#include "interfaces/menu.h"

#include <QMenuBar>
#include <QObject>
#include <QPointer>

class QAction;
class QMainWindow;
class QMenu;
class QWidget;

namespace oxlade {

class LogTextView;

/// Paints itself: the style would draw the line under the bar item by item, with gaps
/// between them where the scale is not a whole number.
class MenuBar final : public QMenuBar {
  public:
    using QMenuBar::QMenuBar;

  protected:
    void paintEvent(QPaintEvent* event) override;
};

class MainMenu final : public QObject {
  public:
    /// `window` outlives it.
    explicit MainMenu(QMainWindow& window);

    /// Makes a whole new menu bar; the one before is deleted.
    void install(const MenuTree& tree);
    QMenuBar* bar() const { return bar_; }

  private:
    void addItem(QMenu& menu, const MenuItem& item);
    void perform(MenuAction action);
    void focusMoved(QWidget* to);
    void enableEditing();
    LogTextView* target() const;

    QMainWindow& window_;
    QPointer<QMenuBar> bar_;
    QPointer<QWidget> focused_; ///< the last one that was no menu
    QList<QAction*> editing_;   ///< of bar_
};

} // namespace oxlade
