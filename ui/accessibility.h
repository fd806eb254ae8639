// What the controls are to a screen reader. Main thread.
#pragma once

namespace oxlade {

/// Must be called before the window is built.
void installAccessibility();

} // namespace oxlade
