// A program that runs a helper and ends, and the processes that it leaves.
#include "tests/platform/keeper_fixture.h"
#include "tests/platform/no_pidfd.h"

#include <chrono>
#include <cstdlib>
#include <random>
#include <sys/resource.h>
#include <sys/wait.h>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace oxlade::test {
namespace {

struct Ending {
    std::string how; ///< "wait" for a signal, "return", "exit", "abort"
    int signal = 0;
    bool leavesChild = false;
    bool hasPidfds = true;
};

// Becomes a user who has no other process and may have `more` of them.
bool allowProcesses(int more) {
    const uid_t user = 2'000'000'000 + static_cast<uid_t>(getpid());
    const rlim_t count = 1 + static_cast<rlim_t>(more);
    const rlimit limit{count, count};
    return setresuid(user, user, user) == 0 && setrlimit(RLIMIT_NPROC, &limit) == 0;
}

// The processes of the program become children of the test when it ends.
class ProgramTest : public KeeperTest {
  protected:
    ProgramTest() { prctl(PR_SET_CHILD_SUBREAPER, 1); }
    ~ProgramTest() override {
        if (program_ > 0) kill(program_, SIGKILL);
        killAll();
        reapAll();
        prctl(PR_SET_CHILD_SUBREAPER, 0);
    }
    static void reapAll() {
        while (waitpid(-1, nullptr, 0) > 0) {
        }
    }
    // Starts a program, which may have `processes` more, but for -1. What it writes first: r once
    // the helper has written, x when the launch is refused because of too many processes.
    char start(const Ending& ending, std::vector<std::string> arguments, Descriptor lock = {},
               int processes = -1) {
        auto output = makePipe();
        program_ = fork();
        if (program_ == 0) {
            if (processes >= 0 && !allowProcesses(processes)) _exit(126);
            if (!ending.hasPidfds && !forbidPidfds()) _exit(126);
            for (const int each : {SIGHUP, SIGINT, SIGQUIT}) // ignored by nohup, background jobs
                std::signal(each, SIG_DFL);
            runProgram(ending, std::move(arguments), std::move(lock), output->second);
            std::exit(0);
        }
        output->second.reset();
        char byte = 0;
        EXPECT_EQ(read(output->first.get(), &byte, 1), 1);
        return byte;
    }
    // It ends as it was meant to, and not by a fault on the way.
    void end(const Ending& ending) {
        if (ending.signal != 0) kill(program_, ending.signal);
        int status = -1;
        EXPECT_EQ(waitpid(program_, &status, 0), program_);
        program_ = 0;
        const int signal = ending.how == "abort" ? SIGABRT : ending.signal;
        EXPECT_EQ(WIFSIGNALED(status) ? WTERMSIG(status) : 0, signal);
        EXPECT_EQ(WEXITSTATUS(status), 0);
    }

    pid_t program_ = 0;

  private:
    void runProgram(const Ending& ending, std::vector<std::string> arguments, Descriptor lock,
                    const Descriptor& output) const {
        LockAtOnce locks{std::move(lock)};
        auto going = run(std::move(arguments), &locks);
        const auto refusal = going.process->launch();
        if (!refusal && !eventually([&] { return going.chunks() > 0; })) return;
        const bool hasTooMany = refusal == std::system_category().message(EAGAIN);
        if (write(output.get(), hasTooMany ? "x" : refusal ? "?" : "r", 1) != 1 || refusal) return;
        while (ending.how == "wait") pause();
        if (ending.how == "exit") std::exit(0);
        if (ending.how == "abort") std::abort();
    }
};

// The test reaps nobody: a helper that has ended stays a zombie.
class KeeperAfterTheEnd : public ProgramTest, public testing::WithParamInterface<Ending> {};

TEST_P(KeeperAfterTheEnd, AStrictHelperFinishesAndNothingOfOursIsLeft) {
    const auto& ending = GetParam();
    const auto marker = folder_.path("finished");
    WatchedLock watched;
    std::vector<std::string> arguments{"strict", marker, lock_};
    if (ending.leavesChild) arguments.push_back(folder_.file("lock of the child"));
    ASSERT_EQ(start(ending, arguments, std::move(watched.lock)), 'r');
    end(ending);
    EXPECT_TRUE(keeperIsThere());
    EXPECT_TRUE(watched.isHeld()) << "the computer stays awake";
    folder_.remove("lock"); // the helper writes more than the pipe holds
    EXPECT_TRUE(eventually([&] { return std::filesystem::exists(marker); }));
    EXPECT_TRUE(keeperHasGone());
    EXPECT_TRUE(watched.isReleased()) << "the computer may sleep again";
    if (ending.leavesChild) folder_.remove("lock of the child");
}

std::vector<Ending> endings() {
    std::vector<Ending> all;
    for (const bool leavesChild : {false, true}) {
        for (const int signal : {SIGKILL, SIGINT, SIGHUP, SIGTERM, SIGQUIT})
            all.push_back({"wait", signal, leavesChild});
        for (const char* const how : {"return", "exit", "abort"})
            all.push_back({how, 0, leavesChild});
    }
    all.push_back({"wait", SIGKILL, false, false});
    all.push_back({"wait", SIGKILL, true, false});
    return all;
}

INSTANTIATE_TEST_SUITE_P(Each, KeeperAfterTheEnd, testing::ValuesIn(endings()),
                         [](const auto& test) {
                             const Ending& ending = test.param;
                             return ending.how + std::to_string(ending.signal) +
                                    (ending.leavesChild ? "WithATalkingChild" : "") +
                                    (ending.hasPidfds ? "" : "WithoutPidfds");
                         });

// Its orphans, a helper and a keeper, become children of the test. The first program is not
// killed. For 10,000 kills: --gtest_repeat=200.
TEST_F(ProgramTest, ThatIsKilledAtAnyTimeLeavesAHelperThatFinishes) {
    std::mt19937 random(std::random_device{}());
    std::chrono::nanoseconds wholeRun{};
    for (int kills = -1; kills < 50; ++kills) {
        const auto begin = std::chrono::steady_clock::now();
        program_ = fork();
        if (program_ == 0) { // its helper writes more than a pipe holds
            auto going = run({"strict", folder_.path("finished"), folder_.path("missing")});
            _exit(going.finish() == 0 ? 0 : 1);
        }
        if (kills >= 0) {
            std::this_thread::sleep_for(wholeRun *
                                        std::uniform_real_distribution(0.0, 1.2)(random));
            kill(program_, SIGKILL);
        }
        int status = 0;
        for (pid_t ended = 0; (ended = waitpid(-1, &status, 0)) > 0;)
            EXPECT_EQ(status, ended == program_ && status != 0 ? SIGKILL : 0);
        if (kills < 0) wholeRun = std::chrono::steady_clock::now() - begin;
    }
}

TEST_F(ProgramTest, ThatMayHaveFewProcessesRunsTheHelperWithoutAKeeper) {
#ifdef __SANITIZE_THREAD__
    GTEST_SKIP() << "the sanitizer starts a thread of its own";
#endif
    if (geteuid() != 0) GTEST_SKIP() << "only root can become a user without processes";
    const std::vector<std::tuple<int, char, bool>> cases{
        {0, 'x', false}, {1, 'x', false}, {2, 'r', false}, {3, 'r', true}};
    for (const auto& [processes, answer, hasKeeper] : cases) {
        const auto lock = folder_.file("case");
        const Ending killed{"wait", SIGKILL};
        ASSERT_EQ(start(killed, {"until-gone", lock}, {}, processes), answer) << processes;
        EXPECT_EQ(keeperIsThere(), hasKeeper) << processes;
        if (answer == 'r') end(killed);
        folder_.remove("case");
        reapAll();
    }
}

} // namespace
} // namespace oxlade::test
