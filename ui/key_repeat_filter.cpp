#include "ui/key_repeat_filter.h"

#include <QKeyEvent>

#include <algorithm>

namespace oxlade {
namespace {

bool isKeyEvent(const QEvent& event) {
    return event.type() == QEvent::KeyPress || event.type() == QEvent::ShortcutOverride ||
           event.type() == QEvent::KeyRelease;
}

} // namespace

bool KeyRepeatFilter::isRepetition(const QKeyEvent& press) const {
    return press.isAutoRepeat() || (lastRelease_ != 0 && press.timestamp() == lastRelease_);
}

bool KeyRepeatFilter::eventFilter(QObject* watched, QEvent* event) {
    if (!isKeyEvent(*event)) return QObject::eventFilter(watched, event);
    const auto& key = static_cast<const QKeyEvent&>(*event);
    // The keys that press buttons.
    const auto keys = {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space};
    if (std::find(keys.begin(), keys.end(), key.key()) == keys.end()) return false;
    if (event->type() == QEvent::KeyRelease) {
        lastRelease_ = key.timestamp();
        return false;
    }
    if (!isRepetition(key)) return false;
    // An accepted override keeps the key from the shortcuts too.
    event->accept();
    return true;
}

} // namespace oxlade
