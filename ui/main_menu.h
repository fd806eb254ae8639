// The menu bar, built from a MenuTree. Main thread.
//
// Copy and Select All act on the log, and are enabled while it has the keyboard focus, Copy only
// with something selected. A menu opened by a key takes the focus: then the widget that had it
// before counts.
#pragma once

#include "interfaces/types.h"

#include <QMenuBar>
#include <QObject>
#include <QPointer>

class QAction;
class QKeyEvent;
class QMainWindow;
class QMenu;
class QWidget;

namespace oxlade {

class QtLogView;

/// The letter from a to z that was pressed together with Control alone; 0 for any other key.
/// Where the keyboard layout has no Latin letter on the key, the letter of its place on an
/// English keyboard, on X11 and Wayland. Any thread.
char commandLetter(const QKeyEvent& event);

class MainMenu final : public QObject {
  public:
    /// `window` must outlive it.
    explicit MainMenu(QMainWindow& window);

    /// Builds a new menu bar; the one before is deleted.
    void install(const MenuTree& tree);
    /// For keys that no shortcut matched: F10, and the items' own keys by their place on the
    /// keyboard where the layout has no Latin letters. False: the key is none of them.
    bool press(const QKeyEvent& key);
    QMenuBar* bar() const { return bar_; }

  private:
    void addItem(QMenu& menu, const MenuItem& item);
    void perform(MenuAction action);
    void focusMoved(QWidget* to);
    void enableEditing();
    QtLogView* target() const;

    QMainWindow& window_;
    QPointer<QMenuBar> bar_;
    QPointer<QWidget> focused_; ///< the last that is not a menu
    QList<QAction*> editing_;   ///< of bar_
    QAction* copy_ = nullptr;   ///< one of them
    QMetaObject::Connection selecting_;
};

} // namespace oxlade
