// The workspace's setting for reduced motion. Never compiled: only a Mac can.
#include "platform/desktop_settings.h"

#import <AppKit/AppKit.h>
#include <utility>

namespace oxlade {

class DesktopSettings::Source final {
  public:
    Source() {
        // The workspace posts to a notification centre of its own.
        observer_ = [[[NSWorkspace sharedWorkspace] notificationCenter]
            addObserverForName:NSWorkspaceAccessibilityDisplayOptionsDidChangeNotification
                        object:nil
                         queue:[NSOperationQueue mainQueue]
                    usingBlock:^(NSNotification*) {
                      if (const auto handler = onChange) handler();
                    }];
    }

    ~Source() { [[[NSWorkspace sharedWorkspace] notificationCenter] removeObserver:observer_]; }

    std::function<void()> onChange;

  private:
    id observer_ = nil;
};

DesktopSettings::DesktopSettings() : source_(std::make_unique<Source>()) {}
DesktopSettings::~DesktopSettings() = default;

bool DesktopSettings::shouldReduceMotion() const {
    return [[NSWorkspace sharedWorkspace] accessibilityDisplayShouldReduceMotion] == YES;
}

// Qt follows the effective appearance by itself.
std::optional<ColorScheme> DesktopSettings::colorScheme() const { return std::nullopt; }

void DesktopSettings::awaitColorScheme(int) {}

void DesktopSettings::setChangeHandler(std::function<void()> handler) {
    source_->onChange = std::move(handler);
}

} // namespace oxlade
