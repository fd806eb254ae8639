#include "firmware/image_test.h"

namespace oxlade {

std::optional<std::string_view> imageRefusal(const FileSystem& fileSystem,
                                             const std::string& path) {
    switch (testImage(fileSystem.head(path, imageMinimumSize))) {
    case ImageVerdict::tooSmall:
        return "firmware.invalid.small";
    case ImageVerdict::noSignature:
        return "firmware.invalid.signature";
    case ImageVerdict::acceptable:
        break;
    }
    return std::nullopt;
}

} // namespace oxlade
