// Runs of a real process: what it says, how it ends, what it is started with.
#include "tests/platform/recorded_run.h"
#include "tests/platform/temporary_folder.h"

#include <atomic>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <random>
#include <sys/resource.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace oxlade {
namespace {

const std::string helper = OXLADE_TEST_HELPER;

std::string outputOf(std::vector<std::string> arguments) {
    RecordedRun run(helper, std::move(arguments));
    EXPECT_EQ(run.process->launch(), std::nullopt);
    EXPECT_TRUE(run.waitForExit());
    return run.text();
}

std::int32_t statusOf(std::vector<std::string> arguments) {
    RecordedRun run(helper, std::move(arguments));
    EXPECT_EQ(run.process->launch(), std::nullopt);
    EXPECT_TRUE(run.waitForExit());
    return run.process->terminationStatus();
}

// Of the ordinary signals; the C library has two of its own above them.
std::uint64_t signalSet(const std::string& status, std::string_view name) {
    const auto place = status.find(name);
    if (place == std::string::npos) return ~std::uint64_t{0};
    return std::stoull(status.substr(place + name.size()), nullptr, 16) & 0x7FFFFFFF;
}

TEST(HelperRun, AllThatTheHelperWroteComesBeforeItsExit) {
    std::mt19937 random(4000);
    for (int i = 0; i < 250; ++i) {
        const auto size = std::uniform_int_distribution(0, 200000)(random);
        RecordedRun run(helper, {"print", std::to_string(size), "3"});
        ASSERT_EQ(run.process->launch(), std::nullopt);
        ASSERT_TRUE(run.waitForExit());
        ASSERT_EQ(run.text().size(), static_cast<std::size_t>(size));
        ASSERT_EQ(run.process->terminationStatus(), 3);
        ASSERT_EQ(run.exits(), 1);
        ASSERT_FALSE(run.heardAfterExit());
    }
}

TEST(HelperRun, BothOutputsComeAsOneStreamInTheOrderOfWriting) {
    std::string expected;
    for (int i = 0; i < 100; ++i) expected += "out" + std::to_string(i) + '\n';
    EXPECT_EQ(outputOf({"both"}), expected);
}

TEST(HelperRun, TheExitStatusIsReported) {
    for (const int status : {0, 1, 7, 128, 255})
        EXPECT_EQ(statusOf({"print", "10", std::to_string(status)}), status);
}

TEST(HelperRun, ADeathByASignalReportsTheSignalAndNeverSuccess) {
    for (const int signal : {SIGKILL, SIGTERM, SIGHUP, SIGINT, SIGUSR1})
        EXPECT_EQ(statusOf({"signal", std::to_string(signal)}), signal);
}

TEST(HelperRun, ASilentGrandchildThatHoldsThePipeDelaysNothing) {
    const TemporaryFolder folder;
    const auto lock = folder.file("lock");
    RecordedRun run(helper, {"child", lock, "1000"});
    ASSERT_EQ(run.process->launch(), std::nullopt);
    EXPECT_TRUE(run.waitForExit()); // the grandchild lives longer than our patience
    EXPECT_EQ(run.process->terminationStatus(), 5);
    EXPECT_NE(run.text().find("last words of the helper"), std::string::npos);
}

TEST(HelperRun, ATalkingGrandchildDelaysNothingAndNoWordOfTheHelperIsLost) {
    for (int i = 0; i < 20; ++i) {
        const TemporaryFolder folder;
        const auto lock = folder.file("lock");
        RecordedRun run(helper, {"talking-child", lock, "50000"});
        ASSERT_EQ(run.process->launch(), std::nullopt);
        ASSERT_TRUE(run.waitForExit());
        EXPECT_EQ(run.process->terminationStatus(), 5);
        EXPECT_NE(run.text().find("last words of the helper"), std::string::npos);
        EXPECT_FALSE(run.heardAfterExit());
    }
}

TEST(HelperRun, AHelperThatClosesItsOutputRunsOnUntilItExits) {
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

TEST(HelperRun, ArgumentsReachTheHelperByteForByte) {
    const std::vector<std::string> arguments{"",     "--yes",       "two words",     "\"quoted\"",
                                             "it's", "line\nbreak", "$HOME `id` \\", "\xFF\xC3",
                                             "*?",   "\xD0\x96"};
    std::string expected;
    for (const auto& argument : arguments) {
        for (const char byte : argument) {
            constexpr char digits[] = "0123456789abcdef";
            const auto value = static_cast<unsigned char>(byte);
            (expected += digits[value >> 4]) += digits[value & 15];
        }
        expected += '\n';
    }
    auto all = arguments;
    all.insert(all.begin(), "arguments");
    EXPECT_EQ(outputOf(all), expected);
}

TEST(HelperRun, NoDescriptorOfOursReachesTheHelper) {
    const int careless = open("/dev/null", O_RDONLY);
    ASSERT_GT(careless, 2);
    const auto list = outputOf({"descriptors"});
    close(careless);
    for (const char* const expected : {"1\n", "2\n"})
        EXPECT_NE(list.find(expected), std::string::npos) << list;
    EXPECT_LE(list.size(), std::string_view("0\n1\n2\n").size()) << list;
}

TEST(HelperRun, TheHelperLeadsASessionOfItsOwn) { EXPECT_EQ(outputOf({"session"}), "leader\n"); }

TEST(HelperRun, TheHelperIgnoresBrokenPipesAndNoOtherSignal) {
    std::signal(SIGUSR1, SIG_IGN);
    std::signal(SIGINT, SIG_IGN);
    sigset_t blocked;
    sigset_t before;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &blocked, &before);
    const auto status = outputOf({"status"});
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    std::signal(SIGUSR1, SIG_DFL);
    std::signal(SIGINT, SIG_DFL);
    EXPECT_EQ(signalSet(status, "SigBlk:"), 0u);
    EXPECT_EQ(signalSet(status, "SigIgn:"), 1u << (SIGPIPE - 1));
}

TEST(HelperRun, AnExitStatusIsThereAlsoWhenChildrenWereIgnoredAtOurStart) {
    std::signal(SIGCHLD, SIG_IGN);
    EXPECT_EQ(statusOf({"print", "0", "4"}), 4);
}

TEST(HelperRun, StandardInputDirectoryAndEnvironmentAreOurs) {
    const TemporaryFolder folder;
    const int ours = dup(0);
    const int input = open(folder.file("input", "typed").c_str(), O_RDONLY | O_CLOEXEC);
    dup2(input, 0);
    close(input);
    EXPECT_EQ(outputOf({"input"}), "typed");
    if (ours >= 0) dup2(ours, 0);
    setenv("OXLADE_TEST_WORD", "handed on", 1);
    EXPECT_EQ(outputOf({"environment", "OXLADE_TEST_WORD"}), "handed on");
    char here[4096];
    EXPECT_EQ(outputOf({"directory"}), std::string(getcwd(here, sizeof here)) + '\n');
}

// True when nobody has anything of the run any more: then nobody can call anybody.
bool isLetGoOf(std::shared_ptr<HelperProcess>& process) {
    const std::weak_ptr watched = std::exchange(process, nullptr);
    return eventually([&] { return watched.expired(); });
}

// The callbacks of a run that must call neither. Letting go of one takes a while, in
// which a call of the other that was on its way gets through.
class Unwanted final {
  public:
    explicit Unwanted(HelperProcess& process) {
        process.setReadabilityHandler(
            [owned = std::make_shared<SlowToGo>(calls_)](std::string_view) { ++*owned->calls; });
        process.setTerminationHandler(
            [owned = std::make_shared<SlowToGo>(calls_)] { ++*owned->calls; });
    }
    int calls() const { return *calls_; }

  private:
    using Count = std::shared_ptr<std::atomic<int>>;
    struct SlowToGo {
        explicit SlowToGo(Count count) : calls(std::move(count)) {}
        ~SlowToGo() {
            eventually([this] { return *calls > 0; }, std::chrono::milliseconds(50));
        }
        const Count calls;
    };

    const Count calls_ = std::make_shared<std::atomic<int>>(0);
};

struct Refusal {
    std::string path;
    int error;
};

TEST(HelperRun, ARefusedLaunchGivesTheSystemsReasonAndCallsNobody) {
    const TemporaryFolder folder;
    const std::vector<Refusal> refusals{
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
        auto process = PosixHelperProcesses(OXLADE_KEEPER).make(path, {});
        const Unwanted callbacks(*process);
        EXPECT_EQ(process->launch(), std::system_category().message(error)) << path;
        EXPECT_TRUE(isLetGoOf(process)) << path;
        EXPECT_EQ(callbacks.calls(), 0) << path;
    }
}

// While there are `spare` descriptors to be had, and no more.
class FewDescriptors {
  public:
    explicit FewDescriptors(int spare) {
        getrlimit(RLIMIT_NOFILE, &before_);
        for (int i = 0; i < spare; ++i)
            taken_.emplace_back(open("/dev/null", O_RDONLY | O_CLOEXEC));
        Descriptor next{open("/dev/null", O_RDONLY | O_CLOEXEC)};
        rlimit fewer = before_;
        fewer.rlim_cur = static_cast<rlim_t>(next.get());
        setrlimit(RLIMIT_NOFILE, &fewer);
        taken_.clear();
    }
    ~FewDescriptors() { setrlimit(RLIMIT_NOFILE, &before_); }
    FewDescriptors(const FewDescriptors&) = delete;
    FewDescriptors& operator=(const FewDescriptors&) = delete;

  private:
    rlimit before_{};
    std::vector<Descriptor> taken_;
};

TEST(HelperRun, WithTooFewDescriptorsALaunchIsRefusedOrRunsAndNoneIsLost) {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the sanitizer asks for memory's state through a pipe of its own";
#endif
    const auto count = [] {
        const std::filesystem::directory_iterator all{"/proc/self/fd"};
        return std::distance(begin(all), end(all));
    };
    const auto before = count();
    int refused = 0, ran = 0;
    for (int spare = 0; spare < 16; ++spare) {
        RecordedRun run(helper, {"print", "10"}, PosixHelperProcesses(OXLADE_KEEPER));
        std::optional<std::string> refusal;
        {
            const FewDescriptors few{spare};
            refusal = run.process->launch();
        }
        if (refusal) {
            EXPECT_EQ(*refusal, std::system_category().message(EMFILE));
            EXPECT_TRUE(isLetGoOf(run.process));
            EXPECT_EQ(run.chunks() + run.ends() + run.exits(), 0);
            ++refused;
        } else {
            EXPECT_TRUE(run.waitForExit());
            ++ran;
        }
    }
    EXPECT_GT(refused, 0);
    EXPECT_GT(ran, 0);
    EXPECT_TRUE(eventually([&] { return count() == before; }));
}

TEST(HelperRun, CallbacksAreLetGoOfWhenTheRunIsOverAndWhenItNeverBegan) {
    for (const std::string& path : {helper, std::string("/missing")}) {
        const auto process = PosixHelperProcesses().make(path, {"print", "10"});
        std::weak_ptr<int> watched;
        {
            const auto owned = std::make_shared<int>(1);
            watched = owned;
            process->setReadabilityHandler([owned, process](std::string_view) {});
            process->setTerminationHandler([owned, process] {});
        }
        static_cast<void>(process->launch());
        EXPECT_TRUE(eventually([&] { return watched.expired(); })) << path;
    }
}

TEST(HelperRun, ACallbackMayRemoveItself) {
    RecordedRun run(helper, {"print", "200000"});
    std::atomic<int> calls{0};
    run.process->setReadabilityHandler([&calls, &run](std::string_view) {
        ++calls;
        run.process->setReadabilityHandler({});
    });
    ASSERT_EQ(run.process->launch(), std::nullopt);
    EXPECT_TRUE(run.waitForExit());
    EXPECT_EQ(calls, 1);
}

TEST(HelperRun, LettingGoOfTheRunLeavesTheHelperAlone) {
    const TemporaryFolder folder;
    RecordedRun run(helper, {"until-gone", folder.file("lock")});
    ASSERT_EQ(run.process->launch(), std::nullopt);
    ASSERT_TRUE(run.waitForText("waiting"));
    run.process.reset();
    EXPECT_EQ(run.exits(), 0);
    folder.remove("lock");
    EXPECT_TRUE(run.waitForExit());
    EXPECT_NE(run.text().find("gone"), std::string::npos) << "the helper did not end by itself";
}

// What the system takes in one piece comes in one piece: a line is cut by nobody
// but the helper.
TEST(HelperRun, AChunkIsAllThatIsThere) {
    for (const auto* mode : {"once", "once-through-a-larger-pipe"}) {
        const bool isLarge = std::string(mode) != "once";
        RecordedRun run(helper, {mode, isLarge ? "500000" : "60000"});
        ASSERT_EQ(run.process->launch(), std::nullopt);
        EXPECT_TRUE(run.waitForExit());
        EXPECT_EQ(run.process->terminationStatus(), 0);
        EXPECT_EQ(run.text().size(), isLarge ? 500000u : 60000u);
        EXPECT_EQ(run.chunks(), 1) << mode;
    }
}

TEST(HelperRun, TheTerminalDoesNotStopTheProgram) {
    const PosixHelperProcesses processes;
    for (const int signal : {SIGTSTP, SIGTTIN, SIGTTOU}) {
        struct sigaction atStop {};
        ASSERT_EQ(sigaction(signal, nullptr, &atStop), 0);
        EXPECT_NE(atStop.sa_handler, SIG_DFL) << signal;
    }
}

TEST(HelperRun, AFloodIsTakenWhole) {
    RecordedRun run(helper, {"print", "20000000"});
    ASSERT_EQ(run.process->launch(), std::nullopt);
    EXPECT_TRUE(run.waitForExit());
    EXPECT_EQ(run.text().size(), 20000000u);
}

} // namespace
} // namespace oxlade
