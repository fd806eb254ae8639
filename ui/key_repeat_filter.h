// A key that presses buttons (Return, Enter, Space) and is held down answers only
// once. Without this one long press could ask for an operation and confirm it.
// Main thread.
#pragma once

#include <QObject>

class QKeyEvent;

namespace oxlade {

/// Installed on the application, it sees the keys of every window.
///
/// The toolkit's own mark for a repeated key is not enough: on X11 it is missing when
/// other events come between the two halves of a repetition, as they do while a
/// window opens. But both halves, a release and a press, bear the same time.
class KeyRepeatFilter final : public QObject {
  public:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    bool isRepetition(const QKeyEvent& press) const;

    quint64 lastRelease_ = 0; ///< ms, the window system's clock; 0: none yet
};

} // namespace oxlade
