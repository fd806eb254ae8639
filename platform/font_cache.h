// Having the fonts' configuration read while the program starts.
#pragma once

namespace oxlade {

/// Any thread, before the application object is made. Returns at once; another
/// thread reads what the toolkit is going to ask for, which would otherwise wait
/// until then. Only ever saves time.
void readFontsAhead();

} // namespace oxlade
