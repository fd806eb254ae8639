#include "ui/qt_user_interface.h"

#include "ui/accessibility.h"
#include "ui/appearance.h"
#include "ui/fonts.h"
#include "ui/interface_style.h"
#include "ui/key_repeat_filter.h"
#include "ui/main_window.h"

#include <QApplication>

#include <utility>

namespace oxlade {

QtUserInterface::QtUserInterface(WindowContext context)
    : context_{std::move(context)}, appearance_{std::make_unique<Appearance>()},
      keyRepeatFilter_{std::make_unique<KeyRepeatFilter>()} {
    useInterfaceStyle();
    chooseInterfaceFont();
    installAccessibility();
    qApp->installEventFilter(keyRepeatFilter_.get());
}

QtUserInterface::~QtUserInterface() = default;

Controls QtUserInterface::buildWindow(WindowActions actions) {
    window_ = std::make_unique<MainWindow>(context_, actions);
    window_->setMenu(menu_);
    return window_->controls();
}

void QtUserInterface::setMainMenu(const MenuTree& menu) {
    menu_ = menu;
    if (window_) window_->setMenu(menu_);
}

void QtUserInterface::activateIgnoringOtherApps() {
    if (window_) window_->activateWindow();
}

void QtUserInterface::setColorScheme(std::optional<ColorScheme> preference) {
    appearance_->setPreference(preference);
}

QWidget* QtUserInterface::window() const { return window_.get(); }

} // namespace oxlade
