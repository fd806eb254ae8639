// A user interface of fake controls that keeps the actions and the menu.
#pragma once

#include "interfaces/user_interface.h"
#include "tests/testing/fake_controls.h"

namespace oxlade::test {

class FakeInterface final : public UserInterface {
  public:
    FakeInterface(Trace& trace, FakeControls& controls) : trace_{trace}, controls_{controls} {}
    Controls buildWindow(WindowActions newActions) override {
        actions = std::move(newActions);
        trace_.add("buildWindow");
        return controls_.pointers();
    }
    void setMainMenu(const MenuTree& newMenu) override {
        menu = newMenu;
        trace_.add("setMainMenu");
    }
    void activateIgnoringOtherApps() override { trace_.add("activateIgnoringOtherApps"); }

    WindowActions actions;
    MenuTree menu;

  private:
    Trace& trace_;
    FakeControls& controls_;
};

} // namespace oxlade::test
