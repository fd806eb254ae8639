#include "app/app_delegate.h"

#include "firmware/firmware.h"
#include "i18n/string_table.h"
#include "i18n/window_texts.h"

#include <utility>

namespace oxlade {
namespace {

/// A control whose text depends on the language alone. The entry is looked up once: a refresh of
/// all texts follows each line that reports progress.
template <class Control>
struct FixedText {
    Control* Controls::*control;
    const Translation* translation;
};

const FixedText<Label> fixedLabels[] = {
    {&Controls::subtitleLabel, translationOf("subtitle")},
    {&Controls::deviceCaptionLabel, translationOf("device.caption")},
    {&Controls::firmwareCaptionLabel, translationOf("firmware.caption")},
    {&Controls::logCaptionLabel, translationOf("log.caption")},
};
const FixedText<Button> fixedTitles[] = {
    {&Controls::checkButton, translationOf("button.check")},
    {&Controls::builtinButton, translationOf("button.bundled")},
    {&Controls::chooseButton, translationOf("button.choose")},
    {&Controls::installButton, translationOf("button.install")},
};

} // namespace

AppDelegate::AppDelegate(System system, UserInterface& userInterface, std::string website)
    : system_{std::move(system)}, userInterface_{userInterface}, website_{std::move(website)} {}

void AppDelegate::applicationDidFinishLaunching() {
    // Not through setOperation, which refreshes controls.
    setOperationKey("op.ready");
    setOperationPercent(-1);
    controls_ = userInterface_.buildWindow(windowActions());
    appendLog(std::string{L("log.started")} + '\n');
    useBundledFirmware();
    refreshTexts();
    updateButtons();
    controls_->window->makeKeyAndOrderFront();
    userInterface_.activateIgnoringOtherApps();
}

WindowActions AppDelegate::windowActions() {
    return {
        .checkDevice = [this] { checkDevice(); },
        .useBundledFirmware = [this] { useBundledFirmware(); },
        .chooseFirmware = [this] { chooseFirmware(); },
        .installFirmware = [this] { installFirmware(); },
        .languageChanged = [this] { languageChanged(); },
        .openWebsite = [this] { openWebsite(); },
    };
}

void AppDelegate::installMainMenu() { userInterface_.setMainMenu(menuTree()); }

void AppDelegate::languageChanged() {
    CurrentLanguage = controls_->languageControl->selectedSegment() == 1 ? 1 : 0;
    system_.userDefaults.setString(interfaceLanguageKey, CurrentLanguage == 1 ? "ru" : "en");
    installMainMenu();
    refreshTexts();
}

void AppDelegate::openWebsite() { system_.workspace.openUrl(website_); }

void AppDelegate::setOperation(std::string_view key, std::int32_t percent) {
    setOperationKey(std::string{key});
    setOperationPercent(percent);
    refreshTexts();
}

void AppDelegate::updateButtons() {
    const bool busy = currentTask_ != nullptr;
    controls_->checkButton->setEnabled(!busy);
    controls_->chooseButton->setEnabled(!busy);
    controls_->builtinButton->setEnabled(!busy && !bundledFirmwarePath().empty());
    controls_->installButton->setEnabled(!busy && deviceState_ == DeviceState::ready &&
                                         !firmwarePath_.empty());
}

void AppDelegate::refreshTexts() {
    WindowState state;
    state.deviceState = deviceState_;
    state.deviceGeometry = deviceGeometry_;
    state.firmwarePath = firmwarePath_;
    // One question to the file system a refresh: which one depends on the selection.
    if (firmwarePath_.empty())
        state.hasBundledFirmware = !bundledFirmwarePath().empty();
    else
        state.firmwareSize = system_.fileSystem.fileSize(firmwarePath_);
    state.operationKey = operationKey_;
    state.operationPercent = operationPercent_;
    show(windowTexts(state));
}

void AppDelegate::show(const WindowTexts& texts) {
    const Controls& controls = *controls_;
    for (const auto& [label, translation] : fixedLabels)
        (controls.*label)->setStringValue(textOf(*translation));
    for (const auto& [button, translation] : fixedTitles)
        (controls.*button)->setTitle(textOf(*translation));
    if (texts.deviceStatus) controls.deviceStatusLabel->setStringValue(*texts.deviceStatus);
    if (texts.deviceDetail) controls.deviceDetailLabel->setStringValue(*texts.deviceDetail);
    controls.deviceStatusDot->setBackgroundColor(texts.deviceDot);
    controls.firmwareLabel->setStringValue(texts.firmware);
    controls.firmwareLabel->setToolTip(texts.firmwareToolTip);
    controls.firmwareLabel->setTextColor(texts.firmwareColor);
    controls.operationLabel->setStringValue(texts.operation);
    controls.percentLabel->setStringValue(texts.percent);
    controls.progress->setFailed(texts.flashFailed);
}

void AppDelegate::appendLog(std::string_view text) {
    if (!text.empty()) controls_->logView->append(text);
}

std::string AppDelegate::bundledFirmwarePath() const {
    return oxlade::bundledFirmwarePath(system_.bundle);
}

bool AppDelegate::validateFirmwareAtPath(const std::string& path, std::string* reason) const {
    const auto refusal = imageRefusal(system_.fileSystem, path);
    if (refusal && reason != nullptr) *reason = L(*refusal);
    return !refusal;
}

void AppDelegate::selectFirmwareAtPath(const std::string& path) {
    std::string reason;
    if (!validateFirmwareAtPath(path, &reason)) {
        system_.dialogs.runAlert(
            {AlertStyle::warning, std::string{L("firmware.invalid.title")}, reason, {}});
        return;
    }
    setFirmwarePath(path);
    appendLog(filled(L("log.firmware"), path) + '\n');
    refreshTexts();
    updateButtons();
}

void AppDelegate::useBundledFirmware() {
    const auto path = bundledFirmwarePath();
    if (!path.empty()) selectFirmwareAtPath(path);
}

void AppDelegate::chooseFirmware() {
    const auto path = system_.dialogs.runOpenPanel({std::string{L("panel.message")}, "bin"});
    if (path) selectFirmwareAtPath(*path);
}

} // namespace oxlade
