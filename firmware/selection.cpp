// The image to flash: one gate, two ways to it.
#include "app/app_delegate.h"
#include "firmware/image_test.h"
#include "i18n/string_table.h"

namespace oxlade {

bool AppDelegate::validateFirmwareAtPath(const std::string& path, std::string* reason) const {
    const auto refuse = [reason](std::string_view key) {
        if (reason != nullptr) *reason = L(key);
        return false;
    };
    switch (testImage(system_.fileSystem.head(path, imageMinimumSize))) {
    case ImageVerdict::tooSmall:
        return refuse("firmware.invalid.small");
    case ImageVerdict::noSignature:
        return refuse("firmware.invalid.signature");
    case ImageVerdict::acceptable:
        break;
    }
    return true;
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
