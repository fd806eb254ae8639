// Runs of a real process: output, exit, and what the process is started with.
#include "tests/platform/no_pidfd.h"
#include "tests/platform/recorded_run.h"
#include "tests/testing/processes.h"
#include "tests/testing/temporary_folder.h"

#include <atomic>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <random>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace oxlade::test {
namespace {

const std::string helper = OXLADE_TEST_HELPER;

std::optional<std::int32_t> statusOf(std::vector<std::string> arguments) {
    return RecordedRun(helper, std::move(arguments)).finish();
}

std::optional<std::int32_t> shellStatus(std::string script) {
    return RecordedRun("/bin/sh", {"-c", std::move(script)}).finish();
}

std::string shellOutput(std::string script) {
    RecordedRun run("/bin/sh", {"-c", std::move(script)});
    EXPECT_EQ(run.finish(), 0);
    return run.text();
}

// True when nobody holds the run any more: then nobody can call its callbacks, and its
// processes are reaped.
bool isReleased(std::shared_ptr<HelperProcess>& process) {
    const std::weak_ptr watched = std::exchange(process, nullptr);
    return eventually([&] { return watched.expired(); });
}

void expectWholeRuns(int count, const std::string& keeper) {
    std::mt19937 random(4000);
    for (int i = 0; i < count; ++i) {
        const auto size = std::uniform_int_distribution(0, 200000)(random);
        RecordedRun run(helper, {"print", std::to_string(size), "3"}, PosixHelperProcesses(keeper));
        ASSERT_EQ(run.finish(), 3);
        ASSERT_EQ(run.text().size(), static_cast<std::size_t>(size));
        ASSERT_EQ(run.exits(), 1);
        ASSERT_FALSE(run.heardAfterExit());
        ASSERT_TRUE(isReleased(run.process));
    }
}

void expectARunBeyondTheEndOfTheOutput() {
    const TemporaryFolder folder;
    RecordedRun run(helper, {"close", folder.file("lock")});
    ASSERT_EQ(run.process->launch(), std::nullopt);
    EXPECT_TRUE(run.waitForEnd());
    EXPECT_EQ(run.exits(), 0);
    folder.remove("lock");
    EXPECT_TRUE(run.waitForExit());
    EXPECT_EQ(run.process->terminationStatus(), 9);
    EXPECT_EQ(run.ends(), 1);
}

TEST(HelperProcess, AllThatTheHelperWroteComesBeforeItsExit) { expectWholeRuns(250, ""); }

TEST(HelperProcess, WithoutPidfdsRunsAreTheSame) {
    std::thread([] {
        ASSERT_TRUE(forbidPidfds());
        expectWholeRuns(20, OXLADE_KEEPER);
        expectARunBeyondTheEndOfTheOutput();
        EXPECT_EQ(shellStatus("kill -9 $$"), SIGKILL);
        const TemporaryFolder folder;
        EXPECT_EQ(statusOf({"child", folder.file("lock"), "1000"}), 5);
    }).join();
}

TEST(HelperProcess, BothOutputsComeAsOneStreamInTheOrderOfWriting) {
    std::string expected;
    for (int i = 0; i < 100; ++i) expected += "out" + std::to_string(i) + '\n';
    EXPECT_EQ(shellOutput("i=0; while [ $i -lt 100 ]; do echo out$i >&$((1 + i % 2)); "
                          "i=$((i + 1)); done"),
              expected);
}

TEST(HelperProcess, TheStatusIsTheExitStatusOrTheSignal) {
    for (const int status : {0, 1, 7, 128, 255})
        EXPECT_EQ(shellStatus("exit " + std::to_string(status)), status);
    for (const int signal : {SIGKILL, SIGTERM, SIGHUP, SIGINT, SIGUSR1})
        EXPECT_EQ(shellStatus("kill -" + std::to_string(signal) + " $$"), signal);
}

TEST(HelperProcess, AnExitStatusIsReceivedAlsoWhenSigchldWasIgnoredAtOurStart) {
    std::signal(SIGCHLD, SIG_IGN);
    EXPECT_EQ(statusOf({"print", "0", "4"}), 4);
}

TEST(HelperProcess, AStatusThatTheSystemDoesNotTellIsMinusOne) {
    const TemporaryFolder folder;
    RecordedRun run(helper, {"until-gone", folder.file("lock")});
    ASSERT_TRUE(run.startUntil("waiting"));
    std::signal(SIGCHLD, SIG_IGN); // the kernel reaps children by itself
    folder.remove("lock");
    EXPECT_TRUE(run.waitForExit());
    std::signal(SIGCHLD, SIG_DFL);
    EXPECT_EQ(run.process->terminationStatus(), -1);
}

TEST(HelperProcess, AGrandchildThatHoldsThePipeDelaysNothingAndNoOutputIsLost) {
    for (int i = 0; i < 40; ++i) {
        const TemporaryFolder folder; // the grandchild ends when the folder is removed
        RecordedRun run(helper, {i % 2 == 0 ? "child" : "talking-child", folder.file("lock"),
                                 i < 2 ? "1000" : "50000"});
        ASSERT_EQ(run.finish(), 5);
        EXPECT_NE(run.text().find("last words of the helper"), std::string::npos);
        EXPECT_FALSE(run.heardAfterExit());
    }
}

TEST(HelperProcess, AfterTheExitAGrandchildCanWriteMoreThanThePipeHolds) {
    const TemporaryFolder folder;
    const auto go = folder.path("go"), written = folder.path("written");
    ASSERT_EQ(mkfifo(go.c_str(), 0600), 0);
    EXPECT_EQ(shellStatus("(read -r _ <" + go + "; head -c 200000 /dev/zero && >" + written +
                          ") & exit 5"),
              5);
    folder.file("go", "\n");
    EXPECT_TRUE(eventually([&] { return std::filesystem::exists(written); }));
}

TEST(HelperProcess, AHelperThatClosesItsOutputRunsOnUntilItExits) {
    expectARunBeyondTheEndOfTheOutput();
}

TEST(HelperProcess, ArgumentsReachTheHelperByteForByte) {
    const std::vector<std::string> arguments{"arguments",  "",     "--yes",       "two words",
                                             "\"quoted\"", "it's", "line\nbreak", "$HOME `id` \\",
                                             "\xFF\xC3",   "*?",   "\xD0\x96"};
    std::string expected;
    for (const auto& argument : arguments) expected += argument + '\0';
    RecordedRun run(helper, arguments);
    EXPECT_EQ(run.finish(), 0);
    EXPECT_EQ(run.text(), expected);
}

TEST(Spawn, AStreamThatIsNotOpenIsRefused) {
    const Descriptor none;
    ChildProcess process;
    EXPECT_EQ(spawn({helper, {}, nullptr, &none, nullptr}, process), EBADF);
    EXPECT_FALSE(process.isRunning());
}

TEST(Process, WithoutOneNothingIsReaped) { EXPECT_FALSE(ChildProcess().reapIfEnded()); }

TEST(HelperProcess, OnlyTheStandardStreamsReachTheHelper) {
    const Descriptor inheritable(open("/dev/null", O_RDONLY));
    ASSERT_GT(inheritable.get(), 2);
    // The last one is the list's own; we may have no standard input.
    EXPECT_THAT(shellOutput("exec ls /proc/self/fd"), testing::AnyOf("0\n1\n2\n3\n", "0\n1\n2\n"));
}

TEST(HelperProcess, TheHelperLeadsASessionOfItsOwn) {
    EXPECT_EQ(shellOutput("read -r _ _ _ _ _ session _ </proc/$$/stat; echo $((session == $$))"),
              "1\n");
}

TEST(HelperProcess, InputDirectoryAndEnvironmentAreOurs) {
    const TemporaryFolder folder;
    const Descriptor ours(fcntl(0, F_DUPFD_CLOEXEC, 3));
    const Descriptor input(open(folder.file("input", "typed").c_str(), O_RDONLY | O_CLOEXEC));
    dup2(input.get(), 0);
    EXPECT_EQ(shellOutput("cat"), "typed");
    if (ours) dup2(ours.get(), 0);
    setenv("OXLADE_TEST_WORD", "handed on", 1);
    EXPECT_EQ(shellOutput("echo $OXLADE_TEST_WORD; pwd -P"),
              "handed on\n" + std::filesystem::current_path().string() + '\n');
}

// The ordinary signals of a line of /proc/PID/status; glibc has two more of its own.
std::uint64_t signalsIn(const std::string& status, std::string_view name) {
    const auto place = status.find(name);
    if (place == std::string::npos) return ~std::uint64_t{0};
    return std::stoull(status.substr(place + name.size()), nullptr, 16) & 0x7FFFFFFF;
}

constexpr std::uint64_t bitOf(int signal) { return std::uint64_t{1} << (signal - 1); }

TEST(HelperProcess, TheHelperIgnoresBrokenPipesAndNoOtherSignal) {
    const PosixHelperProcesses processes;
    RecordedRun run("/bin/cat", {"/proc/self/status"}, processes);
    struct sigaction before[32];
    for (int signal = 1; signal < 32; ++signal) {
        sigaction(signal, nullptr, &before[signal]);
        if (signal != SIGCHLD) std::signal(signal, SIG_IGN);
    }
    sigset_t terminate, mask;
    sigemptyset(&terminate);
    sigaddset(&terminate, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &terminate, &mask);
    EXPECT_EQ(run.finish(), 0);
    pthread_sigmask(SIG_SETMASK, &mask, nullptr);
    for (int signal = 1; signal < 32; ++signal) sigaction(signal, &before[signal], nullptr);
    EXPECT_EQ(signalsIn(run.text(), "SigBlk:"), 0u);
    EXPECT_EQ(signalsIn(run.text(), "SigIgn:"), bitOf(SIGPIPE));
}

// In a process of its own: it would be stopped.
TEST(HelperProcess, TheTerminalStopsProgramsThatWeStartButNotUs) {
    auto output = makePipe();
    ASSERT_TRUE(output);
    const pid_t process = fork();
    if (process == 0) {
        std::signal(SIGPIPE, SIG_DFL);
        setpgid(0, 0); // ours may be orphaned, which a terminal does not stop
        const PosixHelperProcesses processes;
        for (const int signal : {SIGTSTP, SIGTTIN, SIGTTOU}) raise(signal);
        dup2(output->second.get(), 1);
        execl("/bin/cat", "cat", "/proc/self/status", nullptr);
        _exit(127);
    }
    output->second.reset();
    int status = 0;
    ASSERT_EQ(waitpid(process, &status, WUNTRACED), process);
    if (WIFSTOPPED(status)) kill(process, SIGKILL);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
    std::string text(65536, '\0');
    ASSERT_GT(read(output->first.get(), text.data(), text.size()), 0);
    const auto changed = bitOf(SIGTSTP) | bitOf(SIGTTIN) | bitOf(SIGTTOU) | bitOf(SIGPIPE);
    EXPECT_EQ(signalsIn(text, "SigIgn:") & changed, bitOf(SIGPIPE));
}

TEST(HelperProcess, ARefusedLaunchGivesTheSystemsReasonAndCallsNobody) {
    const TemporaryFolder folder;
    const std::vector<std::pair<std::string, int>> refusals{
        {folder.path("missing"), ENOENT},
        {folder.file("plain", "#!/bin/sh\n"), EACCES},
        {folder.path(), EACCES},
        {folder.program("text", "no program"), ENOEXEC},
        {folder.program("empty"), ENOEXEC},
        {folder.program("script", "#!/nowhere/interpreter\n"), ENOENT},
        {folder.file("file") + "/below", ENOTDIR},
        {"", ENOENT},
    };
    for (const auto& [path, error] : refusals) {
        RecordedRun run(path, {}, PosixHelperProcesses(OXLADE_KEEPER));
        EXPECT_EQ(run.process->launch(), std::system_category().message(error)) << path;
        EXPECT_TRUE(isReleased(run.process)) << path;
        EXPECT_EQ(run.calls(), 0) << path;
    }
}

// The result of the launch when `spare` more descriptors can be opened.
std::optional<std::string> launchWithDescriptors(HelperProcess& process, rlim_t spare) {
    rlimit before{};
    getrlimit(RLIMIT_NOFILE, &before);
    const auto next = Descriptor(open("/dev/null", O_RDONLY | O_CLOEXEC)).get();
    const rlimit fewer{static_cast<rlim_t>(next) + spare, before.rlim_max};
    setrlimit(RLIMIT_NOFILE, &fewer);
    auto refusal = process.launch();
    setrlimit(RLIMIT_NOFILE, &before);
    return refusal;
}

TEST(HelperProcess, WithTooFewDescriptorsALaunchIsRefusedOrRuns) {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the sanitizer needs a pipe of its own";
#endif
    int refused = 0, ran = 0;
    for (rlim_t spare = 0; spare < 16; ++spare) {
        RecordedRun run(helper, {"print", "10"}, PosixHelperProcesses(OXLADE_KEEPER));
        const auto refusal = launchWithDescriptors(*run.process, spare);
        ++(refusal ? refused : ran);
        if (!refusal) {
            EXPECT_TRUE(run.waitForExit());
            continue;
        }
        EXPECT_EQ(*refusal, std::system_category().message(EMFILE));
        EXPECT_TRUE(isReleased(run.process));
        EXPECT_EQ(run.calls(), 0);
    }
    EXPECT_GT(refused, 0);
    EXPECT_GT(ran, 0);
}

TEST(HelperProcess, CallbacksAreDestroyedAfterTheRunAndAfterARefusedLaunch) {
    for (const std::string& path : {helper, std::string("/missing")}) {
        const auto process = PosixHelperProcesses().make(path, {"print", "10"});
        auto first = std::make_shared<int>(1), second = std::make_shared<int>(2);
        const std::weak_ptr readable = first, terminated = second;
        process->setReadabilityHandler([first, process](const SharedBytes&) {});
        process->setTerminationHandler(
            [second, process, readable] { EXPECT_FALSE(readable.expired()); });
        first.reset();
        second.reset();
        EXPECT_EQ(process->launch().has_value(), path != helper);
        EXPECT_TRUE(eventually([&] { return readable.expired() && terminated.expired(); })) << path;
    }
}

TEST(HelperProcess, ACallbackMayRemoveItself) {
    RecordedRun run(helper, {"print", "200000"});
    std::atomic<int> calls{0};
    run.process->setReadabilityHandler([&calls, &run](const SharedBytes&) {
        ++calls;
        run.process->setReadabilityHandler({});
    });
    std::atomic<bool> ended{false};
    run.process->setTerminationHandler([&ended, &run] {
        run.process->setTerminationHandler({});
        ended = true;
    });
    EXPECT_EQ(run.process->launch(), std::nullopt);
    EXPECT_TRUE(eventually([&] { return ended.load(); }));
    EXPECT_EQ(calls, 1);
}

// Whether a thread of ours waits for three descriptors without a time-out.
bool isPolling() {
    for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
        std::ifstream file(task.path() / "syscall");
        std::string number, descriptors, count, timeout;
        file >> number >> descriptors >> count >> timeout;
        if (count == "0x3" && timeout.ends_with("ffffffff")) return true;
    }
    return false;
}

TEST(HelperProcess, ReleasingTheRunLeavesTheHelperAlone) {
    const TemporaryFolder folder;
    RecordedRun run(helper, {"until-gone", folder.file("lock")});
    ASSERT_TRUE(run.startUntil("waiting"));
    run.process.reset();
    EXPECT_TRUE(eventually(isPolling)) << "it would wake up without a reason";
    EXPECT_EQ(run.exits(), 0);
    folder.remove("lock");
    EXPECT_TRUE(run.waitForExit());
    EXPECT_NE(run.text().find("gone"), std::string::npos) << "the helper did not end by itself";
}

// What the helper writes at once comes at once: nobody else cuts a line.
TEST(HelperProcess, AChunkIsAllThatThePipeHolds) {
    for (const auto& [mode, size] :
         {std::pair("print", 60000u), std::pair("print-through-a-larger-pipe", 500000u)}) {
        RecordedRun run(helper, {mode, std::to_string(size)});
        EXPECT_EQ(run.finish(), 0);
        EXPECT_EQ(run.text().size(), size);
        EXPECT_EQ(run.chunks(), 1) << mode;
    }
}

} // namespace
} // namespace oxlade::test
