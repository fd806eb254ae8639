// The menu bar as a value. Pure.
#pragma once

#include <string>
#include <vector>

namespace oxlade {

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
