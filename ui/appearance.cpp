#include "ui/appearance.h"

#include <QApplication>
#include <QEvent>
#include <QScopedValueRollback>

namespace oxlade {

Appearance::Appearance() : desktop_{QApplication::palette()} {
    apply();
    qApp->installEventFilter(this);
}

Appearance::~Appearance() {
    qApp->removeEventFilter(this);
    QApplication::setPalette(QPalette{});
}

void Appearance::setPreference(std::optional<ColorScheme> preference) {
    preference_ = preference;
    apply();
}

bool Appearance::eventFilter(QObject* watched, QEvent* event) {
    if (!applying_ && watched == qApp && event->type() == QEvent::ApplicationPaletteChange) {
        desktop_ = QApplication::palette();
        apply();
    } else if (!applying_ && watched->isWindowType() && event->type() == QEvent::ThemeChange) {
        readDesktop();
        apply();
    }
    return QObject::eventFilter(watched, event);
}

/// QApplication::palette() is the desktop's only while no other is set.
void Appearance::readDesktop() {
    const QScopedValueRollback guard{applying_, true};
    QApplication::setPalette(QPalette{});
    desktop_ = QApplication::palette();
}

void Appearance::apply() {
    const QScopedValueRollback guard{applying_, true};
    const ColorScheme scheme = preference_.value_or(schemeOf(desktop_));
    QApplication::setPalette(interfacePalette(scheme, accentOf(desktop_, scheme)));
}

} // namespace oxlade
