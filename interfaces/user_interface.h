// How the controller gets its window and its menu bar. Main thread.
#pragma once

#include "interfaces/controls.h"
#include "interfaces/menu.h"

#include <functional>

namespace oxlade {

/// What the controls call. Main thread; none is empty once the window is built.
struct WindowActions {
    std::function<void()> checkDevice, useBundledFirmware, chooseFirmware, installFirmware,
        languageChanged, openWebsite;
};

class UserInterface {
  public:
    virtual ~UserInterface() = default;
    /// Builds the window and every control in it, hidden and without the texts
    /// that depend on language or state. What the actions refer to outlives every
    /// event that the window gets. Called once.
    virtual Controls buildWindow(WindowActions actions) = 0;
    /// Replaces the whole menu bar. Called before the window is built, and again
    /// at each language switch.
    virtual void setMainMenu(const MenuTree& menu) = 0;
    /// Brings the program in front of the others.
    virtual void activateIgnoringOtherApps() = 0;
};

} // namespace oxlade
