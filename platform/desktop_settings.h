// The user's settings for all programs of the desktop.
//
// On Linux they come from the desktop portal, and motion from KDE's settings file where no
// portal tells of it. On macOS motion comes from the workspace, and Qt follows the colours
// by itself; that source has never been compiled.
#pragma once

#include "interfaces/types.h"

#include <functional>
#include <memory>
#include <optional>

namespace oxlade {

/// Whether the user's session has a message bus. Qt would start one when asked for it.
bool hasSessionBus();

/// Main thread; made after the application object and destroyed before it. The constructor
/// asks and returns at once: until an answer arrives there are no preferences.
class DesktopSettings final {
  public:
    DesktopSettings();
    ~DesktopSettings();
    DesktopSettings(const DesktopSettings&) = delete;
    DesktopSettings& operator=(const DesktopSettings&) = delete;

    /// The present value.
    bool shouldReduceMotion() const;
    /// Nothing: the user has no preference, or it is not known.
    std::optional<ColorScheme> colorScheme() const;
    /// Returns once the desktop has told its colours, or after `limit` milliseconds; at once where
    /// no portal runs. May call the change handler, but handles no other event.
    void awaitColorScheme(int limit);
    /// Called after either of the two has changed; an empty one removes it.
    void setChangeHandler(std::function<void()> handler);

  private:
    class Source;
    std::unique_ptr<Source> source_;
};

} // namespace oxlade
