// Paths as text. Pure; any thread.
#pragma once

#include <string>
#include <string_view>

namespace oxlade {

/// The name of the file: what follows the last slash. Slashes at the end are ignored; the
/// name of "/" is "/".
inline std::string_view lastPathComponent(std::string_view path) {
    while (path.size() > 1 && path.ends_with('/')) path.remove_suffix(1);
    if (path.size() == 1) return path;
    const auto slash = path.rfind('/');
    return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

/// `directory` and `name` with one slash between them; `name` alone if `directory` is
/// empty.
inline std::string joinedPath(std::string_view directory, std::string_view name) {
    std::string path{directory};
    if (!path.empty() && !path.ends_with('/')) path += '/';
    path += name;
    return path;
}

} // namespace oxlade
