#include "firmware/bundle_paths.h"

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

} // namespace oxlade
