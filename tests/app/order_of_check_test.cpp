// All that happens in a check, in its order.
#include "tests/app/order_traces.h"

namespace oxlade::test {

TEST_F(OrderTraces, CheckThatSucceeds) {
    start();
    delegate->checkDevice();
    EXPECT_EQ(trace.take(), R"(progress 0
refreshTexts
  deviceStatusLabel "Checking MPC4000…"
  deviceDetailLabel "Opening the USB interface and reading the flash geometry."
  deviceStatusDot systemOrangeColor
  operationLabel "Checking the connection"
log "$ oxlade --info\n"
process /apps/Oxlade.app/Contents/MacOS/oxlade [--info]
updateButtons:
launched
startWaiting
)");
    print("MPC4000 found\nFlash geometry: 8 sectors\n");
    EXPECT_EQ(trace.take(), R"(log "MPC4000 found\nFlash geometry: 8 sectors\n"
)");
    exit(0);
    EXPECT_EQ(trace.take(), R"(reading callback removed
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
    print("No device.\n");
    exit(2);
    EXPECT_EQ(trace.take(), R"(log "No device.\n"
reading callback removed
stopWaiting
refreshTexts
  deviceStatusLabel "MPC4000 not opened"
  deviceDetailLabel "Check USB, OS Loader mode and the macOS permission to access the device."
  deviceStatusDot systemRedColor
  operationLabel "Check failed"
log "Process exited with code 2.\n"
updateButtons: checkButton chooseButton builtinButton
)");
}

TEST_F(OrderTraces, CheckWithTheHelperMissing) {
    files.files.erase(bundledHelper);
    start();
    delegate->checkDevice();
    EXPECT_EQ(trace.take(), R"(progress 0
refreshTexts
  deviceStatusLabel "Checking MPC4000…"
  deviceDetailLabel "Opening the USB interface and reading the flash geometry."
  deviceStatusDot systemOrangeColor
  operationLabel "Checking the connection"
log "Helper not found: /home/user/oxlade\n"
stopWaiting
refreshTexts
  deviceStatusLabel "MPC4000 not opened"
  deviceDetailLabel "Check USB, OS Loader mode and the macOS permission to access the device."
  deviceStatusDot systemRedColor
  operationLabel "Check failed"
updateButtons: checkButton chooseButton builtinButton
)");
}

TEST_F(OrderTraces, CheckWithAHelperThatMayNotBeExecuted) {
    files.files[bundledHelper].executable = false;
    files.files["/home/user/oxlade"].executable = false;
    start();
    delegate->checkDevice();
    EXPECT_EQ(trace.take(), R"(progress 0
refreshTexts
  deviceStatusLabel "Checking MPC4000…"
  deviceDetailLabel "Opening the USB interface and reading the flash geometry."
  deviceStatusDot systemOrangeColor
  operationLabel "Checking the connection"
log "Helper not found: /home/user/oxlade\n"
stopWaiting
refreshTexts
  deviceStatusLabel "MPC4000 not opened"
  deviceDetailLabel "Check USB, OS Loader mode and the macOS permission to access the device."
  deviceStatusDot systemRedColor
  operationLabel "Check failed"
updateButtons: checkButton chooseButton builtinButton
)");
}

TEST_F(OrderTraces, CheckWhoseLaunchIsRefused) {
    processes.launchError = "Exec format error";
    start();
    delegate->checkDevice();
    EXPECT_EQ(trace.take(), R"(progress 0
refreshTexts
  deviceStatusLabel "Checking MPC4000…"
  deviceDetailLabel "Opening the USB interface and reading the flash geometry."
  deviceStatusDot systemOrangeColor
  operationLabel "Checking the connection"
log "$ oxlade --info\n"
process /apps/Oxlade.app/Contents/MacOS/oxlade [--info]
updateButtons:
launch refused
reading callback removed
log "Could not start the helper: Exec format error\n"
stopWaiting
refreshTexts
  deviceStatusLabel "MPC4000 not opened"
  deviceDetailLabel "Check USB, OS Loader mode and the macOS permission to access the device."
  deviceStatusDot systemRedColor
  operationLabel "Check failed"
log "Process exited with code -1.\n"
updateButtons: checkButton chooseButton builtinButton
)");
}

} // namespace oxlade::test
