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

/// Not started yet. The bundle has a helper and `image`, by default a valid one of 3 MiB.
struct FakeProgram {
    explicit FakeProgram(std::string image = validImage(3'145'728)) {
        files.files[bundledHelper] = {"", true};
        files.files[bundledImage] = {std::move(image), false};
    }

    std::shared_ptr<FakeProcess> helper() { return processes.last.lock(); }
    /// The helper prints, or exits, and the main queue runs.
    void print(std::string_view bytes) {
        helper()->print(bytes);
        queue->run();
    }
    void exit(std::int32_t status) {
        helper()->exit(status);
        queue->run();
    }

    Trace trace;
    FakeControls controls{trace};
    FakeInterface interface { trace, controls };
    FakeFiles files;
    std::shared_ptr<FakeQueue> queue = std::make_shared<FakeQueue>();
    FakeProcesses processes{trace};
    FakeDefaults defaults{trace};
    FakeDialogs dialogs{trace};
    FakeSession session;
    std::shared_ptr<AppDelegate> delegate = std::make_shared<AppDelegate>(
        System{queue, processes, files, files, defaults, dialogs, dialogs, session}, interface,
        "https://oxlade.example/");
};

} // namespace oxlade::test
