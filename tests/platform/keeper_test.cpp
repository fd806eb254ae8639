// The keeper: beside real runs, after the end of the program, and by itself.
#include "interfaces/keeper_protocol.h"
#include "tests/platform/no_pidfd.h"
#include "tests/platform/recorded_run.h"
#include "tests/testing/processes.h"
#include "tests/testing/temporary_folder.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <linux/sockios.h>
#include <random>
#include <sstream>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace oxlade::test {
namespace {

// Programs in a folder of the test's own, by which their processes are known.
class KeeperTest : public testing::Test {
  protected:
    KeeperTest() {
        std::filesystem::permissions(folder_.path(), std::filesystem::perms{0755});
        std::filesystem::copy_file(OXLADE_KEEPER, keeper_);
        std::filesystem::copy_file(OXLADE_TEST_HELPER, helper_);
        std::filesystem::copy_file(OXLADE_TEST_DRIVER, driver_);
        folder_.file("lock");
    }
    ~KeeperTest() override { killAll(); }

    void killAll() const {
        for (const auto& program : {helper_, keeper_, driver_})
            for (const pid_t left : processesOf(program)) kill(left, SIGKILL);
    }

    RecordedRun run(std::vector<std::string> arguments, SleepLock* lock = nullptr) const {
        return {helper_, std::move(arguments), PosixHelperProcesses(keeper_, lock)};
    }
    bool keeperIsThere() const { return !processesOf(keeper_).empty(); }
    bool keeperHasGone() const {
        return eventually([this] { return !keeperIsThere(); });
    }
    // The only one; 0 when there are none or several.
    pid_t keeper() const {
        const auto keepers = processesOf(keeper_);
        EXPECT_EQ(keepers.size(), 1u);
        return keepers.size() == 1 ? keepers.front() : 0;
    }

    const Descriptor null_{open("/dev/null", O_RDWR | O_CLOEXEC)};
    const TemporaryFolder folder_;
    const std::string keeper_ = folder_.path("keeper");
    const std::string helper_ = folder_.path("helper");
    const std::string driver_ = folder_.path("driver");
    const std::string lock_ = folder_.path("lock");
};

TEST_F(KeeperTest, EndsWithTheRunWhileAGrandchildHoldsThePipe) {
    auto over = run({"child", lock_, "10"});
    EXPECT_EQ(over.finish(), 5);
    EXPECT_TRUE(keeperHasGone());
    EXPECT_EQ(processesOf(helper_).size(), 1u) << "the grandchild should still be there";
}

TEST_F(KeeperTest, EndsWhenTheRunIsOverWhileAProcessWithTheHelpersNumberLives) {
    const auto pipe = makePipe();
    ChildProcess helper;
    ASSERT_EQ(spawn({helper_, {"close", lock_}, nullptr, &pipe->second, &pipe->second}, helper), 0);
    auto keeper = Keeper::start(keeper_, pipe->first);
    keeper.watch(helper);
    keeper.runIsOver();
    EXPECT_TRUE(eventually([&] { return keeper.process().reapIfEnded(); }));
    helper.kill();
}

TEST_F(KeeperTest, HasItsThreeStreamsAPidfdAndNothingElse) {
    const Descriptor inheritable(open("/dev/null", O_RDONLY));
    auto going = run({"until-gone", lock_});
    ASSERT_TRUE(going.startUntil("waiting"));
    const pid_t process = keeper();
    const auto kinds = [&] {
        std::multiset<std::string> found;
        for (const auto& name : openFiles(process))
            found.insert(name.starts_with("anon_inode") ? name : name.substr(0, name.find('[')));
        return found;
    };
    const std::multiset<std::string> own{"/dev/null", "anon_inode:[pidfd]", "pipe:", "socket:"};
    EXPECT_TRUE(eventually([&] { return kinds() == own; })) << testing::PrintToString(kinds());
    EXPECT_TRUE(
        eventually([&] { return std::filesystem::read_symlink(inProc(process, "cwd")) == "/"; }));
    EXPECT_EQ(getsid(process), process);
}

TEST_F(KeeperTest, ItsDeathStopsNeitherTheRunNorTheSleepLockAndLeavesNoZombie) {
    const auto run = [this] {
        WatchedLock watched;
        LockAtOnce lock{std::move(watched.lock)};
        folder_.file("lock");
        auto going = this->run({"until-gone", lock_}, &lock);
        ASSERT_TRUE(going.startUntil("waiting"));
        const pid_t process = keeper();
        ASSERT_NE(process, 0);
        kill(process, SIGKILL);
        EXPECT_TRUE(eventually([&] { return stateOf(process) == '\0'; })) << "a zombie";
        EXPECT_TRUE(watched.isHeld());
        folder_.remove("lock");
        EXPECT_TRUE(going.waitForExit());
        EXPECT_EQ(going.process->terminationStatus(), 0);
        EXPECT_TRUE(watched.isReleased());
    };
    run();
    std::thread([&] {
        ASSERT_TRUE(forbidPidfds());
        run();
    }).join();
}

TEST_F(KeeperTest, IgnoresTheSignalsThatEndTheProgram) {
    auto going = run({"until-gone", lock_});
    ASSERT_TRUE(going.startUntil("waiting"));
    const pid_t process = keeper();
    ASSERT_TRUE(eventually([&] {
        return std::filesystem::read_symlink(inProc(process, "cwd")) == "/";
    })) << "by then it ignores them";
    for (const int signal : {SIGHUP, SIGINT, SIGTERM, SIGQUIT, SIGPIPE}) kill(process, signal);
    kill(process, SIGSTOP); // once it has stopped, it has received the others
    EXPECT_TRUE(eventually([&] { return stateOf(process) == 'T' || !keeperIsThere(); }));
    EXPECT_TRUE(keeperIsThere());
    kill(process, SIGCONT);
}

TEST_F(KeeperTest, ARunGoesOnWithoutOneThatCannotStart) {
    for (const std::string& path : {folder_.path("missing"), folder_.file("plain"), folder_.path(),
                                    folder_.program("script", "#!/nowhere/interpreter\n"),
                                    std::string("/bin/false"), std::string()}) {
        RecordedRun alone(helper_, {"print", "100000", "6"}, PosixHelperProcesses(path));
        EXPECT_EQ(alone.finish(), 6) << path;
        EXPECT_EQ(alone.text().size(), 100000u) << path;
    }
}

TEST_F(KeeperTest, AThousandRunsLeaveNoDescriptorNoThreadAndNoZombie) {
    std::vector<std::shared_ptr<HelperProcess>> kept;
    const auto once = [&](const std::string& path) {
        RecordedRun one(path, {"print", "100"}, PosixHelperProcesses(keeper_));
        EXPECT_EQ(one.finish().has_value(), path == helper_);
        kept.push_back(one.process);
    };
    const auto noChildren = [] {
        siginfo_t ended{};
        return waitid(P_ALL, 0, &ended, WEXITED | WNOHANG | WNOWAIT) < 0 && errno == ECHILD;
    };
    once(helper_);
    ASSERT_TRUE(eventually(noChildren));
    // A sanitizer may have a thread of its own.
    ASSERT_TRUE(eventually([] { return countOf(getpid(), "task") <= 2; }));
    const auto threads = countOf(getpid(), "task");
    const auto descriptors = countOf(getpid(), "fd");
    for (int i = 0; i < 1000; ++i) once(i % 10 == 0 ? folder_.path("missing") : helper_);
    EXPECT_TRUE(eventually(noChildren)) << "a zombie, or a keeper";
    EXPECT_TRUE(eventually([&] { return countOf(getpid(), "task") <= threads; }));
    EXPECT_LE(countOf(getpid(), "fd"), descriptors);
}

// A keeper whose program is the test.
class KeeperAlone : public KeeperTest {
  protected:
    KeeperAlone() {
        std::signal(SIGPIPE, SIG_IGN);
        auto pipe = makePipe();
        auto sockets = makeSocketPair();
        EXPECT_EQ(spawn({keeper_, {keeperProtocolVersion}, &pipe->first, &sockets->second, &null_},
                        process_),
                  0);
        readEnd_ = std::move(pipe->first);
        writeEnd_ = std::move(pipe->second);
        lifeline_ = std::move(sockets->first);
    }
    ~KeeperAlone() override { process_.kill(); }

    void tellOf(pid_t helper, const Descriptor& end = {}) {
        KeeperMessage message{KeeperNews::helperStarted, helper};
        iovec content{&message, sizeof message};
        alignas(cmsghdr) char control[CMSG_SPACE(sizeof(int))] = {};
        msghdr header{nullptr, 0, &content, 1, end ? control : nullptr, end ? sizeof control : 0,
                      0};
        if (cmsghdr* const part = CMSG_FIRSTHDR(&header)) {
            *part = {CMSG_LEN(sizeof(int)), SOL_SOCKET, SCM_RIGHTS};
            *reinterpret_cast<int*>(CMSG_DATA(part)) = end.get();
        }
        EXPECT_EQ(sendmsg(lifeline_.get(), &header, 0), ssize_t{sizeof message});
    }
    bool hasEnded() {
        return eventually([this] { return process_.reapIfEnded(); });
    }

    ChildProcess process_;
    Descriptor readEnd_;
    Descriptor writeEnd_;
    Descriptor lifeline_;
};

TEST_F(KeeperAlone, WithoutTheHelpersNumberReadsUntilNobodyCanWrite) {
    lifeline_.reset();
    const std::string flood(200000, 'x'); // more than the pipe holds
    EXPECT_EQ(write(writeEnd_.get(), flood.data(), flood.size()), ssize_t{200000});
    EXPECT_FALSE(process_.reapIfEnded());
    writeEnd_.reset();
    EXPECT_TRUE(hasEnded());
}

TEST_F(KeeperAlone, ReceivesAMessageThatArrivesInParts) {
    const KeeperMessage message{KeeperNews::runIsOver, 0};
    const auto* const bytes = reinterpret_cast<const char*>(&message);
    EXPECT_EQ(write(lifeline_.get(), bytes, 4), 4);
    EXPECT_TRUE(eventually([this] {
        int unreceived = 0;
        return ioctl(lifeline_.get(), SIOCOUTQ, &unreceived) == 0 && unreceived == 0;
    }));
    EXPECT_EQ(write(lifeline_.get(), bytes + 4, sizeof message - 4), ssize_t{sizeof message - 4});
    EXPECT_TRUE(hasEnded());
}

// By the time that the message arrives, the number may belong to another process.
TEST_F(KeeperAlone, WaitsForTheProcessOfThePidfdItIsGiven) {
    const auto ended = makePipe(); // its end is readable, as a pidfd's is
    EXPECT_EQ(write(ended->second.get(), "", 1), 1);
    tellOf(getpid(), ended->first);
    lifeline_.reset();
    EXPECT_TRUE(hasEnded());
}

TEST_F(KeeperAlone, StaysForAHelperThatHasClosedItsOutput) {
    ChildProcess helper;
    ASSERT_EQ(spawn({helper_, {"close", lock_}, nullptr, &writeEnd_, &writeEnd_}, helper), 0);
    tellOf(helper.number());
    writeEnd_.reset();
    pollfd output{readEnd_.get(), 0, 0};
    ASSERT_EQ(poll(&output, 1, -1), 1) << "nobody can write any more";
    lifeline_.reset();
    EXPECT_TRUE(eventually([this] { // waits without a time-out for output and the helper's end
        std::istringstream call(lineOf(process_.number(), "syscall"));
        std::string number, descriptors, count, timeout;
        call >> number >> descriptors >> count >> timeout;
        return count == "0x2" && (timeout == "0xffffffff" || timeout == "0x0");
    }));
    EXPECT_FALSE(process_.reapIfEnded());
    folder_.remove("lock");
    EXPECT_TRUE(hasEnded());
    EXPECT_TRUE(eventually([&] { return helper.reapIfEnded(); }));
}

TEST_F(KeeperTest, EndsWithStatusTwoUnlessTheProgramStartedIt) {
    const auto pipe = makePipe();
    const auto sockets = makeSocketPair();
    const std::string version = keeperProtocolVersion;
    const std::vector<std::tuple<std::vector<std::string>, const Descriptor*, const Descriptor*>>
        cases{{{version}, &null_, &sockets->second},
              {{version}, &pipe->first, &null_},
              {{}, &pipe->first, &sockets->second},
              {{"0"}, &pipe->first, &sockets->second},
              {{version, version}, &pipe->first, &sockets->second}};
    for (const auto& [arguments, output, lifeline] : cases) {
        ChildProcess process;
        ASSERT_EQ(spawn({keeper_, arguments, output, lifeline, &null_}, process), 0);
        EXPECT_TRUE(eventually([&] { return process.reapIfEnded(); }));
        EXPECT_EQ(process.exitStatus(), 2);
    }
}

struct Ending {
    std::string how;
    int signal = 0;
    bool leavesChild = false;
    bool hasPidfds = true;
};

// A program that runs a helper and ends.
class ProgramTest : public KeeperTest {
  protected:
    ProgramTest() { prctl(PR_SET_CHILD_SUBREAPER, 1); }
    ~ProgramTest() override {
        killAll();
        while (waitpid(-1, nullptr, 0) > 0) {
        }
        prctl(PR_SET_CHILD_SUBREAPER, 0);
    }
    // What the driver writes first. `processes`: see there.
    char start(const Ending& ending, int processes, std::vector<std::string> helperArguments,
               const Descriptor& lock = {}) {
        auto output = makePipe();
        std::vector<std::string> all{driver_, ending.how, std::to_string(processes), keeper_,
                                     helper_};
        all.insert(all.end(), helperArguments.begin(), helperArguments.end());
        program_ = fork();
        if (program_ == 0) become(all, ending, processes, output->second, lock);
        output->second.reset();
        char byte = 0;
        EXPECT_EQ(read(output->first.get(), &byte, 1), 1);
        return byte;
    }
    // It ends as it was meant to, and not by a fault on the way.
    void end(const Ending& ending) const {
        const int signal = ending.how == "abort" ? SIGABRT : ending.signal;
        if (ending.signal != 0) kill(program_, ending.signal);
        int status = -1;
        ASSERT_EQ(waitpid(program_, &status, 0), program_);
        if (signal == 0) {
            EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
        } else {
            EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == signal) << status;
        }
    }

    pid_t program_ = 0;

  private:
    [[noreturn]] static void become(std::vector<std::string>& all, const Ending& ending,
                                    int processes, const Descriptor& output,
                                    const Descriptor& lock) {
        std::vector<char*> vector;
        for (auto& argument : all) vector.push_back(argument.data());
        vector.push_back(nullptr);
        dup2(output.get(), 1);
        if (lock)
            dup2(lock.get(), 3);
        else
            close(3);
        const uid_t user = 2'000'000'000 + static_cast<uid_t>(getpid()); // has no other process
        if (processes >= 0 && setresuid(user, user, user) != 0) _exit(126);
        if (!ending.hasPidfds && !forbidPidfds()) _exit(126);
        for (const int each : {SIGINT, SIGQUIT}) // which a shell's background jobs ignore
            std::signal(each, SIG_DFL);
        execv(vector.front(), vector.data());
        _exit(127);
    }
};

// The test is the subreaper and reaps nobody: a helper that has ended stays a zombie.
class KeeperAfterTheEnd : public ProgramTest, public testing::WithParamInterface<Ending> {};

TEST_P(KeeperAfterTheEnd, AStrictHelperFinishesAndNothingOfOursIsLeft) {
    const auto& ending = GetParam();
    const auto marker = folder_.path("finished");
    WatchedLock watched;
    std::vector<std::string> arguments{"strict", marker, lock_};
    if (ending.leavesChild) arguments.push_back(folder_.file("lock of the child"));
    ASSERT_EQ(start(ending, -1, arguments, watched.lock), 'r');
    watched.lock.reset();
    ASSERT_NO_FATAL_FAILURE(end(ending));
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
        ASSERT_EQ(start(killed, processes, {"until-gone", lock}), answer) << processes;
        EXPECT_EQ(keeperIsThere(), hasKeeper) << processes;
        if (answer == 'r')
            ASSERT_NO_FATAL_FAILURE(end(killed));
        else
            waitpid(program_, nullptr, 0);
        folder_.remove("case");
        while (waitpid(-1, nullptr, 0) > 0) { // until helper and keeper have ended
        }
    }
}

} // namespace
} // namespace oxlade::test
