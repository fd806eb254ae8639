// Builds the window and the menu bar for the controller. Main thread.
#pragma once

#include "interfaces/controls.h"
#include "interfaces/menu.h"

#include <functional>

namespace oxlade {

/// What the controls call, on the main thread. None is empty.
struct WindowActions {
    std::function<void()> checkDevice, useBundledFirmware, chooseFirmware, installFirmware,
        languageChanged, openWebsite;
};

class UserInterface {
  public:
    virtual ~UserInterface() = default;
    /// Builds the window and its controls: hidden, in its place on the screen, without the
    /// texts that depend on language or state. What the actions refer to must outlive the
    /// window. Called once.
    virtual Controls buildWindow(WindowActions actions) = 0;
    /// Replaces the whole menu bar. Called before the window is built and at each language
    /// switch.
    virtual void setMainMenu(const MenuTree& menu) = 0;
    /// Makes this program the active one and gives its window the keyboard. No effect before
    /// the window is built.
    virtual void activateIgnoringOtherApps() = 0;
};

} // namespace oxlade
