// A computer without any message bus.
#include "platform/desktop_settings.h"
#include "platform/sleep_lock.h"
#include "tests/platform/recorded_run.h"

#include <QCoreApplication>

#include <cstdlib>
#include <gtest/gtest.h>

namespace oxlade {
namespace {

class WithoutABus : public testing::TestWithParam<const char*> {
  protected:
    WithoutABus() {
        setenv("XDG_RUNTIME_DIR", "/nonexistent", 1);
        setenv("XDG_CONFIG_HOME", "/nonexistent", 1);
        for (const char* const bus : {"DBUS_SESSION_BUS_ADDRESS", "DBUS_SYSTEM_BUS_ADDRESS"})
            setenv(bus, GetParam(), 1);
        if (*GetParam() == '\0') unsetenv("DBUS_SESSION_BUS_ADDRESS");
        application_ = std::make_unique<QCoreApplication>(count_, arguments_);
    }

    int count_ = 1;
    char name_[5] = "test";
    char* arguments_[2] = {name_, nullptr};
    std::unique_ptr<QCoreApplication> application_;
};

TEST_P(WithoutABus, TheDesktopHasNoWishes) {
    const DesktopSettings desktop;
    for (int i = 0; i < 20; ++i) QCoreApplication::processEvents();
    EXPECT_FALSE(desktop.shouldReduceMotion());
    EXPECT_EQ(desktop.colorScheme(), std::nullopt);
}

TEST_P(WithoutABus, ARunGoesOnWithoutASleepLock) {
    PosixSleepLock lock{[] { return std::string("the reason"); }};
    RecordedRun going(OXLADE_TEST_HELPER, {"print", "10", "2"}, PosixHelperProcesses({}, &lock));
    ASSERT_EQ(going.process->launch(), std::nullopt);
    for (int i = 0; i < 20; ++i) QCoreApplication::processEvents();
    EXPECT_TRUE(going.waitForExit());
    EXPECT_EQ(going.process->terminationStatus(), 2);
}

INSTANTIATE_TEST_SUITE_P(, WithoutABus, testing::Values("", "unix:path=/nonexistent/bus"),
                         [](const auto& test) {
                             return std::string(*test.param == '\0' ? "Unnamed" : "Gone");
                         });

} // namespace
} // namespace oxlade
