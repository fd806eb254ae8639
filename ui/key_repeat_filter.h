// A Return key that is held down answers only once. Without this one long press
// could ask for an operation and confirm it.
#pragma once

#include <QObject>

namespace oxlade {

/// Installed on the application, it sees the keys of every window.
class KeyRepeatFilter final : public QObject {
  public:
    bool eventFilter(QObject* watched, QEvent* event) override;
};

} // namespace oxlade
