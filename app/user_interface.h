// How the controller gets its window and its menu bar. Main thread.
#pragma once

#include "app/controls.h"
#include "ui/menu_tree.h"

namespace oxlade {

class AppDelegate;

class UserInterface {
  public:
    virtual ~UserInterface() = default;
    /// Builds the window and every control in it, hidden and without the texts
    /// that depend on language or state. The controls' actions are wired to
    /// `target`, which outlives every event that the window gets. Called once.
    virtual Controls buildWindow(AppDelegate& target) = 0;
    /// Replaces the whole menu bar. Called before the window is built, and again
    /// at each language switch.
    virtual void setMainMenu(const MenuTree& menu) = 0;
    /// Brings the program in front of the others.
    virtual void activateIgnoringOtherApps() = 0;
};

} // namespace oxlade
