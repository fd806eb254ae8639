// Colours by their meaning; the window's palette gives them their value.
#pragma once

namespace oxlade {

enum class SemanticColor {
    labelColor,
    secondaryLabelColor,
    tertiaryLabelColor,
    systemGreenColor,
    systemOrangeColor,
    systemRedColor,
    controlBackgroundColor,
    separatorColor,
    textBackgroundColor,
    linkColor,
};

} // namespace oxlade
