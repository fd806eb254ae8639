#include "ui/key_repeat_filter.h"

#include <QKeyEvent>

namespace oxlade {

bool KeyRepeatFilter::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride) {
        const auto& key = static_cast<const QKeyEvent&>(*event);
        const bool answers = key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
        if (answers && key.isAutoRepeat()) return true;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace oxlade
