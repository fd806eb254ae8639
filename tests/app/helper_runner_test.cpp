#include "tests/testing/fixture.h"

namespace oxlade::test {

class HelperRunner : public ControllerTest {};

TEST_F(HelperRunner, ARequestDuringARunIsIgnored) {
    start();
    delegate->checkDevice();
    trace.take();
    delegate->runLoaderWithArguments({"--other"}, "install");
    EXPECT_EQ(trace.take(), "");
    EXPECT_EQ(delegate->currentMode(), "info");
}

TEST_F(HelperRunner, ACarriageReturnStartsANewLineAndTheLastReportWins) {
    start();
    delegate->checkDevice();
    trace.take();
    print("Write 40%\rWrite 41%\r");
    EXPECT_TRUE(controls.logView.text.ends_with("Write 40%\nWrite 41%\n"));
    EXPECT_EQ(controls.percentLabel.text, "41%");
    EXPECT_EQ(controls.progress.value, 70.5);
}

TEST_F(HelperRunner, TaskOutputKeepsTheTextBeforeItsCarriageReturnsAreReplaced) {
    start();
    delegate->checkDevice();
    print("a\r");
    print("b\r\n");
    EXPECT_EQ(delegate->taskOutput(), "a\rb\r\n");
    exit(0);
    EXPECT_EQ(delegate->taskOutput(), "a\rb\r\n") << "kept after the run";
    delegate->checkDevice();
    EXPECT_EQ(delegate->taskOutput(), "") << "new with the next";
}

TEST_F(HelperRunner, TaskOutputKeepsEverythingHoweverMuchItIs) {
    start();
    delegate->checkDevice();
    std::string expected;
    for (int i = 0; i < 40; ++i) {
        const std::string chunk(60'000, static_cast<char>('a' + i % 26));
        print(chunk);
        expected += chunk;
    }
    EXPECT_TRUE(delegate->taskOutput() == expected);
    trace.take();
}

TEST_F(HelperRunner, AMissingHelperLeavesTheOutputOfTheLastRun) {
    start();
    delegate->checkDevice();
    print("a");
    exit(0);
    files.files.erase(bundledHelper);
    delegate->checkDevice();
    EXPECT_EQ(delegate->taskOutput(), "a");
}

TEST_F(HelperRunner, InvalidUtf8IsShownAsLatin1) {
    start();
    delegate->checkDevice();
    print("caf\xE9\n");
    EXPECT_TRUE(controls.logView.text.ends_with("café\n"));
}

TEST_F(HelperRunner, AChunkCutInsideACharacterIsLatin1AndNothingIsCarriedOver) {
    start();
    delegate->checkDevice();
    print("\xD0");
    print("\x9F");
    EXPECT_TRUE(controls.logView.text.ends_with("\u00D0\u009F"));
}

TEST_F(HelperRunner, ALineInTwoChunksIsTwoFragments) {
    start();
    delegate->checkDevice();
    print("Write 4");
    EXPECT_EQ(controls.percentLabel.text, "4%");
    print("2%\n");
    EXPECT_EQ(controls.percentLabel.text, "4%");
    EXPECT_TRUE(controls.logView.text.ends_with("Write 42%\n"));
}

TEST_F(HelperRunner, TheEndOfTheStreamPostsNothing) {
    start();
    delegate->checkDevice();
    helper()->print("");
    EXPECT_TRUE(queue->jobs.empty());
}

TEST_F(HelperRunner, OutputIsTakenBeforeTheExitThatFollowsIt) {
    startReady();
    delegate->installFirmware();
    const auto process = helper();
    process->print("Write 99%\r");
    process->exit(0);
    trace.take();
    queue->run();
    const auto lines = trace.take();
    ASSERT_NE(lines.find("Write 99%"), std::string::npos);
    ASSERT_NE(lines.find("code 0"), std::string::npos);
    EXPECT_LT(lines.find("Write 99%"), lines.find("code 0"));
}

TEST_F(HelperRunner, JobsThatArriveAfterTheControllerIsGoneDoNothing) {
    start();
    delegate->checkDevice();
    const auto process = helper();
    process->print("Write 1%\n");
    process->exit(0);
    ASSERT_EQ(queue->jobs.size(), 2U);
    trace.take();
    delegate.reset();
    queue->run();
    EXPECT_EQ(trace.take(), "");
}

TEST_F(HelperRunner, NeitherCallbacksNorTheProcessKeepTheControllerAlive) {
    start();
    delegate->checkDevice();
    const std::weak_ptr<AppDelegate> weak = delegate;
    const auto process = helper();
    delegate.reset();
    EXPECT_TRUE(weak.expired());
    process->print("x");
    process->exit(0);
    queue->run();
}

TEST_F(HelperRunner, TheProcessIsLetGoWhenTheRunIsOver) {
    start();
    delegate->checkDevice();
    EXPECT_FALSE(processes.last.expired());
    exit(0);
    EXPECT_TRUE(processes.last.expired());
}

TEST_F(HelperRunner, AFreshRunMayStartWhileTheClosingAlertIsUp) {
    startReady();
    delegate->installFirmware();
    dialogs.duringAlert = [this] {
        EXPECT_EQ(delegate->currentTask(), nullptr) << "idle before the alert";
        delegate->checkDevice();
    };
    exit(0);
    EXPECT_NE(delegate->currentTask(), nullptr);
    EXPECT_EQ(delegate->deviceState(), DeviceState::checking);
}

TEST_F(HelperRunner, TheWorkingDirectorysHelperIsRunWhenTheBundleHasNone) {
    files.files.erase(bundledHelper);
    files.files["/home/user/oxlade"].executable = true;
    start();
    delegate->checkDevice();
    EXPECT_NE(trace.take().find("process /home/user/oxlade [--info]"), std::string::npos);
}

} // namespace oxlade::test
