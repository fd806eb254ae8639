#include "ui/key_repeat_filter.h"

#include <QKeyEvent>

namespace oxlade {

bool KeyRepeatFilter::eventFilter(QObject* watched, QEvent* event) {
    const auto type = event->type();
    if (type == QEvent::KeyPress || type == QEvent::ShortcutOverride || type == QEvent::Shortcut) {
        if (type == QEvent::Shortcut) return QObject::eventFilter(watched, event);
        const auto& key = static_cast<const QKeyEvent&>(*event);
        const bool answers = key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
        if (answers && key.isAutoRepeat()) return true;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace oxlade
