#include "ui/menu_tree.h"

#include "i18n/string_table.h"

namespace oxlade {

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
