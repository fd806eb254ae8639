// What the system's font configuration says, read while the program starts.
#pragma once

#include <string>

namespace oxlade {

/// Any thread, before the application object is made. Returns at once; another
/// thread reads what will be asked for, which would otherwise wait until then. Only
/// ever saves time.
void readFontsAhead();

/// The installed family that stands for one that may be a mere alias, as "monospace"
/// is; the name as it was given where the system does not say. Any thread; waits for
/// what is being read ahead.
std::string installedFamily(const std::string& family);

} // namespace oxlade
