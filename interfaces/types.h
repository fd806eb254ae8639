// The plain types that layers share. Pure.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace oxlade {

/// The state of the sampler as far as the program knows it. The program sets only the four named
/// values; readers must accept any 64-bit number.
enum class DeviceState : std::int64_t {
    unknown = 0,  ///< never checked; initial value only
    checking = 1, ///< a device check is running
    ready = 2,    ///< the last check's helper exited with status 0
    failed = 3,   ///< the last check's helper exited otherwise, or could not be started
};

/// The appearance that the desktop asks for.
enum class ColorScheme { dark, light };

/// Colours by meaning; ui/palette.h gives them values.
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

enum class MenuAction { terminate, copy, selectAll };

struct MenuItem {
    std::string title; ///< UTF-8, plain: an ampersand marks no mnemonic
    MenuAction action;
    char keyEquivalent; ///< a lower-case letter, pressed with the platform's command key

    friend bool operator==(const MenuItem&, const MenuItem&) = default;
};

struct Menu {
    std::string title;
    std::vector<MenuItem> items;

    friend bool operator==(const Menu&, const Menu&) = default;
};

/// The menus from left to right; the first is the application's.
using MenuTree = std::vector<Menu>;

} // namespace oxlade
