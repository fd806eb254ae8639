// Colours by their meaning. The palette of the window gives them their value. Pure.
#pragma once

namespace oxlade {

/// The two appearances that a desktop can ask for.
enum class ColorScheme { dark, light };

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
