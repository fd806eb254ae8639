#include "tests/testing/fixture.h"

namespace oxlade::test {

class Selection : public ControllerTest {
  protected:
    std::string verdict(const std::string& path) {
        std::string reason = "untouched";
        const bool passed = delegate->validateFirmwareAtPath(path, &reason);
        return (passed ? "passed: " : "refused: ") + reason;
    }
};

TEST_F(Selection, AFileThatIsShortOrCannotBeReadIsTooSmall) {
    files.files["/empty"].bytes = "";
    files.files["/55"].bytes = validImage().substr(0, 55);
    for (const auto* path : {"/empty", "/55", "/none"})
        EXPECT_EQ(verdict(path), "refused: The file is too small to be MPC4000 firmware.");
}

TEST_F(Selection, AFileWithoutTheSignatureSaysSoInTheLanguageOfTheCall) {
    files.files["/x"].bytes = std::string(56, 'x');
    EXPECT_EQ(verdict("/x"), "refused: The file has no MPC4000 Operating System signature.");
    CurrentLanguage = 1;
    EXPECT_EQ(verdict("/x"), "refused: В файле нет сигнатуры MPC4000 Operating System.");
}

TEST_F(Selection, AGoodFileLeavesTheReasonAloneWhateverItIsCalled) {
    for (const auto* path : {"/a.bin", "/a", "/a.txt", "/.bin"}) {
        files.files[path].bytes = validImage();
        EXPECT_EQ(verdict(path), "passed: untouched");
    }
}

TEST_F(Selection, TheReasonMayBeLeftOut) {
    EXPECT_FALSE(delegate->validateFirmwareAtPath("/none", nullptr));
}

TEST_F(Selection, ThePathIsKeptExactlyAsItWasGiven) {
    start();
    files.files["/a/../b//c.bin"].bytes = validImage();
    delegate->selectFirmwareAtPath("/a/../b//c.bin");
    EXPECT_EQ(delegate->firmwarePath(), "/a/../b//c.bin");
}

TEST_F(Selection, ARefusedFileLeavesTheOneBefore) {
    start();
    delegate->selectFirmwareAtPath("/none");
    EXPECT_EQ(delegate->firmwarePath(), bundledImage);
    EXPECT_EQ(controls.firmwareLabel.text, "mpcv171.bin  ·  3.0 MB");
}

TEST_F(Selection, TheSameFileAgainRepeatsTheLogLine) {
    start();
    delegate->useBundledFirmware();
    const auto line = "Firmware selected: " + bundledImage + '\n';
    EXPECT_EQ(controls.logView.text, "Oxlade started.\n" + line + line);
}

TEST_F(Selection, BundledDoesNothingWithoutAShippedImage) {
    files.files.erase(bundledImage);
    start();
    delegate->useBundledFirmware();
    EXPECT_EQ(trace.take(), "");
    EXPECT_EQ(controls.firmwareLabel.text, "No bundled firmware. Choose a .bin file.");
}

TEST_F(Selection, CancellingThePanelChangesNothing) {
    start();
    dialogs.chosenFile = std::nullopt;
    delegate->chooseFirmware();
    EXPECT_EQ(trace.take(), "open panel \"Choose an OS file for the MPC4000\" *.bin\n");
}

TEST_F(Selection, APathThatLooksLikeATemplateIsLoggedAsItIs) {
    start();
    files.files["/%@ %d %n.bin"].bytes = validImage();
    delegate->selectFirmwareAtPath("/%@ %d %n.bin");
    EXPECT_TRUE(controls.logView.text.ends_with("Firmware selected: /%@ %d %n.bin\n"));
}

} // namespace oxlade::test
