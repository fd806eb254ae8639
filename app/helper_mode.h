// What a helper run is for.
#pragma once

#include <string>
#include <string_view>

namespace oxlade {

/// "info" or "install" while a helper runs, empty when none does; compared by
/// content. Any other text is allowed and changes nothing when the run ends.
using HelperMode = std::string;

inline constexpr std::string_view infoMode = "info";
inline constexpr std::string_view installMode = "install";

} // namespace oxlade
