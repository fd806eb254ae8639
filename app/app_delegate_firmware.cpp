// The selection of the image to flash.
#include "app/app_delegate.h"
#include "firmware/firmware.h"
#include "i18n/string_table.h"

namespace oxlade {

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
