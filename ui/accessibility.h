// What the drawn controls are to a screen reader. Main thread.
#pragma once

namespace oxlade {

/// To be called once, before the window is built.
void installAccessibility();

} // namespace oxlade
