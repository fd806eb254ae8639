// The keeper beside real runs, also of a program that dies in mid-run.
#include "platform/child_process.h"
#include "tests/platform/processes.h"
#include "tests/platform/recorded_run.h"
#include "tests/platform/temporary_folder.h"
#include "tests/platform/watched_lock.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace oxlade {
namespace {

// Programs in a folder of the test's own, so that their processes are known by it.
class KeeperTest : public testing::Test {
  protected:
    KeeperTest() {
        std::filesystem::copy_file(OXLADE_KEEPER, keeper_);
        std::filesystem::copy_file(OXLADE_TEST_HELPER, helper_);
        folder_.file("lock");
    }
    ~KeeperTest() override {
        for (const pid_t left : processesOf(helper_)) kill(left, SIGKILL);
        for (const pid_t left : processesOf(keeper_)) kill(left, SIGKILL);
    }

    RecordedRun run(std::vector<std::string> arguments) const {
        return {helper_, std::move(arguments), PosixHelperProcesses(keeper_)};
    }
    bool keeperIsThere() const { return !processesOf(keeper_).empty(); }
    // The one that there is; it is no zombie afterwards either.
    void killKeeper() const {
        const auto keepers = processesOf(keeper_);
        ASSERT_EQ(keepers.size(), 1u);
        kill(keepers.front(), SIGKILL);
        EXPECT_TRUE(eventually([&] { return kill(keepers.front(), 0) != 0 && errno == ESRCH; }));
    }

    const TemporaryFolder folder_;
    const std::string keeper_ = folder_.path("keeper");
    const std::string helper_ = folder_.path("helper");
    const std::string lock_ = folder_.path("lock");
};

TEST_F(KeeperTest, StandsBesideARunAndGoesWithIt) {
    auto going = run({"until-gone", lock_});
    ASSERT_EQ(going.process->launch(), std::nullopt);
    ASSERT_TRUE(going.waitForText("waiting"));
    EXPECT_EQ(processesOf(keeper_).size(), 1u);
    folder_.remove("lock");
    EXPECT_TRUE(going.waitForExit());
    EXPECT_TRUE(eventually([&] { return !keeperIsThere(); }));
}

TEST_F(KeeperTest, GoesWithTheRunAlsoWhenAGrandchildHoldsThePipe) {
    auto over = run({"child", lock_, "10"});
    ASSERT_EQ(over.process->launch(), std::nullopt);
    EXPECT_TRUE(over.waitForExit());
    EXPECT_TRUE(eventually([&] { return !keeperIsThere(); }));
    EXPECT_EQ(processesOf(helper_).size(), 1u) << "the grandchild should still be there";
}

TEST_F(KeeperTest, GoesAtOnceWhenTheHelperCannotBeStarted) {
    {
        RecordedRun going(OXLADE_TEST_HELPER, {"print", "1"}, PosixHelperProcesses(keeper_));
        ASSERT_EQ(going.process->launch(), std::nullopt) << "there is a keeper to be started";
        EXPECT_TRUE(going.waitForExit());
    }
    RecordedRun refused(folder_.path("missing"), {}, PosixHelperProcesses(keeper_));
    EXPECT_NE(refused.process->launch(), std::nullopt);
    EXPECT_TRUE(eventually([&] { return !keeperIsThere(); }));
}

// What the descriptors of a process are, without their numbers.
std::multiset<std::string> kindsOfDescriptors(const std::string& process) {
    std::multiset<std::string> kinds;
    std::error_code error;
    for (const auto& name : namesIn(process + "/fd")) {
        const auto link = std::filesystem::path(process) / "fd" / name;
        const auto kind = std::filesystem::read_symlink(link, error).string();
        kinds.insert(kind.starts_with("anon_inode") ? kind : kind.substr(0, kind.find('[')));
    }
    return kinds;
}

TEST_F(KeeperTest, HasNoDescriptorsButItsThreeStreamsAndTheHelpersEnd) {
    const int careless = open("/dev/null", O_RDONLY);
    auto going = run({"until-gone", lock_});
    ASSERT_EQ(going.process->launch(), std::nullopt);
    ASSERT_TRUE(going.waitForText("waiting"));
    const auto keepers = processesOf(keeper_);
    ASSERT_EQ(keepers.size(), 1u);
    const auto process = "/proc/" + std::to_string(keepers.front());
    const std::multiset<std::string> own{"/dev/null", "anon_inode:[pidfd]", "pipe:", "socket:"};
    EXPECT_TRUE(eventually([&] { return kindsOfDescriptors(process) == own; }));
    EXPECT_TRUE(eventually([&] { return std::filesystem::read_symlink(process + "/cwd") == "/"; }));
    close(careless);
}

TEST_F(KeeperTest, IsNotMissedWhenItDiesAndLeavesNoZombie) {
    auto going = run({"until-gone", lock_});
    ASSERT_EQ(going.process->launch(), std::nullopt);
    ASSERT_TRUE(going.waitForText("waiting"));
    ASSERT_NO_FATAL_FAILURE(killKeeper());
    folder_.remove("lock");
    EXPECT_TRUE(going.waitForExit());
    EXPECT_EQ(going.process->terminationStatus(), 0);
}

TEST_F(KeeperTest, ItsDeathDoesNotLetTheComputerSleep) {
    WatchedLock watched;
    LockAtOnce lock{std::move(watched.lock)};
    RecordedRun going(helper_, {"until-gone", lock_}, PosixHelperProcesses(keeper_, &lock));
    ASSERT_EQ(going.process->launch(), std::nullopt);
    ASSERT_TRUE(going.waitForText("waiting"));
    ASSERT_NO_FATAL_FAILURE(killKeeper());
    EXPECT_TRUE(watched.isHeld()) << "nobody holds the lock any more";
    folder_.remove("lock");
    EXPECT_TRUE(going.waitForExit());
    EXPECT_TRUE(watched.isReleasedWithin(2000)) << "the computer may sleep again";
}

TEST_F(KeeperTest, NoSignalThatEndsTheProgramEndsIt) {
    auto going = run({"until-gone", lock_});
    ASSERT_EQ(going.process->launch(), std::nullopt);
    ASSERT_TRUE(going.waitForText("waiting"));
    const auto keepers = processesOf(keeper_);
    ASSERT_EQ(keepers.size(), 1u);
    const auto isAtRoot = [&] {
        return std::filesystem::read_symlink("/proc/" + std::to_string(keepers.front()) + "/cwd") ==
               "/";
    };
    ASSERT_TRUE(eventually(isAtRoot)) << "by then it has prepared itself";
    for (const int signal : {SIGHUP, SIGINT, SIGTERM, SIGQUIT, SIGPIPE})
        kill(keepers.front(), signal);
    // Once it stands still, what came before has been dealt with.
    kill(keepers.front(), SIGSTOP);
    const auto state = [&] { return stateOf(keepers.front()).value_or('Z'); };
    EXPECT_TRUE(eventually([&] { return state() == 'T' || state() == 'Z'; }));
    EXPECT_EQ(state(), 'T') << "it has ended";
    EXPECT_EQ(processesOf(keeper_), keepers);
    EXPECT_EQ(getsid(keepers.front()), keepers.front());
    kill(keepers.front(), SIGCONT);
}

TEST_F(KeeperTest, ARunGoesOnWithoutOneThatCannotStart) {
    for (const std::string& path : {folder_.path("missing"), folder_.file("plain"), folder_.path(),
                                    folder_.program("script", "#!/nowhere/interpreter\n"),
                                    std::string("/bin/false"), std::string()}) {
        RecordedRun alone(helper_, {"print", "100000", "6"}, PosixHelperProcesses(path));
        EXPECT_EQ(alone.process->launch(), std::nullopt) << path;
        EXPECT_TRUE(alone.waitForExit()) << path;
        EXPECT_EQ(alone.text().size(), 100000u) << path;
        EXPECT_EQ(alone.process->terminationStatus(), 6) << path;
    }
}

TEST_F(KeeperTest, RunByHandItSaysNoAndGoes) {
    ChildProcess process;
    const Descriptor nowhere(open("/dev/null", O_RDWR | O_CLOEXEC));
    ASSERT_EQ(spawn({keeper_, {}, &nowhere, &nowhere, &nowhere}, process), 0);
    int status = 0;
    ASSERT_EQ(waitpid(process.number(), &status, 0), process.number());
    EXPECT_EQ(WEXITSTATUS(status), 2);
}

TEST_F(KeeperTest, AThousandRunsLeaveNoDescriptorNoThreadAndNoZombie) {
    const auto once = [this](const std::string& path) {
        RecordedRun one(path, {"print", "100"}, PosixHelperProcesses(keeper_));
        if (!one.process->launch()) {
            ASSERT_TRUE(one.waitForExit());
        }
    };
    const auto count = [](const char* folder) { return namesIn(folder).size(); };
    once(helper_);
    ASSERT_TRUE(eventually([&] { return waitpid(-1, nullptr, WNOHANG) < 0; }));
    ASSERT_TRUE(eventually([&] { return count("/proc/self/task") <= 2; }));
    const auto threads = count("/proc/self/task"); // a sanitizer may have one of its own
    const auto descriptors = count("/proc/self/fd");
    for (int i = 0; i < 1000; ++i) once(i % 10 == 0 ? folder_.path("missing") : helper_);
    EXPECT_TRUE(eventually([&] { return count("/proc/self/task") <= threads; }));
    EXPECT_EQ(count("/proc/self/fd"), descriptors);
    EXPECT_TRUE(eventually([&] { return !keeperIsThere(); }));
    EXPECT_TRUE(eventually([] { // whatever has ended is left for whose it is
        siginfo_t ended{};
        return waitid(P_ALL, 0, &ended, WEXITED | WNOHANG | WNOWAIT) < 0 && errno == ECHILD;
    })) << "a zombie";
}

// The program's end, and whether the helper leaves a talking child behind.
using Ending = std::tuple<std::string, int, bool>;

class KeeperAfterTheEnd : public KeeperTest, public testing::WithParamInterface<Ending> {
  protected:
    // Starts the program and waits until the helper has been heard. `sleepLock` is
    // handed on.
    void startProgram(const std::vector<std::string>& helperArguments, const Descriptor& lock) {
        auto output = makePipe();
        ASSERT_TRUE(output);
        program_ = fork();
        if (program_ == 0) becomeProgram(helperArguments, output->second, lock);
        output->second.reset();
        char byte = 0;
        ASSERT_EQ(read(output->first.get(), &byte, 1), 1);
    }
    // A strict helper needs a while, so that the program's end lies within its run.
    std::vector<std::string> strictHelper(bool leavesChild) const {
        return {leavesChild ? "strict-child" : "strict", marker_, "700", lock_};
    }
    // It ends as it was meant to; a fault on the way out would end it otherwise.
    void endProgram(const std::string& end, int signal) {
        if (signal != 0) kill(program_, signal);
        int status = -1;
        ASSERT_EQ(waitpid(program_, &status, 0), program_);
        if (end == "abort") signal = SIGABRT;
        if (signal == 0) {
            EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
        } else {
            EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == signal) << status;
        }
    }

    const std::string marker_ = folder_.path("finished");
    pid_t program_ = 0;

  private:
    [[noreturn]] void becomeProgram(const std::vector<std::string>& helperArguments,
                                    const Descriptor& output, const Descriptor& lock) {
        std::vector<std::string> all{OXLADE_TEST_DRIVER, std::get<0>(GetParam()), keeper_, helper_};
        all.insert(all.end(), helperArguments.begin(), helperArguments.end());
        std::vector<char*> vector;
        vector.reserve(all.size() + 1);
        for (auto& argument : all) vector.push_back(argument.data());
        vector.push_back(nullptr);
        dup2(output.get(), 1);
        if (lock)
            dup2(lock.get(), 3);
        else
            close(3);
        execv(OXLADE_TEST_DRIVER, vector.data());
        _exit(127);
    }
};

TEST_P(KeeperAfterTheEnd, AStrictHelperFinishesAndNothingOfOursIsLeft) {
    const auto& [end, signal, leavesChild] = GetParam();
    WatchedLock watched;
    startProgram(strictHelper(leavesChild), watched.lock);
    watched.lock.reset();
    endProgram(end, signal);
    ASSERT_FALSE(std::filesystem::exists(marker_)) << "the program should have ended in mid-run";
    EXPECT_TRUE(keeperIsThere());
    EXPECT_TRUE(watched.isHeld()) << "the computer stays awake";

    ASSERT_TRUE(eventually([&] { return std::filesystem::exists(marker_); }));
    const auto finished = std::chrono::steady_clock::now();
    EXPECT_TRUE(eventually([&] { return !keeperIsThere(); }));
    EXPECT_LT(std::chrono::steady_clock::now() - finished, std::chrono::seconds(2));
    EXPECT_TRUE(watched.isReleasedWithin(2000)) << "the computer may sleep again";
    if (leavesChild) folder_.remove("lock");
}

std::string nameOf(const testing::TestParamInfo<Ending>& info) {
    const auto& [end, signal, leavesChild] = info.param;
    return end + (signal == 0 ? "" : "Signal" + std::to_string(signal)) +
           (leavesChild ? "WithATalkingChild" : "");
}

INSTANTIATE_TEST_SUITE_P(
    Each, KeeperAfterTheEnd,
    testing::Combine(testing::Values("wait"),
                     testing::Values(SIGKILL, SIGINT, SIGHUP, SIGTERM, SIGQUIT), testing::Bool()),
    nameOf);
INSTANTIATE_TEST_SUITE_P(ByItself, KeeperAfterTheEnd,
                         testing::Combine(testing::Values("return", "exit", "abort"),
                                          testing::Values(0), testing::Bool()),
                         nameOf);

} // namespace
} // namespace oxlade
