// The window's push button. Main thread.
#pragma once

#include "interfaces/user_interface.h"

#include <QPushButton>

#include <string>
#include <string_view>

namespace oxlade {

/// The text with its ampersands doubled: Qt makes no mnemonic of them.
QString withoutMnemonic(QString text);

class QtButton final : public QPushButton, public Button {
  public:
    explicit QtButton(QWidget* parent);

    void setTitle(std::string_view title) override;
    /// A button that loses the keyboard focus by being disabled takes it back when it is
    /// enabled again, unless another control has it by then.
    void setEnabled(bool enabled) override;

  private:
    bool lostFocus_ = false;
    std::string title_;
};

} // namespace oxlade
