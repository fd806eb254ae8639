#pragma once

#include <charconv>
#include <optional>
#include <string_view>
#include <system_error>

namespace oxlade::simulator {

// The whole of `text` as a number, in the C locale whatever the user's is.
// Nothing for anything else: no blanks, no leftovers, no overflow.
template <typename Number>
std::optional<Number> parseNumber(std::string_view text) {
    Number number{};
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc{} || stop != end) return std::nullopt;
    return number;
}

} // namespace oxlade::simulator
