#include "tests/testing/fixture.h"

namespace oxlade::test {

class DeviceCommands : public ControllerTest {};

TEST_F(DeviceCommands, PressingCheckTwiceStartsOneRun) {
    start();
    delegate->checkDevice();
    trace.take();
    delegate->checkDevice();
    EXPECT_EQ(trace.take(), "");
    EXPECT_EQ(processes.made, 1);
}

TEST_F(DeviceCommands, FlashOsDuringARunAsksNothing) {
    startReady();
    delegate->checkDevice();
    trace.take();
    delegate->installFirmware();
    EXPECT_EQ(trace.take(), "");
}

TEST_F(DeviceCommands, FlashOsWithoutAnImageDoesNothing) {
    files.files.erase(bundledImage);
    startReady();
    delegate->installFirmware();
    EXPECT_EQ(trace.take(), "");
}

TEST_F(DeviceCommands, CancellingLeavesBarOperationAndLogAsTheyWere) {
    startReady();
    controls.progress.value = 37;
    const auto log = controls.logView.text;
    dialogs.answerFirst = false;
    delegate->installFirmware();
    EXPECT_EQ(controls.progress.value, 37);
    EXPECT_EQ(controls.operationLabel.text, "Device is ready");
    EXPECT_EQ(controls.logView.text, log);
}

TEST_F(DeviceCommands, ACheckAfterASuccessfulOneStartsOverAtOnce) {
    startReady();
    controls.progress.value = 100;
    delegate->checkDevice();
    EXPECT_EQ(controls.progress.value, 0);
    EXPECT_EQ(controls.deviceStatusLabel.text, "Checking MPC4000…");
    EXPECT_EQ(controls.deviceDetailLabel.text,
              "Opening the USB interface and reading the flash geometry.");
}

TEST_F(DeviceCommands, TheImageIsNotLookedIntoAgainAfterItsSelection) {
    startReady();
    files.headReads = 0;
    delegate->installFirmware();
    EXPECT_EQ(files.headReads, 0);
}

TEST_F(DeviceCommands, ThePathIsReadAgainAfterTheConfirmation) {
    startReady();
    dialogs.duringAlert = [this] { delegate->setFirmwarePath("/other.bin"); };
    delegate->installFirmware();
    EXPECT_NE(trace.take().find("[--firmware] [/other.bin] [--yes]"), std::string::npos);
}

TEST_F(DeviceCommands, AnArgumentIsTakenWhateverItContains) {
    startReady();
    delegate->setFirmwarePath("/images/\"q\" $(x)\t'.bin");
    delegate->installFirmware();
    EXPECT_NE(trace.take().find("[/images/\"q\" $(x)\t'.bin]"), std::string::npos);
}

} // namespace oxlade::test
