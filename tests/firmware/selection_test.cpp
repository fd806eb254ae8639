// The paths of helper and image, and the selection of the image to flash.
#include "tests/testing/fixture.h"

namespace oxlade::test {

class Selection : public ControllerTest {
  protected:
    std::string verdict(const std::string& path) {
        std::string reason = "unchanged";
        const bool passed = delegate->validateFirmwareAtPath(path, &reason);
        EXPECT_EQ(delegate->validateFirmwareAtPath(path, nullptr), passed);
        return (passed ? "passed: " : "refused: ") + reason;
    }
};

TEST_F(Selection, TheHelperOfTheBundleWinsIfItCanBeExecuted) {
    files.files["/home/user/oxlade"].executable = true;
    EXPECT_EQ(delegate->loaderPath(), bundledHelper);
    files.files[bundledHelper].executable = false;
    EXPECT_EQ(delegate->loaderPath(), "/home/user/oxlade");
    start();
    delegate->checkDevice();
    EXPECT_NE(trace.take().find("process /home/user/oxlade [--info]"), std::string::npos);
}

TEST_F(Selection, ThePathsAreLookedUpAtEachCall) {
    files.files.erase(bundledHelper);
    for (const auto& [folder, path] : {std::pair{"/home/user", "/home/user/oxlade"},
                                       {"/", "/oxlade"},
                                       {"", "oxlade"}}) { // "": it was deleted
        files.workingDirectory = folder;
        EXPECT_EQ(delegate->loaderPath(), path);
    }
    EXPECT_EQ(delegate->bundledFirmwarePath(), bundledImage);
    files.files.erase(bundledImage);
    EXPECT_EQ(delegate->bundledFirmwarePath(), "");
}

TEST_F(Selection, AFileThatIsShortOrCannotBeReadIsTooSmall) {
    files.files["/empty"].bytes = "";
    files.files["/55"].bytes = validImage().substr(0, 55);
    for (const auto* path : {"/empty", "/55", "/none"})
        EXPECT_EQ(verdict(path), "refused: The file is too small to be MPC4000 firmware.");
}

TEST_F(Selection, TheReasonIsInTheLanguageOfTheCall) {
    files.files["/x"].bytes = std::string(56, 'x');
    EXPECT_EQ(verdict("/x"), "refused: The file has no MPC4000 Operating System signature.");
    CurrentLanguage = 1;
    EXPECT_EQ(verdict("/x"), "refused: В файле нет сигнатуры MPC4000 Operating System.");
}

TEST_F(Selection, AnImageMayHaveAnyName) {
    for (const auto* path : {"/a.bin", "/a", "/a.txt", "/.bin"}) {
        files.files[path].bytes = validImage();
        EXPECT_EQ(verdict(path), "passed: unchanged");
    }
}

TEST_F(Selection, ThePathIsStoredAndLoggedAsItIs) {
    start();
    const std::string path = "/a/../%@ %d//c.bin";
    files.files[path].bytes = validImage();
    trace.onAdd = [&](const std::string&) { EXPECT_EQ(delegate->firmwarePath(), path); };
    delegate->selectFirmwareAtPath(path);
    delegate->selectFirmwareAtPath(path);
    const std::string line = "Firmware selected: " + path + '\n';
    EXPECT_TRUE(controls.logView.text.ends_with('\n' + line + line)) << "logged each time";
}

TEST_F(Selection, ARefusedFileChangesNothing) {
    files.files["/short"].bytes = "short";
    dialogs.chosenFile = "/short";
    start();
    delegate->chooseFirmware();
    EXPECT_EQ(trace.take(), R"(open panel "Choose an OS file for the MPC4000" *.bin
warning alert "This does not look like MPC4000 firmware" / "The file is too small to be MPC4000 firmware."
)");
    EXPECT_EQ(delegate->firmwarePath(), bundledImage);
}

TEST_F(Selection, CancellingThePanelChangesNothing) {
    start();
    delegate->chooseFirmware();
    EXPECT_EQ(trace.take(), "open panel \"Choose an OS file for the MPC4000\" *.bin\n");
}

TEST_F(Selection, BundledWithoutAShippedImageDoesNothing) {
    files.files.erase(bundledImage);
    start();
    delegate->useBundledFirmware();
    EXPECT_EQ(trace.take(), "");
}

} // namespace oxlade::test
