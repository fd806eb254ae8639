// The program's own bundle, found from the path of its executable. Main thread.
#pragma once

#include "interfaces/system.h"

#include <QByteArrayView>

#include <optional>
#include <string>
#include <string_view>

namespace oxlade {

/// The absolute directory of the running executable, links resolved, without a
/// slash at its end. Needs the application object.
std::string executableDirectory();

/// The value of CFBundleShortVersionString in the top dictionary of an XML property list;
/// empty when it is missing or no string, or the list is malformed.
std::string bundleVersion(QByteArrayView propertyList);

/// The bundle of an executable in "Contents/MacOS" is the directory that holds "Contents";
/// its resources are in "Contents/Resources". Any other directory is a bundle by itself and
/// holds its resources directly.
class QtBundle final : public Bundle {
  public:
    /// `executableDirectory`: absolute, without a slash at its end.
    explicit QtBundle(std::string executableDirectory);

    std::string bundlePath() const override { return path_; }
    /// Asks the file system at each call. A directory is no resource.
    std::optional<std::string> pathForResource(std::string_view name,
                                               std::string_view type) const override;
    /// From "Contents/Info.plist" (or "Info.plist"); empty when that has none.
    std::string version() const;

  private:
    std::string path_;
    std::string contents_;
    std::string resources_;
};

} // namespace oxlade
