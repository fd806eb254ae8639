// Whether bytes look like an operating-system image. Pure; any bytes.
#pragma once

#include <cstddef>
#include <string_view>

namespace oxlade {

inline constexpr std::string_view imageSignature = "MPC4000 Operating System";
inline constexpr std::size_t imageSignatureOffset = 32; ///< bytes
/// The shortest image, and all that the test looks at: 56 bytes.
inline constexpr std::size_t imageMinimumSize = imageSignatureOffset + imageSignature.size();

enum class ImageVerdict { acceptable, tooSmall, noSignature };

/// `head` is the file's beginning, at least imageMinimumSize bytes of it where it
/// has as many; a file that cannot be read counts as empty. The size comes first.
constexpr ImageVerdict testImage(std::string_view head) {
    if (head.size() < imageMinimumSize) return ImageVerdict::tooSmall;
    const bool isSigned =
        head.substr(imageSignatureOffset, imageSignature.size()) == imageSignature;
    return isSigned ? ImageVerdict::acceptable : ImageVerdict::noSignature;
}

} // namespace oxlade
