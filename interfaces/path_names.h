// Parts of paths, as text. Pure; any thread.
#pragma once

#include <string>
#include <string_view>

namespace oxlade {

/// What follows the last slash, slashes at the end not counted; of "/", "/".
inline std::string_view lastPathComponent(std::string_view path) {
    while (path.size() > 1 && path.ends_with('/')) path.remove_suffix(1);
    if (path.size() == 1) return path;
    const auto slash = path.rfind('/');
    return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

/// The two joined by a slash, unless the directory ends with one; the name alone if the
/// directory is empty.
inline std::string joinedPath(std::string_view directory, std::string_view name) {
    std::string path{directory};
    if (!path.empty() && !path.ends_with('/')) path += '/';
    path += name;
    return path;
}

} // namespace oxlade
