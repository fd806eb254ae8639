// Alerts and the file chooser. Main thread; each runs an event loop until it is answered.
#pragma once

#include "interfaces/system.h"

#include <QString>

#include <functional>

class QWidget;

namespace oxlade {

class QtDialogs final : public Dialogs {
  public:
    /// `parent` returns the window that the dialogs belong to, or null before it is built.
    explicit QtDialogs(std::function<QWidget*()> parent);

    /// Over the window, or in a window of its own while that is not visible. While an alert
    /// or the chooser is open, the window's content and menu bar are disabled, also for
    /// assistive technology. The enabled flags of the controls stay.
    bool runAlert(const Alert& alert) override;
    /// Starts in the folder of the last choice, at first in the user's home. Where the desktop
    /// has no chooser, Qt's own is used, in the current language. A path can be typed there: the
    /// chosen file exists but need not have the extension.
    std::optional<std::string> runOpenPanel(const OpenPanel& panel) override;

  private:
    std::function<QWidget*()> parent_;
    QString folder_;
};

} // namespace oxlade
