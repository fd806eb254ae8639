// The rules of the controller that the order traces do not show.
#include "tests/testing/fixture.h"

namespace oxlade::test {

class Controller : public ControllerTest {
  protected:
    /// The buttons that updateButtons enables.
    std::string enabledButtons() {
        trace.take();
        delegate->updateButtons();
        return trace.take().substr(std::string{"updateButtons:"}.size());
    }
};

TEST_F(Controller, TheInitialStateStandsBeforeTheWindowIsBuilt) {
    trace.onAdd = [this](const std::string& line) {
        if (line != "buildWindow") return;
        EXPECT_EQ(delegate->operationKey(), "op.ready");
        EXPECT_EQ(delegate->operationPercent(), -1);
        EXPECT_EQ(delegate->deviceState(), DeviceState::unknown);
    };
    start();
    EXPECT_EQ(delegate->deviceGeometry(), "");
    EXPECT_EQ(delegate->currentTask(), nullptr);
    EXPECT_EQ(delegate->currentMode(), "");
    EXPECT_TRUE(delegate->taskOutput().empty());
    EXPECT_TRUE(defaults.values.empty()) << "the choice of the language is not stored";
}

TEST_F(Controller, SettersStoreAnyValueAndDoNothingElse) {
    start();
    for (const std::string text : {"x", ""}) {
        delegate->setFirmwarePath(text);
        EXPECT_EQ(delegate->firmwarePath(), text);
        delegate->setDeviceGeometry(text);
        EXPECT_EQ(delegate->deviceGeometry(), text);
        delegate->setOperationKey(text);
        EXPECT_EQ(delegate->operationKey(), text);
        delegate->setCurrentMode(text);
        EXPECT_EQ(delegate->currentMode(), text);
        delegate->setTaskOutput({text});
        EXPECT_EQ(delegate->taskOutput(), std::vector{text});
    }
    for (const std::int32_t number : {101, -2, INT32_MIN, INT32_MAX, 0}) {
        delegate->setOperationPercent(number);
        EXPECT_EQ(delegate->operationPercent(), number);
        delegate->setDeviceState(static_cast<DeviceState>(number));
        EXPECT_EQ(delegate->deviceState(), static_cast<DeviceState>(number));
    }
    EXPECT_EQ(trace.take(), "");
}

TEST_F(Controller, FlashOsIsEnabledOnlyWithAReadyDeviceAndAnImage) {
    start();
    for (const std::int64_t state : {0, 1, 3, 4, -1}) {
        delegate->setDeviceState(static_cast<DeviceState>(state));
        EXPECT_EQ(enabledButtons(), " checkButton chooseButton builtinButton\n") << state;
    }
    delegate->setDeviceState(DeviceState::ready);
    EXPECT_EQ(enabledButtons(), " checkButton chooseButton builtinButton installButton\n");
    files.files[bundledImage].bytes = "";
    EXPECT_EQ(enabledButtons(), " checkButton chooseButton builtinButton installButton\n");
    files.files.erase(bundledImage);
    EXPECT_EQ(enabledButtons(), " checkButton chooseButton installButton\n");
    delegate->setFirmwarePath("");
    EXPECT_EQ(enabledButtons(), " checkButton chooseButton\n");
}

TEST_F(Controller, AProcessAloneMakesTheProgramBusy) {
    startReady();
    delegate->setCurrentMode("install");
    EXPECT_EQ(enabledButtons(), " checkButton chooseButton builtinButton installButton\n");
    delegate->setCurrentMode("");
    delegate->setCurrentTask(std::make_shared<FakeProcess>(trace));
    EXPECT_EQ(enabledButtons(), "\n");
    EXPECT_TRUE(delegate->applicationShouldTerminateAfterLastWindowClosed());
}

TEST_F(Controller, CommandsDuringARunAreIgnored) {
    startReady();
    delegate->installFirmware();
    trace.take();
    delegate->checkDevice();
    delegate->installFirmware();
    delegate->runLoaderWithArguments({"--other"}, "info");
    EXPECT_EQ(trace.take(), "");
    EXPECT_EQ(delegate->currentMode(), "install");
    EXPECT_EQ(delegate->deviceState(), DeviceState::ready);
}

TEST_F(Controller, AnImageCanBeSelectedDuringARun) {
    files.files["/a.bin"].bytes = validImage();
    dialogs.chosenFile = "/a.bin";
    start();
    delegate->checkDevice();
    delegate->chooseFirmware();
    EXPECT_EQ(delegate->firmwarePath(), "/a.bin");
    delegate->useBundledFirmware();
    EXPECT_EQ(delegate->firmwarePath(), bundledImage);
}

TEST_F(Controller, FlashOsAsksWhateverTheStateOfTheDevice) {
    start();
    dialogs.answerFirst = false;
    for (const std::int64_t state : {0, 1, 2, 3, 4}) {
        delegate->setDeviceState(static_cast<DeviceState>(state));
        delegate->installFirmware();
        EXPECT_TRUE(trace.take().starts_with("critical alert"));
    }
    delegate->setFirmwarePath("");
    delegate->installFirmware();
    EXPECT_EQ(trace.take(), "") << "without an image it does nothing";
}

TEST_F(Controller, ThePathIsReadAfterTheConfirmationAndPassedOnAsItIs) {
    startReady();
    dialogs.duringAlert = [this] { delegate->setFirmwarePath("/\"q\" $(x)\t'.bin"); };
    files.headReads = 0;
    delegate->installFirmware();
    EXPECT_NE(trace.take().find("[--firmware] [/\"q\" $(x)\t'.bin] [--yes]"), std::string::npos);
    EXPECT_EQ(files.headReads, 0) << "the image is not tested again";
}

TEST_F(Controller, ARunThatStartsDuringTheConfirmationIsTheOnlyOne) {
    startReady();
    dialogs.duringAlert = [this] {
        delegate->checkDevice();
        trace.take();
    };
    delegate->installFirmware();
    EXPECT_EQ(trace.take(), R"(progress 0
refreshTexts
  operationLabel "Flashing the MPC4000"
  percentLabel "0%"
)");
    EXPECT_EQ(delegate->currentMode(), "info");
}

TEST_F(Controller, ACheckChangesTheDeviceStateBeforeTheBar) {
    start();
    trace.onAdd = [this](const std::string& line) {
        if (line != "progress 0") return;
        EXPECT_EQ(delegate->deviceState(), DeviceState::checking);
    };
    delegate->checkDevice();
}

TEST_F(Controller, TheGeometryIsKeptUntilAnotherIsReported) {
    startReady();
    delegate->setDeviceGeometry("Flash geometry: 8 sectors");
    for (const int status : {1, 0}) {
        delegate->installFirmware();
        exit(status);
        delegate->checkDevice();
        exit(status);
        EXPECT_EQ(delegate->deviceGeometry(), "Flash geometry: 8 sectors");
    }
    EXPECT_EQ(controls.deviceDetailLabel.text, "Flash geometry: 8 sectors");
}

TEST_F(Controller, TheEchoHasABlankBehindTheNameAlsoWithoutArguments) {
    start();
    delegate->runLoaderWithArguments({}, "info");
    EXPECT_TRUE(controls.logView.text.ends_with("\n$ oxlade \n"));
}

TEST_F(Controller, TheOutputIsStoredChunkByChunkBeforeItsCarriageReturnsAreReplaced) {
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

TEST_F(Controller, StoringAChunkDoesNotCopyTheEarlierOnes) {
    start();
    delegate->checkDevice();
    print(std::string(100, 'x'));
    const char* const first = delegate->taskOutput().front().data();
    for (int i = 0; i < 1000; ++i) print("y");
    EXPECT_EQ(delegate->taskOutput().front().data(), first);
    EXPECT_EQ(delegate->taskOutput().size(), 1001U);
}

TEST_F(Controller, AnEmptyChunkOrTextDoesNothing) {
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

TEST_F(Controller, TheGeometryIsStoredWithoutARefresh) {
    start();
    delegate->parseProgressFromText("  Flash geometry: 8 sectors \n");
    EXPECT_EQ(delegate->deviceGeometry(), "Flash geometry: 8 sectors");
    EXPECT_EQ(trace.take(), "");
}

TEST_F(Controller, EachReportOfAChunkIsAppliedWithARefreshOfItsOwn) {
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

TEST_F(Controller, ReportsCountInADeviceCheckToo) {
    start();
    delegate->checkDevice();
    print("Write 10%\nOS upload complete\n");
    EXPECT_EQ(delegate->operationKey(), "op.done");
    exit(0);
    EXPECT_EQ(controls.progress.value, 100) << "a check leaves the bar as it is";
}

TEST_F(Controller, JobsOfARunAreHandledInTheirOrderAlsoAfterItsEnd) {
    startReady();
    delegate->installFirmware();
    const auto readable = helper()->readable;
    helper()->print("before\n");
    helper()->exit(0);
    readable("after\n");
    queue->run();
    EXPECT_TRUE(controls.logView.text.ends_with("before\nProcess exited with code 0.\nafter\n"));
    EXPECT_EQ(delegate->taskOutput().back(), "after\n");
}

TEST_F(Controller, AnExitEndsTheCurrentRunInItsModeWhicheverProcessItWas) {
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

TEST_F(Controller, AnyOtherModeOnlyEndsTheRun) {
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

TEST_F(Controller, TheProgramIsIdleBeforeTheEndOfARunIsShown) {
    startReady();
    delegate->installFirmware();
    int lines = 0;
    trace.onAdd = [&](const std::string& line) {
        if (line == "reading callback removed") return;
        ++lines;
        EXPECT_EQ(delegate->currentTask(), nullptr) << line;
        EXPECT_EQ(delegate->currentMode(), "") << line;
    };
    exit(0);
    EXPECT_EQ(lines, 8);
}

TEST_F(Controller, TheModeMayBeTheStateItself) {
    startReady();
    delegate->installFirmware();
    delegate->handleTaskFinished(0, delegate->currentMode());
    EXPECT_EQ(delegate->operationKey(), "op.done");
}

TEST_F(Controller, AnotherRunMayStartDuringTheClosingAlert) {
    startReady();
    delegate->installFirmware();
    dialogs.duringAlert = [this] { delegate->checkDevice(); };
    exit(0);
    EXPECT_NE(delegate->currentTask(), nullptr);
    EXPECT_EQ(delegate->deviceState(), DeviceState::checking);
}

TEST_F(Controller, NothingOfARunKeepsTheControllerOrTheProcessAlive) {
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

TEST_F(Controller, EverySegmentButTheSecondIsEnglishAndIsStored) {
    delegate->installMainMenu();
    start();
    const auto log = controls.logView.text;
    for (const int segment : {1, 0, 1, -1, 1, 2}) {
        controls.languageControl.selected = segment;
        delegate->languageChanged();
        const bool isRussian = segment == 1;
        EXPECT_EQ(CurrentLanguage, isRussian ? 1 : 0);
        EXPECT_EQ(defaults.values["InterfaceLanguage"], isRussian ? "ru" : "en");
        EXPECT_EQ(controls.operationLabel.text, isRussian ? "Готово" : "Ready");
        EXPECT_EQ(interface.menu.at(1).title, isRussian ? "Правка" : "Edit");
    }
    EXPECT_EQ(controls.logView.text, log) << "lines in the log keep their language";
}

TEST_F(Controller, EachActionOfTheWindowDoesAsItsNameSays) {
    startReady();
    dialogs.answerFirst = false;
    const auto& actions = interface.actions;
    const std::vector<std::pair<std::function<void()>, std::string>> expected{
        {actions.useBundledFirmware, "log \"Firmware selected"},
        {actions.chooseFirmware, "open panel"},
        {actions.installFirmware, "critical alert"},
        {actions.languageChanged, "store InterfaceLanguage"},
        {actions.openWebsite, "open https://oxlade.example/\n"},
        {actions.checkDevice, "progress 0\n"},
    };
    for (const auto& [act, effect] : expected) {
        act();
        EXPECT_TRUE(trace.take().starts_with(effect)) << effect;
    }
}

TEST_F(Controller, ARefreshMakesOneQueryAndASecondOneChangesNothing) {
    start();
    files.sizeQueries = files.headReads = files.resourceQueries = 0;
    delegate->refreshTexts();
    EXPECT_EQ(trace.take(), "refreshTexts\n");
    EXPECT_EQ(files.sizeQueries, 1);
    EXPECT_EQ(files.headReads + files.resourceQueries, 0);
    delegate->setFirmwarePath("");
    delegate->refreshTexts();
    EXPECT_EQ(files.sizeQueries, 1);
    EXPECT_EQ(files.resourceQueries, 1);
}

TEST_F(Controller, AnUnknownDeviceStateLeavesTheTextsOfTheDevice) {
    startReady();
    delegate->setDeviceState(static_cast<DeviceState>(4));
    delegate->refreshTexts();
    EXPECT_EQ(trace.take(), "refreshTexts\n  deviceStatusDot tertiaryLabelColor\n");
}

} // namespace oxlade::test
