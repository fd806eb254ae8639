// Everything that the controller does, in its order: at the start, in a device check and in
// a flash. A refresh is one line, followed by what it changed; a line of updateButtons ends
// with the buttons that are enabled.
#include "tests/testing/fixture.h"

namespace oxlade::test {

namespace {

const std::string ownImage = "/home/user/a b.bin";

const std::string captions = R"(refreshTexts
  subtitleLabel "Install the OS on an Akai MPC4000 over USB"
  deviceCaptionLabel "DEVICE"
  firmwareCaptionLabel "FIRMWARE"
  logCaptionLabel "LOG"
  checkButton "Check"
  builtinButton "Bundled"
  chooseButton "Choose…"
  installButton "Flash OS"
  deviceStatusLabel "MPC4000 not checked"
  deviceDetailLabel "Connect the MPC4000 over USB and switch it to OS Loader mode."
  deviceStatusDot tertiaryLabelColor
)";

const std::string checkStarts = R"(progress 0
refreshTexts
  deviceStatusLabel "Checking MPC4000…"
  deviceDetailLabel "Opening the USB interface and reading the flash geometry."
  deviceStatusDot systemOrangeColor
  operationLabel "Checking the connection"
)";

const std::string checkFails = R"(stopWaiting
refreshTexts
  deviceStatusLabel "MPC4000 not opened"
  deviceDetailLabel "Check USB, OS Loader mode and the macOS permission to access the device."
  deviceStatusDot systemRedColor
  operationLabel "Check failed"
)";

const std::string confirmation =
    R"(critical alert "Flash the OS to the MPC4000?" / "Flash memory is erased before writing. )"
    R"(Do not power off the MPC4000 or unplug USB until it finishes." [Flash] [Cancel]
)";

const std::string flashStarts = R"(progress 0
refreshTexts
  operationLabel "Flashing the MPC4000"
  percentLabel "0%"
)";

const std::string flashFails = R"(stopWaiting
refreshTexts
  operationLabel "Flashing failed"
  percentLabel ""
  failed
)";

const std::string flashFailed =
    R"(warning alert "Flashing did not complete" / "See the log at the bottom of the window."
)";

} // namespace

class OrderTraces : public ControllerTest {};

TEST_F(OrderTraces, StartWithAValidShippedImage) {
    delegate->installMainMenu();
    delegate->applicationDidFinishLaunching();
    EXPECT_EQ(trace.take(), R"(setMainMenu
buildWindow
log "Oxlade started.\n"
log "Firmware selected: /apps/Oxlade.app/Contents/Resources/mpcv171.bin\n"
)" + captions + R"(  firmwareLabel "mpcv171.bin  ·  3.0 MB"
  firmwareLabel tool tip "/apps/Oxlade.app/Contents/Resources/mpcv171.bin"
  firmwareLabel labelColor
  operationLabel "Ready"
  percentLabel ""
updateButtons: checkButton chooseButton builtinButton
refreshTexts
updateButtons: checkButton chooseButton builtinButton
makeKeyAndOrderFront
activateIgnoringOtherApps
)");
}

TEST_F(OrderTraces, StartWithoutAShippedImage) {
    files.files.erase(bundledImage);
    delegate->applicationDidFinishLaunching();
    EXPECT_EQ(trace.take(), R"(buildWindow
log "Oxlade started.\n"
)" + captions + R"(  firmwareLabel "No bundled firmware. Choose a .bin file."
  firmwareLabel tool tip "No bundled firmware. Choose a .bin file."
  firmwareLabel secondaryLabelColor
  operationLabel "Ready"
  percentLabel ""
updateButtons: checkButton chooseButton
makeKeyAndOrderFront
activateIgnoringOtherApps
)");
}

TEST_F(OrderTraces, StartWithAnInvalidShippedImageExplainsBeforeTheWindowShows) {
    files.files[bundledImage].bytes = std::string(100, 'x');
    delegate->applicationDidFinishLaunching();
    EXPECT_EQ(trace.take(), R"(buildWindow
log "Oxlade started.\n"
warning alert "This does not look like MPC4000 firmware" / "The file has no MPC4000 Operating System signature."
)" + captions + R"(  firmwareLabel "No firmware selected"
  firmwareLabel tool tip "No firmware selected"
  firmwareLabel secondaryLabelColor
  operationLabel "Ready"
  percentLabel ""
updateButtons: checkButton chooseButton builtinButton
makeKeyAndOrderFront
activateIgnoringOtherApps
)");
}

TEST_F(OrderTraces, CheckThatSucceeds) {
    start();
    delegate->checkDevice();
    EXPECT_EQ(trace.take(), checkStarts + R"(log "$ oxlade --info\n"
process /apps/Oxlade.app/Contents/MacOS/oxlade [--info]
updateButtons:
launched
startWaiting
)");
    print("MPC4000 found\nFlash geometry: 8 sectors\n");
    exit(0);
    EXPECT_EQ(trace.take(), R"(log "MPC4000 found\nFlash geometry: 8 sectors\n"
reading callback removed
stopWaiting
refreshTexts
  deviceStatusLabel "MPC4000 connected"
  deviceDetailLabel "Flash geometry: 8 sectors"
  deviceStatusDot systemGreenColor
  operationLabel "Device is ready"
log "Process exited with code 0.\n"
updateButtons: checkButton chooseButton builtinButton installButton
)");
}

TEST_F(OrderTraces, CheckThatFails) {
    start();
    delegate->checkDevice();
    trace.take();
    exit(2);
    EXPECT_EQ(trace.take(),
              "reading callback removed\n" + checkFails + R"(log "Process exited with code 2.\n"
updateButtons: checkButton chooseButton builtinButton
)");
}

TEST_F(OrderTraces, CheckWithTheHelperMissing) {
    files.files.erase(bundledHelper);
    start();
    delegate->checkDevice();
    EXPECT_EQ(trace.take(), checkStarts + R"(log "Helper not found: /home/user/oxlade\n"
)" + checkFails + "updateButtons: checkButton chooseButton builtinButton\n");
}

TEST_F(OrderTraces, CheckWhoseLaunchIsRefused) {
    processes.launchError = "Exec format error";
    start();
    delegate->checkDevice();
    EXPECT_EQ(trace.take(), checkStarts + R"(log "$ oxlade --info\n"
process /apps/Oxlade.app/Contents/MacOS/oxlade [--info]
updateButtons:
launch refused
reading callback removed
log "Could not start the helper: Exec format error\n"
)" + checkFails + R"(log "Process exited with code -1.\n"
updateButtons: checkButton chooseButton builtinButton
)");
}

TEST_F(OrderTraces, FlashThatSucceeds) {
    files.files[ownImage].bytes = validImage();
    dialogs.chosenFile = ownImage;
    startReady();
    delegate->chooseFirmware();
    EXPECT_EQ(trace.take(), R"(open panel "Choose an OS file for the MPC4000" *.bin
log "Firmware selected: /home/user/a b.bin\n"
refreshTexts
  firmwareLabel "a b.bin  ·  0.0 MB"
  firmwareLabel tool tip "/home/user/a b.bin"
updateButtons: checkButton chooseButton builtinButton installButton
)");
    delegate->installFirmware();
    EXPECT_EQ(trace.take(),
              confirmation + flashStarts + R"(log "$ oxlade --firmware /home/user/a b.bin --yes\n"
process /apps/Oxlade.app/Contents/MacOS/oxlade [--firmware] [/home/user/a b.bin] [--yes]
updateButtons:
launched
startWaiting
)");
    print("Erase 100%\rWrite 0%\r");
    print("OS upload complete.\n");
    exit(0);
    EXPECT_EQ(trace.take(), R"(log "Erase 100%\nWrite 0%\n"
progress 50
refreshTexts
  operationLabel "Erasing flash"
  percentLabel "100%"
progress 50
refreshTexts
  operationLabel "Writing OS"
  percentLabel "0%"
log "OS upload complete.\n"
progress 100
refreshTexts
  operationLabel "Flashing complete"
  percentLabel ""
reading callback removed
stopWaiting
progress 100
refreshTexts
log "Process exited with code 0.\n"
updateButtons: checkButton chooseButton builtinButton installButton
informational alert "Flashing complete" / "Wait for the MPC4000 to finish, then restart it."
)");
}

TEST_F(OrderTraces, FlashThatFails) {
    startReady();
    delegate->installFirmware();
    print("Erase 30%\r");
    trace.take();
    exit(1);
    EXPECT_EQ(trace.take(),
              "reading callback removed\n" + flashFails + R"(log "Process exited with code 1.\n"
updateButtons: checkButton chooseButton builtinButton installButton
)" + flashFailed);
    EXPECT_EQ(controls.progress.value, 15) << "the bar stays";
}

TEST_F(OrderTraces, FlashThatIsCancelled) {
    startReady();
    dialogs.answerFirst = false;
    delegate->installFirmware();
    EXPECT_EQ(trace.take(), confirmation);
    EXPECT_EQ(delegate->operationKey(), "op.deviceReady");
    EXPECT_EQ(delegate->operationPercent(), -1);
}

TEST_F(OrderTraces, LanguageSwitchInMidRun) {
    startReady();
    delegate->installFirmware();
    print("Write 20%\r");
    trace.take();
    controls.languageControl.selected = 1;
    delegate->languageChanged();
    const auto switched = trace.take();
    EXPECT_TRUE(switched.starts_with(
        "store InterfaceLanguage \"ru\"\nsetMainMenu\nrefreshTexts\n  subtitleLabel"));
    EXPECT_TRUE(switched.ends_with("  operationLabel \"Запись OS\"\n"));
    exit(0);
    EXPECT_TRUE(trace.take().ends_with(
        R"(  operationLabel "Прошивка завершена"
  percentLabel ""
log "Процесс завершился с кодом 0.\n"
updateButtons: checkButton chooseButton builtinButton installButton
informational alert "Прошивка завершена" / "Дождитесь завершения на MPC4000, затем перезагрузите устройство."
)"));
}

} // namespace oxlade::test
