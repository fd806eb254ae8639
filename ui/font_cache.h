// What the system's font configuration says, read while the program starts.
#pragma once

#include <string>

namespace oxlade {

/// Main thread, before anything below. Returns at once; another thread reads what
/// will be asked for, which would otherwise wait until then. Only ever saves time.
void readFontsAhead();

enum class FontKind { proportional, monospaced };

/// The installed family that stands for one that may be missing or a mere alias, as
/// "monospace" is: one of that kind. The name as it was given where the system does
/// not say. Any thread; waits for what is being read ahead.
std::string installedFamily(const std::string& family, FontKind kind);

} // namespace oxlade
