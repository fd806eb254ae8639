// Runs with a keeper, and which processes they leave.
#pragma once

#include "tests/platform/recorded_run.h"
#include "tests/testing/processes.h"
#include "tests/testing/temporary_folder.h"

#include <csignal>
#include <fcntl.h>

namespace oxlade::test {

/// Helper and keeper in a folder of the test's own, by which their processes are known.
class KeeperTest : public testing::Test {
  protected:
    KeeperTest() {
        std::filesystem::permissions(folder_.path(), std::filesystem::perms{0755});
        std::filesystem::copy_file(OXLADE_KEEPER, keeper_);
        std::filesystem::copy_file(OXLADE_TEST_HELPER, helper_);
        folder_.file("lock");
    }
    ~KeeperTest() override { killAll(); }

    void killAll() const {
        for (const auto& program : {helper_, keeper_})
            for (const pid_t left : processesOf(program)) kill(left, SIGKILL);
    }

    RecordedRun run(std::vector<std::string> arguments, SleepLock* lock = nullptr) const {
        return {helper_, std::move(arguments), PosixHelperProcesses(keeper_, lock)};
    }
    bool keeperIsThere() const { return !processesOf(keeper_).empty(); }
    bool keeperHasGone() const {
        return eventually([this] { return !keeperIsThere(); });
    }
    /// The only one; 0 when there are none or several.
    pid_t keeper() const {
        const auto keepers = processesOf(keeper_);
        EXPECT_EQ(keepers.size(), 1u);
        return keepers.size() == 1 ? keepers.front() : 0;
    }

    const Descriptor null_{open("/dev/null", O_RDWR | O_CLOEXEC)};
    const TemporaryFolder folder_;
    const std::string keeper_ = folder_.path("keeper");
    const std::string helper_ = folder_.path("helper");
    const std::string lock_ = folder_.path("lock");
};

} // namespace oxlade::test
