// The controller among fakes, ready for a test to play with.
#pragma once

#include "app/app_delegate.h"
#include "i18n/string_table.h"
#include "tests/support/fake_controls.h"
#include "tests/support/fake_interface.h"
#include "tests/support/fake_system.h"

#include <gtest/gtest.h>

namespace oxlade::test {

class ControllerTest : public ::testing::Test {
  protected:
    ControllerTest() {
        CurrentLanguage = 0;
        files.files[bundledHelper] = {"", true};
        files.files[bundledImage] = {validImage(3'145'728), false};
    }
    ~ControllerTest() override { CurrentLanguage = 0; }

    /// Starts the program and forgets what that did.
    void start() {
        delegate->applicationDidFinishLaunching();
        trace.take();
    }
    /// Starts it and checks the device with success.
    void startReady() {
        start();
        delegate->checkDevice();
        exit(0);
        trace.take();
    }
    std::shared_ptr<FakeProcess> helper() { return processes.last.lock(); }
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
    std::shared_ptr<AppDelegate> delegate = std::make_shared<AppDelegate>(
        System{queue, processes, files, files, defaults, dialogs, dialogs}, interface,
        "https://oxlade.example/");
};

} // namespace oxlade::test
