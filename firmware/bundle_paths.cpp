// Where the helper and the shipped image are; asked anew at each call, so that
// what comes or goes while the program runs is noticed.
#include "app/app_delegate.h"
#include "firmware/path_names.h"

namespace oxlade {

std::string AppDelegate::loaderPath() const {
    auto bundled = joinedPath(system_.bundle.bundlePath(), "Contents/MacOS/oxlade");
    if (system_.fileSystem.isExecutableFile(bundled)) return bundled;
    return joinedPath(system_.fileSystem.currentDirectoryPath(), "oxlade");
}

std::string AppDelegate::bundledFirmwarePath() const {
    return system_.bundle.pathForResource("mpcv171", "bin").value_or(std::string{});
}

} // namespace oxlade
