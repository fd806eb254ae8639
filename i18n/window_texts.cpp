#include "i18n/window_texts.h"

#include "i18n/string_table.h"
#include "interfaces/path_names.h"

#include <array>
#include <charconv>

namespace oxlade {

namespace {

void setDeviceTexts(WindowTexts& texts, const WindowState& state) {
    const auto show = [&texts](std::string_view status, std::string_view detail,
                               SemanticColor dot) {
        texts.deviceStatus = status;
        texts.deviceDetail = detail;
        texts.deviceDot = dot;
    };
    // Any number can be stored: others than these four keep the texts.
    switch (state.deviceState) {
    case DeviceState::unknown:
        return show(L("device.unknown"), L("device.unknown.detail"),
                    SemanticColor::tertiaryLabelColor);
    case DeviceState::checking:
        return show(L("device.checking"), L("device.checking.detail"),
                    SemanticColor::systemOrangeColor);
    case DeviceState::ready:
        return show(L("device.ready"), state.deviceGeometry, SemanticColor::systemGreenColor);
    case DeviceState::failed:
        return show(L("device.failed"), L("device.failed.detail"), SemanticColor::systemRedColor);
    }
    texts.deviceDot = SemanticColor::tertiaryLabelColor;
}

void setFirmwareTexts(WindowTexts& texts, const WindowState& state) {
    if (!state.firmwarePath.empty()) {
        texts.firmware = lastPathComponent(state.firmwarePath);
        texts.firmware += "  \u00B7  ";
        texts.firmware += megabytes(state.firmwareSize);
        texts.firmwareToolTip = state.firmwarePath;
        texts.firmwareColor = SemanticColor::labelColor;
        return;
    }
    texts.firmwareToolTip =
        L(state.hasBundledFirmware ? "firmware.none" : "firmware.bundledMissing");
    texts.firmware = texts.firmwareToolTip;
    texts.firmwareColor = SemanticColor::secondaryLabelColor;
}

} // namespace

std::string megabytes(std::uint64_t bytes) {
    std::array<char, 32> digits;
    const auto end =
        std::to_chars(digits.data(), digits.data() + digits.size(),
                      static_cast<double>(bytes) * (1.0 / 1048576), std::chars_format::fixed, 1)
            .ptr;
    return std::string{digits.data(), end} + " MB";
}

WindowTexts windowTexts(const WindowState& state) {
    WindowTexts texts;
    setDeviceTexts(texts, state);
    setFirmwareTexts(texts, state);
    texts.operation = L(state.operationKey);
    if (state.operationPercent >= 0) texts.percent = std::to_string(state.operationPercent) + '%';
    texts.flashFailed = state.operationKey == "op.error";
    return texts;
}

MenuTree menuTree() {
    const auto item = [](std::string_view key, MenuAction action, char keyEquivalent) {
        return MenuItem{std::string{L(key)}, action, keyEquivalent};
    };
    return {
        {"Oxlade", {item("menu.quit", MenuAction::terminate, 'q')}},
        {std::string{L("menu.edit")},
         {item("menu.copy", MenuAction::copy, 'c'),
          item("menu.selectAll", MenuAction::selectAll, 'a')}},
    };
}

} // namespace oxlade
