// Alerts and the file chooser. Main thread; both run an event loop of their own
// until they are answered.
#pragma once

#include "interfaces/system.h"

#include <QString>

#include <functional>

class QWidget;

namespace oxlade {

class QtDialogs final : public Dialogs {
  public:
    /// `parent` gives the window that the dialogs belong to, or null while there
    /// is none.
    explicit QtDialogs(std::function<QWidget*()> parent);

    bool runAlert(const Alert& alert) override;
    /// Starts in the folder of the last choice, at first in the user's home. Where the
    /// desktop has no chooser, the toolkit's own speaks the current language, English
    /// where the toolkit's translations are not installed.
    std::optional<std::string> runOpenPanel(const OpenPanel& panel) override;

  private:
    std::function<QWidget*()> parent_;
    QString folder_;
};

} // namespace oxlade
