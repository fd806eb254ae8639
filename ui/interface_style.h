// The desktop's style, without the work for what this window never shows. Main thread.
#pragma once

namespace oxlade {

/// Makes it the application's, over the style that is there; again does nothing.
void useInterfaceStyle();

} // namespace oxlade
