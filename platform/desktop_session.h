// What the desktop is told of a run: do not log out without asking, and how far a flash is.
#pragma once

#include "interfaces/system.h"

#include <QString>

#include <memory>

namespace oxlade {

/// Asks the portal to inhibit the end of the session, or GNOME's session manager where there is
/// no portal. An X11 session manager is told to cancel a log-out in mid-run, and the window asks
/// for attention then. Progress goes to the launcher as com.canonical.Unity.LauncherEntry, at most
/// one signal for each whole per cent. All of it ends with the program's connections.
///
/// Made after the application object and destroyed before it. No call waits for an answer. Without
/// a session bus, and on macOS, nothing is told.
class QtDesktopSession final : public DesktopSession {
  public:
    /// `desktopId` is the name of the desktop entry without its extension.
    explicit QtDesktopSession(const char* desktopId);
    ~QtDesktopSession() override;

    void beginRun(std::string_view reason) override;
    void showProgress(double percent) override;
    void endRun() override;

  private:
    class Run;
    const QString desktopId_;
    std::unique_ptr<Run> run_; ///< non-null exactly during a run
};

} // namespace oxlade
