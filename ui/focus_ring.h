// Whether a control shows that it has the keyboard: only to those who put it
// there by the keyboard. Main thread.
#pragma once

#include <QFocusEvent>
#include <QWidget>

namespace oxlade {

class FocusRing final {
  public:
    /// To be called with every event of the control.
    void follow(const QEvent& event) {
        if (event.type() != QEvent::FocusIn) return;
        switch (static_cast<const QFocusEvent&>(event).reason()) {
        case Qt::MouseFocusReason:
            byKeyboard_ = false;
            break;
        case Qt::TabFocusReason:
        case Qt::BacktabFocusReason:
        case Qt::ShortcutFocusReason:
            byKeyboard_ = true;
            break;
        default:
            break; // back from a menu or another window: as it was
        }
    }
    bool isShownOn(const QWidget& control) const { return byKeyboard_ && control.hasFocus(); }

  private:
    bool byKeyboard_ = false;
};

} // namespace oxlade
