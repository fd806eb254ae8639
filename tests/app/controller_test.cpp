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
    EXPECT_EQ(delegate->operationPercent(), -1);
}

TEST_F(Controller, AMissingHelperNeverMakesTheProgramBusy) {
    files.files.erase(bundledHelper);
    start();
    trace.onAdd = [this](const std::string& line) {
        EXPECT_EQ(delegate->currentMode(), "") << line;
        EXPECT_EQ(delegate->currentTask(), nullptr) << line;
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

TEST_F(Controller, TheDesktopIsToldOfEachRunAndOfItsProgress) {
    start();
    delegate->checkDevice();
    exit(0);
    EXPECT_EQ(std::exchange(session.told, {}), "begin \"Checking the connection\"\nend\n");
    delegate->installFirmware();
    print("Erase 41%\nWrite 50%\nOS upload complete\n");
    exit(0);
    EXPECT_EQ(std::exchange(session.told, {}),
              "begin \"Flashing the MPC4000\"\n20.5\n75\n100\nend\n");
    processes.launchError = "no";
    delegate->checkDevice();
    EXPECT_EQ(session.told, "end\n");
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
