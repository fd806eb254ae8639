// All that happens in a flash, in its order.
#include "tests/app/order_traces.h"

namespace oxlade::test {

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
    EXPECT_EQ(
        trace.take(),
        R"(critical alert "Flash the OS to the MPC4000?" / "Flash memory is erased before writing. )"
        R"(Do not power off the MPC4000 or unplug USB until it finishes." [Flash] [Cancel]
progress 0
refreshTexts
  operationLabel "Flashing the MPC4000"
  percentLabel "0%"
log "$ oxlade --firmware /home/user/a b.bin --yes\n"
process /apps/Oxlade.app/Contents/MacOS/oxlade [--firmware] [/home/user/a b.bin] [--yes]
updateButtons:
launched
startWaiting
)");
    print("Erase 31%\r");
    print("Erase 100%\rWrite 0%\r");
    print("Write 60%\n");
    print("OS upload complete.\n");
    EXPECT_EQ(trace.take(), R"(log "Erase 31%\n"
progress 15.5
refreshTexts
  operationLabel "Erasing flash"
  percentLabel "31%"
log "Erase 100%\nWrite 0%\n"
progress 50
refreshTexts
  percentLabel "100%"
progress 50
refreshTexts
  operationLabel "Writing OS"
  percentLabel "0%"
log "Write 60%\n"
progress 80
refreshTexts
  percentLabel "60%"
log "OS upload complete.\n"
progress 100
refreshTexts
  operationLabel "Flashing complete"
  percentLabel ""
)");
    exit(0);
    EXPECT_EQ(trace.take(), R"(reading callback removed
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
    trace.take();
    print("Erase 30%\r");
    exit(1);
    EXPECT_EQ(trace.take(), R"(log "Erase 30%\n"
progress 15
refreshTexts
  operationLabel "Erasing flash"
  percentLabel "30%"
reading callback removed
stopWaiting
refreshTexts
  operationLabel "Flashing failed"
  percentLabel ""
log "Process exited with code 1.\n"
updateButtons: checkButton chooseButton builtinButton installButton
warning alert "Flashing did not complete" / "See the log at the bottom of the window."
)");
}

TEST_F(OrderTraces, FlashThatIsCancelled) {
    startReady();
    dialogs.answerFirst = false;
    delegate->installFirmware();
    EXPECT_EQ(
        trace.take(),
        R"(critical alert "Flash the OS to the MPC4000?" / "Flash memory is erased before writing. )"
        R"(Do not power off the MPC4000 or unplug USB until it finishes." [Flash] [Cancel]
)");
}

TEST_F(OrderTraces, FlashWithTheHelperMissing) {
    startReady();
    files.files.erase(bundledHelper);
    delegate->installFirmware();
    EXPECT_EQ(
        trace.take(),
        R"(critical alert "Flash the OS to the MPC4000?" / "Flash memory is erased before writing. )"
        R"(Do not power off the MPC4000 or unplug USB until it finishes." [Flash] [Cancel]
progress 0
refreshTexts
  operationLabel "Flashing the MPC4000"
  percentLabel "0%"
log "Helper not found: /home/user/oxlade\n"
stopWaiting
refreshTexts
  operationLabel "Flashing failed"
  percentLabel ""
updateButtons: checkButton chooseButton builtinButton installButton
warning alert "Flashing did not complete" / "See the log at the bottom of the window."
)");
}

TEST_F(OrderTraces, FlashWhoseLaunchIsRefused) {
    startReady();
    processes.launchError = "Permission denied";
    delegate->installFirmware();
    EXPECT_EQ(
        trace.take(),
        R"(critical alert "Flash the OS to the MPC4000?" / "Flash memory is erased before writing. )"
        R"(Do not power off the MPC4000 or unplug USB until it finishes." [Flash] [Cancel]
progress 0
refreshTexts
  operationLabel "Flashing the MPC4000"
  percentLabel "0%"
log "$ oxlade --firmware /apps/Oxlade.app/Contents/Resources/mpcv171.bin --yes\n"
process /apps/Oxlade.app/Contents/MacOS/oxlade [--firmware] [/apps/Oxlade.app/Contents/Resources/mpcv171.bin] [--yes]
updateButtons:
launch refused
reading callback removed
log "Could not start the helper: Permission denied\n"
stopWaiting
refreshTexts
  operationLabel "Flashing failed"
  percentLabel ""
log "Process exited with code -1.\n"
updateButtons: checkButton chooseButton builtinButton installButton
warning alert "Flashing did not complete" / "See the log at the bottom of the window."
)");
}

TEST_F(OrderTraces, LanguageSwitchInMidRun) {
    startReady();
    delegate->installFirmware();
    print("Write 20%\r");
    trace.take();
    controls.languageControl.selected = 1;
    delegate->languageChanged();
    EXPECT_EQ(trace.take(), R"(store InterfaceLanguage "ru"
setMainMenu
refreshTexts
  subtitleLabel "Загрузка OS в Akai MPC4000 через USB"
  deviceCaptionLabel "УСТРОЙСТВО"
  firmwareCaptionLabel "ПРОШИВКА"
  logCaptionLabel "ЖУРНАЛ"
  checkButton "Проверить"
  builtinButton "Встроенная"
  chooseButton "Выбрать…"
  installButton "Прошить OS"
  deviceStatusLabel "MPC4000 подключен"
  operationLabel "Запись OS"
)");
    print("Write 21%\r");
    exit(0);
    EXPECT_EQ(trace.take(), R"(log "Write 21%\n"
progress 60.5
refreshTexts
  percentLabel "21%"
reading callback removed
stopWaiting
progress 100
refreshTexts
  operationLabel "Прошивка завершена"
  percentLabel ""
log "Процесс завершился с кодом 0.\n"
updateButtons: checkButton chooseButton builtinButton installButton
informational alert "Прошивка завершена" / "Дождитесь завершения на MPC4000, затем перезагрузите устройство."
)");
}

} // namespace oxlade::test
