// A fake program for a test to play with.
#pragma once

#include "i18n/string_table.h"
#include "tests/testing/fake_program.h"

#include <gtest/gtest.h>

namespace oxlade::test {

class ControllerTest : public ::testing::Test, protected FakeProgram {
  protected:
    ControllerTest() { CurrentLanguage = 0; }
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
};

} // namespace oxlade::test
