// Where the helper and the shipped image are. Nothing is cached: each call asks the file
// system again, so a file that comes or goes while the program runs is noticed. Main thread.
#pragma once

#include "interfaces/system.h"

#include <string>

namespace oxlade {

/// The path of the helper to run: the bundle's own if it is an executable file, else
/// "oxlade" in the current directory, which is not tested.
std::string loaderPath(const Bundle& bundle, const FileSystem& fileSystem);

/// The path of the shipped image; empty when the bundle has none.
std::string bundledFirmwarePath(const Bundle& bundle);

} // namespace oxlade
