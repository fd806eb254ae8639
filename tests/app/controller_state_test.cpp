#include "tests/testing/fixture.h"

namespace oxlade::test {

class ControllerState : public ControllerTest {};

TEST_F(ControllerState, WithNoImageAtAllCheckAndChooseAreEnabledAndTheOperationReadsReady) {
    files.files.erase(bundledImage);
    start();
    EXPECT_TRUE(controls.checkButton.enabled);
    EXPECT_TRUE(controls.chooseButton.enabled);
    EXPECT_FALSE(controls.builtinButton.enabled);
    EXPECT_FALSE(controls.installButton.enabled);
    EXPECT_EQ(controls.operationLabel.text, "Ready");
    EXPECT_EQ(controls.percentLabel.text, "");
}

TEST_F(ControllerState, StartsWithAnUnknownDeviceAndNothingElse) {
    EXPECT_EQ(delegate->deviceState(), DeviceState::unknown);
    start();
    EXPECT_EQ(delegate->deviceState(), DeviceState::unknown);
    EXPECT_EQ(delegate->deviceGeometry(), "");
    EXPECT_EQ(delegate->currentTask(), nullptr);
    EXPECT_EQ(delegate->currentMode(), "");
    EXPECT_EQ(delegate->taskOutput(), "");
    EXPECT_EQ(processes.made, 0) << "no device check starts by itself";
}

TEST_F(ControllerState, FlashOsStaysEnabledAfterAFlashThatFailed) {
    startReady();
    EXPECT_TRUE(controls.installButton.enabled);
    delegate->installFirmware();
    exit(1);
    EXPECT_TRUE(controls.installButton.enabled);
    EXPECT_EQ(delegate->deviceState(), DeviceState::ready);
}

TEST_F(ControllerState, AFailedCheckDisablesFlashOsAlthoughAnImageIsSelected) {
    startReady();
    delegate->checkDevice();
    exit(1);
    EXPECT_FALSE(delegate->firmwarePath().empty());
    EXPECT_FALSE(controls.installButton.enabled);
}

TEST_F(ControllerState, ACheckWithoutAGeometryLineShowsTheEarlierGeometry) {
    start();
    delegate->checkDevice();
    print("Flash geometry: 8 sectors\n");
    exit(0);
    delegate->checkDevice();
    exit(0);
    EXPECT_EQ(controls.deviceDetailLabel.text, "Flash geometry: 8 sectors");
}

TEST_F(ControllerState, ClosingTheLastWindowEndsTheProgram) {
    EXPECT_TRUE(delegate->applicationShouldTerminateAfterLastWindowClosed());
}

TEST_F(ControllerState, SettersOnlyStore) {
    start();
    delegate->setFirmwarePath("/x");
    delegate->setDeviceState(DeviceState::failed);
    delegate->setDeviceGeometry("g");
    delegate->setOperationKey("op.error");
    delegate->setOperationPercent(7);
    delegate->setCurrentMode("info");
    delegate->setTaskOutput("o");
    EXPECT_EQ(trace.take(), "");
    EXPECT_EQ(delegate->firmwarePath(), "/x");
    EXPECT_EQ(delegate->operationPercent(), 7);
    EXPECT_EQ(delegate->taskOutput(), "o");
}

TEST_F(ControllerState, BundledIsEnabledByTheImageThatStandsThereNow) {
    start();
    files.files.erase(bundledImage);
    delegate->updateButtons();
    EXPECT_FALSE(controls.builtinButton.enabled);
    files.files[bundledImage].bytes = validImage();
    delegate->updateButtons();
    EXPECT_TRUE(controls.builtinButton.enabled);
}

TEST_F(ControllerState, ChoosingASegmentStoresItAndAnyOtherSelectionIsEnglish) {
    start();
    for (const auto& [segment, stored] : {std::pair{1, "ru"}, {0, "en"}, {-1, "en"}, {2, "en"}}) {
        controls.languageControl.selected = segment;
        delegate->languageChanged();
        EXPECT_EQ(defaults.values["InterfaceLanguage"], stored);
        EXPECT_EQ(CurrentLanguage, segment == 1 ? 1 : 0);
        EXPECT_EQ(controls.operationLabel.text, segment == 1 ? "Готово" : "Ready");
    }
}

TEST_F(ControllerState, LinesInTheLogKeepTheLanguageTheyWereWrittenIn) {
    start();
    const auto before = controls.logView.text;
    controls.languageControl.selected = 1;
    delegate->languageChanged();
    EXPECT_EQ(controls.logView.text, before);
}

TEST_F(ControllerState, NothingIsStoredAtStart) {
    delegate->installMainMenu();
    start();
    EXPECT_TRUE(defaults.values.empty());
}

TEST_F(ControllerState, TheMenuIsRebuiltInTheNewLanguageAndBackAgain) {
    delegate->installMainMenu();
    start();
    const MenuTree english = interface.menu;
    controls.languageControl.selected = 1;
    delegate->languageChanged();
    const MenuTree russian{
        {"Oxlade", {{"Завершить Oxlade", MenuAction::terminate, 'q'}}},
        {"Правка",
         {{"Скопировать", MenuAction::copy, 'c'}, {"Выбрать все", MenuAction::selectAll, 'a'}}}};
    EXPECT_EQ(interface.menu, russian);
    controls.languageControl.selected = 0;
    delegate->languageChanged();
    EXPECT_EQ(interface.menu, english);
    const MenuTree expected{
        {"Oxlade", {{"Quit Oxlade", MenuAction::terminate, 'q'}}},
        {"Edit", {{"Copy", MenuAction::copy, 'c'}, {"Select All", MenuAction::selectAll, 'a'}}}};
    EXPECT_EQ(english, expected);
}

TEST_F(ControllerState, TheLinkOpensTheAuthorsWebsite) {
    delegate->openWebsite();
    EXPECT_EQ(trace.take(), "open https://oxlade.example/\n");
}

TEST_F(ControllerState, ARefreshAsksForOneFileSizeAndDoesNotLookIntoTheFile) {
    start();
    files.sizeQueries = files.headReads = files.resourceQueries = 0;
    delegate->refreshTexts();
    EXPECT_EQ(files.sizeQueries, 1);
    EXPECT_EQ(files.headReads + files.resourceQueries, 0);
}

TEST_F(ControllerState, RefreshingTwiceChangesNothingTheSecondTime) {
    start();
    delegate->refreshTexts();
    EXPECT_EQ(trace.take(), "refreshTexts\n");
}

TEST_F(ControllerState, AnImageThatVanishedShowsItsNameAndNoSize) {
    start();
    files.files.erase(bundledImage);
    delegate->refreshTexts();
    EXPECT_EQ(controls.firmwareLabel.text, "mpcv171.bin  ·  0.0 MB");
}

TEST_F(ControllerState, AnUnknownDeviceStateLeavesTheTextsAndGreysTheDot) {
    startReady();
    const auto status = controls.deviceStatusLabel.text;
    for (const std::int64_t odd : {std::int64_t{4}, std::int64_t{-1}, INT64_MAX, INT64_MIN}) {
        delegate->setDeviceState(static_cast<DeviceState>(odd));
        delegate->refreshTexts();
        EXPECT_EQ(controls.deviceStatusLabel.text, status);
        EXPECT_EQ(controls.deviceStatusDot.color, SemanticColor::tertiaryLabelColor);
        EXPECT_FALSE((delegate->updateButtons(), controls.installButton.enabled));
    }
}

TEST_F(ControllerState, AnEmptyTextIsNotAppended) {
    start();
    delegate->appendLog("");
    EXPECT_EQ(trace.take(), "");
}

TEST_F(ControllerState, TextsAreAppendedAsTheyAre) {
    start();
    const auto before = controls.logView.text;
    delegate->appendLog("one");
    delegate->appendLog(" line\n");
    EXPECT_EQ(controls.logView.text, before + "one line\n");
}

} // namespace oxlade::test
