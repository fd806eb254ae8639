// The window's buttons, drawn by ourselves: a rounded push button, and a text that
// opens a page. Main thread.
#pragma once

#include "interfaces/controls.h"
#include "ui/focus_ring.h"

#include <QPushButton>

#include <string>
#include <string_view>

namespace oxlade {

enum class ButtonSize { regular, large };

/// Drawn a few points inside its frame, so that the focus ring finds room there.
class PushButton final : public QPushButton, public Button {
  public:
    PushButton(ButtonSize size, QWidget* parent);

    void setTitle(std::string_view title) override;
    /// A button that loses the keyboard by being disabled takes it back when it is
    /// enabled again, unless the user has put it elsewhere meanwhile.
    void setEnabled(bool enabled) override;
    /// The filled look of the button that Return presses.
    void setFilled(bool filled);
    /// The drawn shape within the widget.
    QRect shape() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

  protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    ButtonSize size_;
    bool filled_ = false;
    bool lostFocus_ = false;
    FocusRing focusRing_;
    std::string title_;
};

/// No border; the pointing hand over it. It is no larger than its text: the ring that
/// shows its focus is drawn by whatever it stands on.
class LinkButton final : public QPushButton {
  public:
    LinkButton(const QString& title, QWidget* parent);
    QSize sizeHint() const override;
    bool showsFocus() const { return focusRing_.isShownOn(*this); }

  protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    FocusRing focusRing_;
};

} // namespace oxlade
