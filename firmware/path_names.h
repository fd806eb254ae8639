// Parts of paths, as text. Pure.
#pragma once

#include <string>
#include <string_view>

namespace oxlade {

/// What stands after the last slash, slashes at the end not counted; of "/", "/".
std::string_view lastPathComponent(std::string_view path);

/// The two joined by a slash where the directory has none at its end; the name alone if
/// there is no directory.
std::string joinedPath(std::string_view directory, std::string_view name);

} // namespace oxlade
