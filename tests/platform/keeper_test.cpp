// The keeper, beside real runs and by itself.
#include "interfaces/keeper_protocol.h"
#include "keeper/process_end.h"
#include "tests/platform/keeper_fixture.h"
#include "tests/platform/no_pidfd.h"

#include <cerrno>
#include <csignal>
#include <linux/sockios.h>
#include <sstream>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace oxlade::test {
namespace {

TEST(ProcessEnd, IsThatOfAZombieAndOfAReapedProcess) {
    const auto descriptors = countOf(getpid(), "fd");
    errno = ESRCH;
    EXPECT_FALSE(processHasEnded(getpid()));
    const pid_t process = fork();
    if (process == 0) { // may not send signals to the first process
        const uid_t user = 2'000'000'000 + static_cast<uid_t>(getpid());
        _exit((geteuid() == 0 && setresuid(user, user, user) != 0) || processHasEnded(1) ? 1 : 0);
    }
    EXPECT_TRUE(eventually([&] { return processHasEnded(process); }));
    int status = -1;
    EXPECT_EQ(waitpid(process, &status, 0), process);
    EXPECT_EQ(status, 0);
    EXPECT_TRUE(processHasEnded(process));
    EXPECT_LE(countOf(getpid(), "fd"), descriptors);
    EXPECT_LT(openProcessEnd(process), 0);
}

TEST_F(KeeperTest, EndsWithTheRunWhileAGrandchildHoldsThePipe) {
    auto over = run({"child", lock_, "10"});
    EXPECT_EQ(over.finish(), 5);
    EXPECT_TRUE(keeperHasGone());
    EXPECT_EQ(processesOf(helper_).size(), 1u) << "the grandchild should still be there";
}

TEST_F(KeeperTest, IsGivenAPidfdAndEndsWhenTheRunIsOverWhileTheHelperLives) {
    const auto pipe = makePipe();
    ChildProcess helper;
    ASSERT_EQ(spawn({helper_, {"close", lock_}, nullptr, &pipe->second, &pipe->second}, helper), 0);
    std::thread([&] {
        ASSERT_TRUE(forbidPidfds()); // it cannot open one by itself
        auto keeper = Keeper::start(keeper_, pipe->first);
        keeper.watch(helper);
        EXPECT_TRUE(eventually(
            [&] { return openFiles(keeper.process().number()).contains("anon_inode:[pidfd]"); }));
        keeper.runIsOver();
        EXPECT_TRUE(eventually([&] { return keeper.process().reapIfEnded(); }));
    }).join();
    helper.kill();
}

TEST_F(KeeperTest, PollsForTheEndOfASilentHelperByItsNumberWithoutAPidfd) {
    const auto pipe = makePipe(); // never at its end: the keeper needs the number
    pid_t number = 0;
    std::thread([&] {
        ASSERT_TRUE(forbidPidfds());
        ChildProcess helper;
        ASSERT_EQ(spawn({helper_, {"until-gone", lock_}, nullptr, &null_, &null_}, helper), 0);
        {
            auto keeper = Keeper::start(keeper_, pipe->first);
            number = keeper.process().number();
            keeper.watch(helper);
        } // as when the program ends in mid-run
        const auto sleeps = sleepsOf(number);
        EXPECT_TRUE(eventually([&] { return sleepsOf(number) >= sleeps + 2; }))
            << "a poll should have timed out";
        helper.kill();
    }).join();
    ASSERT_GT(number, 0);
    EXPECT_TRUE(keeperHasGone());
    kill(number, SIGKILL);
    EXPECT_EQ(waitpid(number, nullptr, 0), number);
}

TEST_F(KeeperTest, AMessageToADeadKeeperSendsNoSignal) {
    const auto pipe = makePipe();
    const pid_t process = fork();
    if (process == 0) {
        std::signal(SIGPIPE, SIG_DFL);
        auto keeper = Keeper::start(keeper_, pipe->first);
        if (!keeper.process().isRunning()) _exit(1);
        keeper.process().kill();
        keeper.runIsOver();
        _exit(0);
    }
    int status = -1;
    EXPECT_EQ(waitpid(process, &status, 0), process);
    EXPECT_EQ(status, 0);
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
    const auto access = std::filesystem::symlink_status(inProc(process, "fd/2")).permissions();
    EXPECT_NE(access & std::filesystem::perms::owner_write, std::filesystem::perms::none);
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
    EXPECT_EQ(write(writeEnd_.get(), "x", 1), 1);
    EXPECT_TRUE(eventually([this] {
        int unread = 0;
        return ioctl(readEnd_.get(), FIONREAD, &unread) == 0 && unread == 0;
    }));
    readEnd_.reset(); // the keeper is the only reader

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

} // namespace
} // namespace oxlade::test
