// Colours by meaning; ui/palette.h gives them values. Pure.
#pragma once

namespace oxlade {

/// The appearance that the desktop asks for.
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
