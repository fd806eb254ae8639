// A GoogleTest fixture with the controller among fakes.
#pragma once

#include "i18n/string_table.h"
#include "tests/testing/fake_program.h"

#include <gtest/gtest.h>

namespace oxlade::test {

class ControllerTest : public ::testing::Test, protected FakeProgram {
  protected:
    ControllerTest() { CurrentLanguage = 0; }
    ~ControllerTest() override { CurrentLanguage = 0; }

    /// Starts the program and clears the trace.
    void start() {
        delegate->applicationDidFinishLaunching();
        trace.take();
    }
    /// The same, and a device check that succeeds.
    void startReady() {
        start();
        delegate->checkDevice();
        exit(0);
        trace.take();
    }
};

} // namespace oxlade::test
