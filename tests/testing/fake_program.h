// The controller with fakes for the system and the window.
#pragma once

#include "app/app_delegate.h"
#include "interfaces/user_interface.h"
#include "tests/testing/fake_controls.h"
#include "tests/testing/fake_system.h"

#include <utility>

namespace oxlade::test {

/// A user interface of fake controls that keeps the actions and the menu.
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

/// Not started yet.
struct FakeProgram : FakeSystem {
    using FakeSystem::FakeSystem;

    FakeControls controls{trace};
    FakeInterface interface { trace, controls };
    std::shared_ptr<AppDelegate> delegate =
        std::make_shared<AppDelegate>(system(), interface, "https://oxlade.example/");
};

} // namespace oxlade::test
