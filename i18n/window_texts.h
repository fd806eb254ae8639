// The window's texts and colours that depend on the state, and the menu bar, as values. Pure.
#pragma once

#include "interfaces/types.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace oxlade {

/// The state that the texts are made from. The views need to be valid during the call only.
struct WindowState {
    DeviceState deviceState = DeviceState::unknown;
    std::string_view deviceGeometry;
    std::string_view firmwarePath;
    std::uint64_t firmwareSize = 0;  ///< bytes; 0 if it is not known
    bool hasBundledFirmware = false; ///< used only if firmwarePath is empty
    std::string_view operationKey;
    std::int32_t operationPercent = -1;
};

/// Texts, colours and what follows the state as they do. The views point into the string table or
/// into the state's texts.
struct WindowTexts {
    std::optional<std::string_view> deviceStatus, deviceDetail; ///< nullopt: leave as is
    SemanticColor deviceDot = SemanticColor::tertiaryLabelColor;
    std::string firmware;
    std::string_view firmwareToolTip;
    SemanticColor firmwareColor = SemanticColor::labelColor;
    std::string_view operation;
    std::string percent;
    bool flashFailed = false; ///< the bar says so, too
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
