// The files of a flash: where the helper and the shipped image are, and whether a file looks
// like an operating-system image. Nothing is cached: each call asks the file system.
#pragma once

#include "interfaces/system.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace oxlade {

/// The path of the helper: "Contents/MacOS/oxlade" in the bundle if that is an executable
/// file, otherwise "oxlade" in the current directory, which need not exist.
/// Main thread.
std::string loaderPath(const Bundle& bundle, const FileSystem& fileSystem);

/// The path of the shipped image, the resource mpcv171.bin; empty if the bundle has none.
/// Main thread.
std::string bundledFirmwarePath(const Bundle& bundle);

inline constexpr std::string_view imageSignature = "MPC4000 Operating System";
inline constexpr std::size_t imageSignatureOffset = 32; ///< bytes
/// The size of the smallest image, in bytes: 56. What follows is not tested.
inline constexpr std::size_t imageMinimumSize = imageSignatureOffset + imageSignature.size();

enum class ImageVerdict { acceptable, tooSmall, noSignature };

/// `head` is the start of the file: at least imageMinimumSize bytes, or the whole file if
/// it is shorter. Pass an empty `head` for a file that cannot be read. A short file is
/// tooSmall whatever it contains. Pure; any thread; any bytes.
constexpr ImageVerdict testImage(std::string_view head) {
    if (head.size() < imageMinimumSize) return ImageVerdict::tooSmall;
    const bool isSigned =
        head.substr(imageSignatureOffset, imageSignature.size()) == imageSignature;
    return isSigned ? ImageVerdict::acceptable : ImageVerdict::noSignature;
}

/// The string-table key of the reason to refuse the file; nothing if it may be flashed.
/// Reads the first imageMinimumSize bytes of the file. Main thread.
std::optional<std::string_view> imageRefusal(const FileSystem& fileSystem, const std::string& path);

} // namespace oxlade
