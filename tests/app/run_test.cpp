// A run of the helper: its command line, its output, its exit.
#include "tests/testing/fixture.h"

namespace oxlade::test {

class Run : public ControllerTest {};

TEST_F(Run, TheEchoHasABlankBehindTheNameAlsoWithoutArguments) {
    start();
    delegate->runLoaderWithArguments({}, "info");
    EXPECT_TRUE(controls.logView.text.ends_with("\n$ oxlade \n"));
}

TEST_F(Run, TheOutputIsStoredChunkByChunkBeforeItsCarriageReturnsAreReplaced) {
    start();
    delegate->checkDevice();
    print("a\r");
    print("b\r\n");
    exit(0);
    const std::vector<std::string> expected{"a\r", "b\r\n"};
    EXPECT_EQ(delegate->taskOutput(), expected);
    files.files[bundledHelper].executable = false;
    delegate->checkDevice();
    EXPECT_EQ(delegate->taskOutput(), expected) << "kept if no helper is run";
    files.files[bundledHelper].executable = true;
    delegate->checkDevice();
    EXPECT_TRUE(delegate->taskOutput().empty());
}

TEST_F(Run, StoringAChunkDoesNotCopyTheEarlierOnes) {
    start();
    delegate->checkDevice();
    print(std::string(100, 'x'));
    const char* const first = delegate->taskOutput().front().data();
    for (int i = 0; i < 1000; ++i) print("y");
    EXPECT_EQ(delegate->taskOutput().front().data(), first);
    EXPECT_EQ(delegate->taskOutput().size(), 1001U);
}

TEST_F(Run, TheLinesOfALongChunkAreDividedAmongJobsOfAFewKilobytes) {
    start();
    delegate->checkDevice();
    std::string chunk;
    for (int i = 0; i < 6000; ++i) chunk += i % 2 == 0 ? "Erase 42%\r" : "Write 17%\n";
    helper()->print(chunk);
    EXPECT_GT(queue->jobs.size(), 10U);
    queue->run();
    std::string output;
    for (const auto& lines : delegate->taskOutput()) {
        EXPECT_EQ(lines.size() % 10, 0U) << "no line is cut";
        EXPECT_LT(lines.size(), 5000U);
        output += lines;
    }
    EXPECT_EQ(output, chunk);
    EXPECT_EQ(delegate->operationKey(), "op.write");
}

TEST_F(Run, AnEmptyChunkOrTextDoesNothing) {
    start();
    delegate->checkDevice();
    trace.take();
    helper()->print("");
    EXPECT_TRUE(queue->jobs.empty());
    delegate->handleTaskOutput("");
    delegate->appendLog("");
    EXPECT_EQ(trace.take(), "");
    EXPECT_TRUE(delegate->taskOutput().empty());
}

TEST_F(Run, TheGeometryIsStoredWithoutARefresh) {
    start();
    delegate->parseProgressFromText("  Flash geometry: 8 sectors \n");
    EXPECT_EQ(delegate->deviceGeometry(), "Flash geometry: 8 sectors");
    EXPECT_EQ(trace.take(), "");
}

TEST_F(Run, EachReportOfAChunkIsAppliedWithARefreshOfItsOwn) {
    start();
    delegate->parseProgressFromText("Erase 1%\nErase 1%\nother\n\nWrite 10%");
    EXPECT_EQ(trace.take(), R"(progress 0.5
refreshTexts
  operationLabel "Erasing flash"
  percentLabel "1%"
progress 0.5
refreshTexts
progress 55
refreshTexts
  operationLabel "Writing OS"
  percentLabel "10%"
)");
}

TEST_F(Run, ReportsCountInADeviceCheckToo) {
    start();
    delegate->checkDevice();
    print("Write 10%\nOS upload complete\n");
    EXPECT_EQ(delegate->operationKey(), "op.done");
    exit(0);
    EXPECT_EQ(controls.progress.value, 100) << "a check leaves the bar as it is";
}

TEST_F(Run, JobsOfARunAreHandledInTheirOrderAlsoAfterItsEnd) {
    startReady();
    delegate->installFirmware();
    const auto readable = helper()->readable;
    helper()->print("before\n");
    helper()->exit(0);
    readable({"after\n", nullptr});
    queue->run();
    EXPECT_TRUE(controls.logView.text.ends_with("before\nProcess exited with code 0.\nafter\n"));
    EXPECT_EQ(delegate->taskOutput().back(), "after\n");
}

TEST_F(Run, AnExitEndsTheCurrentRunInItsModeWhicheverProcessItWas) {
    startReady();
    delegate->installFirmware();
    const auto earlier = helper();
    earlier->exit(3);
    delegate->handleTaskFinished(0, "");
    delegate->checkDevice();
    queue->run();
    EXPECT_EQ(delegate->currentTask(), nullptr);
    EXPECT_EQ(delegate->operationKey(), "op.checkFailed");
}

TEST_F(Run, TheExitOfAProcessThatIsGoneIsIgnored) {
    start();
    delegate->checkDevice();
    const auto terminated = helper()->terminated;
    exit(0);
    ASSERT_TRUE(processes.last.expired());
    terminated();
    EXPECT_TRUE(queue->jobs.empty());
}

TEST_F(Run, AnyOtherModeOnlyEndsTheRun) {
    startReady();
    for (const std::string mode : {"", "Info", "INSTALL", "install ", "x"})
        for (const int status : {0, 1, -1}) {
            delegate->runLoaderWithArguments({"--x"}, mode);
            trace.take();
            exit(status);
            EXPECT_EQ(trace.take(), R"(reading callback removed
stopWaiting
log "Process exited with code )" + std::to_string(status) +
                                        R"(.\n"
updateButtons: checkButton chooseButton builtinButton installButton
)");
        }
}

TEST_F(Run, TheProgramIsIdleBeforeTheEndOfARunIsShown) {
    startReady();
    delegate->installFirmware();
    int lines = 0;
    trace.onAdd = [&](const std::string& line) {
        if (line == "reading callback removed") {
            EXPECT_TRUE(queue->jobs.empty()) << "removed before the exit is posted";
            return;
        }
        ++lines;
        EXPECT_EQ(delegate->currentTask(), nullptr) << line;
        EXPECT_EQ(delegate->currentMode(), "") << line;
    };
    exit(0);
    EXPECT_EQ(lines, 8);
}

TEST_F(Run, TheModeMayBeTheStateItself) {
    startReady();
    delegate->installFirmware();
    delegate->handleTaskFinished(0, delegate->currentMode());
    EXPECT_EQ(delegate->operationKey(), "op.done");
}

TEST_F(Run, AnotherRunMayStartDuringTheClosingAlert) {
    startReady();
    delegate->installFirmware();
    dialogs.duringAlert = [this] { delegate->checkDevice(); };
    exit(0);
    EXPECT_NE(delegate->currentTask(), nullptr);
    EXPECT_EQ(delegate->deviceState(), DeviceState::checking);
}

TEST_F(Run, NothingOfARunKeepsTheControllerOrTheProcessAlive) {
    startReady();
    EXPECT_TRUE(processes.last.expired()) << "the process of the check";
    delegate->checkDevice();
    const auto process = helper();
    process->print("Write 1%\n");
    process->exit(0);
    ASSERT_EQ(queue->jobs.size(), 2U);
    trace.take();
    const std::weak_ptr<AppDelegate> controller = delegate;
    delegate.reset();
    EXPECT_TRUE(controller.expired());
    queue->run();
    EXPECT_EQ(trace.take(), "");
}

} // namespace oxlade::test
