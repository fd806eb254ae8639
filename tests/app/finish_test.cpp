#include "tests/testing/fixture.h"

namespace oxlade::test {

class Finish : public ControllerTest {};

TEST_F(Finish, ACheckWithStatus0IsReadyWithoutAnAlert) {
    start();
    delegate->checkDevice();
    exit(0);
    EXPECT_EQ(delegate->deviceState(), DeviceState::ready);
    EXPECT_EQ(controls.operationLabel.text, "Device is ready");
    EXPECT_EQ(controls.percentLabel.text, "");
    EXPECT_TRUE(controls.logView.text.ends_with("Process exited with code 0.\n"));
    EXPECT_EQ(trace.take().find("alert"), std::string::npos);
}

TEST_F(Finish, ACheckWithStatus2Failed) {
    start();
    delegate->checkDevice();
    exit(2);
    EXPECT_EQ(delegate->deviceState(), DeviceState::failed);
    EXPECT_EQ(controls.operationLabel.text, "Check failed");
    EXPECT_TRUE(controls.logView.text.ends_with("Process exited with code 2.\n"));
}

TEST_F(Finish, AFlashWithStatus0JumpsToTheEndOfTheBar) {
    startReady();
    delegate->installFirmware();
    print("Write 60%\r");
    exit(0);
    EXPECT_EQ(controls.progress.value, 100);
    EXPECT_EQ(controls.operationLabel.text, "Flashing complete");
    EXPECT_EQ(controls.percentLabel.text, "");
    EXPECT_NE(trace.take().find("informational alert"), std::string::npos);
}

TEST_F(Finish, AFlashWithAnotherStatusLeavesTheBar) {
    startReady();
    delegate->installFirmware();
    print("Erase 30%\r");
    exit(-7);
    EXPECT_EQ(controls.progress.value, 15);
    EXPECT_EQ(controls.operationLabel.text, "Flashing failed");
    EXPECT_TRUE(controls.logView.text.ends_with("Process exited with code -7.\n"));
    EXPECT_NE(trace.take().find("warning alert"), std::string::npos);
}

TEST_F(Finish, AModeOfAnotherNameOnlyEndsTheRun) {
    startReady();
    for (const std::string mode : {"", "Info", "install ", "x"}) {
        delegate->runLoaderWithArguments({"--x"}, mode);
        trace.take();
        exit(0);
        EXPECT_EQ(trace.take(), R"(reading callback removed
stopWaiting
log "Process exited with code 0.\n"
updateButtons: checkButton chooseButton builtinButton installButton
)");
    }
}

TEST_F(Finish, TheProgramIsIdleAgainBeforeAnythingIsReported) {
    startReady();
    delegate->installFirmware();
    EXPECT_EQ(delegate->currentMode(), "install");
    dialogs.duringAlert = [this] { EXPECT_EQ(delegate->currentMode(), ""); };
    exit(0);
    EXPECT_EQ(delegate->currentMode(), "");
    EXPECT_EQ(delegate->currentTask(), nullptr);
}

TEST_F(Finish, TheAlertSpeaksTheLanguageOfItsMoment) {
    startReady();
    delegate->installFirmware();
    CurrentLanguage = 1;
    exit(1);
    EXPECT_NE(trace.take().find("\"Прошивка не завершилась\" / \"Смотрите журнал в нижней части "
                                "окна.\""),
              std::string::npos);
}

TEST_F(Finish, WhenTheAlertShowsTheButtonsAreEnabledAgain) {
    startReady();
    delegate->installFirmware();
    bool enabled = false;
    dialogs.duringAlert = [&] { enabled = controls.installButton.enabled; };
    exit(0);
    EXPECT_TRUE(enabled);
}

} // namespace oxlade::test
