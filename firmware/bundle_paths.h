// The paths of the helper and of the shipped image. Nothing is cached: each call asks the
// file system. Main thread.
#pragma once

#include "interfaces/system.h"

#include <string>

namespace oxlade {

/// The path of the helper: "Contents/MacOS/oxlade" in the bundle if that is an executable
/// file, otherwise "oxlade" in the current directory, which need not exist.
std::string loaderPath(const Bundle& bundle, const FileSystem& fileSystem);

/// The path of the shipped image, the resource mpcv171.bin; empty if the bundle has none.
std::string bundledFirmwarePath(const Bundle& bundle);

} // namespace oxlade
