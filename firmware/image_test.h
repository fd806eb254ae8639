// Whether a file looks like an operating-system image.
#pragma once

#include "interfaces/system.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace oxlade {

inline constexpr std::string_view imageSignature = "MPC4000 Operating System";
inline constexpr std::size_t imageSignatureOffset = 32; ///< bytes
/// The size of the shortest image, in bytes: 56. Nothing after it is tested.
inline constexpr std::size_t imageMinimumSize = imageSignatureOffset + imageSignature.size();

enum class ImageVerdict { acceptable, tooSmall, noSignature };

/// `head` is the beginning of the file: at least imageMinimumSize bytes, or the whole file
/// if it is shorter. A file that cannot be read counts as empty. The size is tested first.
/// Pure; any thread; any bytes.
constexpr ImageVerdict testImage(std::string_view head) {
    if (head.size() < imageMinimumSize) return ImageVerdict::tooSmall;
    const bool isSigned =
        head.substr(imageSignatureOffset, imageSignature.size()) == imageSignature;
    return isSigned ? ImageVerdict::acceptable : ImageVerdict::noSignature;
}

/// The string-table key of the reason to refuse the file, or nothing if it may be flashed.
/// Reads the file's first imageMinimumSize bytes. Main thread.
std::optional<std::string_view> imageRefusal(const FileSystem& fileSystem, const std::string& path);

} // namespace oxlade
