// Everything that the window and its menu bar show as text and colour, as values. Pure.
#pragma once

#include "interfaces/colors.h"
#include "interfaces/device_state.h"
#include "interfaces/menu.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace oxlade {

/// The state that the texts are made of. Views live for the call.
struct WindowState {
    DeviceState deviceState = DeviceState::unknown;
    std::string_view deviceGeometry;
    std::string_view firmwarePath;
    std::uint64_t firmwareSize = 0;  ///< bytes; 0 when the file cannot be asked
    bool hasBundledFirmware = false; ///< looked at only without a firmware path
    std::string_view operationKey;
    std::int32_t operationPercent = -1;
};

/// Views point into the string table or into the state's texts.
struct WindowTexts {
    std::string_view subtitle, deviceCaption, firmwareCaption, logCaption;
    std::string_view checkTitle, builtinTitle, chooseTitle, installTitle;
    std::optional<std::string_view> deviceStatus, deviceDetail; ///< nothing: leave as they are
    SemanticColor deviceDot = SemanticColor::tertiaryLabelColor;
    std::string firmware;
    std::string_view firmwareToolTip;
    SemanticColor firmwareColor = SemanticColor::labelColor;
    std::string_view operation;
    std::string percent;
};

/// In the current language. Main thread.
WindowTexts windowTexts(const WindowState& state);

/// The whole menu bar in the current language. Main thread.
MenuTree menuTree();

/// A size in bytes as mebibytes (2^20 bytes) with one decimal and a point in every
/// locale, such as "3.0 MB". The size is converted to a double first, so sizes over 2^53
/// bytes are rounded to 53 significant bits; then to the nearest tenth, ties to even.
/// Any thread.
std::string megabytes(std::uint64_t bytes);

} // namespace oxlade
