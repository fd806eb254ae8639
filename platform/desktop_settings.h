// What the user asked of all programs on this desktop.
//
// On Linux it comes from the desktop portal, and motion from KDE's settings where
// no portal knows of it; on macOS motion comes from the workspace, and the toolkit
// follows the colours by itself. The macOS source was never compiled: there was no
// Mac to build it on.
#pragma once

#include "interfaces/colors.h"

#include <functional>
#include <memory>
#include <optional>

namespace oxlade {

/// Main thread, made after the application object and gone before it. Asks when it
/// is made and returns at once: until an answer is here, and where none ever
/// comes, there is no wish.
class DesktopSettings final {
  public:
    DesktopSettings();
    ~DesktopSettings();
    DesktopSettings(const DesktopSettings&) = delete;
    DesktopSettings& operator=(const DesktopSettings&) = delete;

    /// As it stands now.
    bool shouldReduceMotion() const;
    /// Nothing: the user has no preference, or nobody knows it.
    std::optional<ColorScheme> colorScheme() const;
    /// Called after either of the two has changed; an empty one removes it.
    void setChangeHandler(std::function<void()> handler);

  private:
    class Source;
    std::unique_ptr<Source> source_;
};

} // namespace oxlade
