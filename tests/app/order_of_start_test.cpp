// All that happens at the start and at the choice of an image, in its order.
#include "tests/app/order_traces.h"

namespace oxlade::test {

TEST_F(OrderTraces, StartWithAValidShippedImage) {
    delegate->installMainMenu();
    delegate->applicationDidFinishLaunching();
    EXPECT_EQ(trace.take(), R"(setMainMenu
buildWindow
log "Oxlade started.\n"
log "Firmware selected: /apps/Oxlade.app/Contents/Resources/mpcv171.bin\n"
refreshTexts
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
  firmwareLabel "mpcv171.bin  ·  3.0 MB"
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
refreshTexts
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
  firmwareLabel "No bundled firmware. Choose a .bin file."
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
refreshTexts
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
  firmwareLabel "No firmware selected"
  firmwareLabel tool tip "No firmware selected"
  firmwareLabel secondaryLabelColor
  operationLabel "Ready"
  percentLabel ""
updateButtons: checkButton chooseButton builtinButton
makeKeyAndOrderFront
activateIgnoringOtherApps
)");
}

TEST_F(OrderTraces, AFileThatIsNoImageIsExplainedAndChangesNothing) {
    files.files[ownImage].bytes = "short";
    dialogs.chosenFile = ownImage;
    startReady();
    delegate->chooseFirmware();
    EXPECT_EQ(trace.take(), R"(open panel "Choose an OS file for the MPC4000" *.bin
warning alert "This does not look like MPC4000 firmware" / "The file is too small to be MPC4000 firmware."
)");
}

} // namespace oxlade::test
