#include "firmware/firmware.h"

#include "interfaces/path_names.h"

namespace oxlade {

std::string loaderPath(const Bundle& bundle, const FileSystem& fileSystem) {
    auto bundled = joinedPath(bundle.bundlePath(), "Contents/MacOS/oxlade");
    if (fileSystem.isExecutableFile(bundled)) return bundled;
    return joinedPath(fileSystem.currentDirectoryPath(), "oxlade");
}

std::string bundledFirmwarePath(const Bundle& bundle) {
    return bundle.pathForResource("mpcv171", "bin").value_or(std::string{});
}

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
