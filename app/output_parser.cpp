#include "app/output_parser.h"

#include <charconv>
#include <limits>
#include <system_error>
#include <utility>

namespace oxlade {

namespace {

// The characters outside ASCII, in UTF-8.
constexpr std::string_view wideNewlines[] = {"\u0085", "\u2028", "\u2029"};
constexpr std::string_view wideBlanks[] = {"\u0085", "\u00A0", "\u1680", "\u2000", "\u2001",
                                           "\u2002", "\u2003", "\u2004", "\u2005", "\u2006",
                                           "\u2007", "\u2008", "\u2009", "\u200A", "\u2028",
                                           "\u2029", "\u202F", "\u205F", "\u3000"};

constexpr bool isAscii(char c) { return static_cast<unsigned char>(c) < 0x80; }
constexpr bool isNewline(char c) { return c >= '\n' && c <= '\r'; }
constexpr bool isBlank(char c) { return c == ' ' || c == '\t' || isNewline(c); }

/// The length of the newline character at the front of `text`, 0 if there is none.
std::size_t newlineLength(std::string_view text) {
    if (isAscii(text.front())) return isNewline(text.front()) ? 1 : 0;
    for (const auto newline : wideNewlines)
        if (text.starts_with(newline)) return newline.size();
    return 0;
}

/// The length of the blank at the front of `text`, 0 if there is none.
std::size_t leadingBlankLength(std::string_view text) {
    if (text.empty()) return 0;
    if (isAscii(text.front())) return isBlank(text.front()) ? 1 : 0;
    for (const auto blank : wideBlanks)
        if (text.starts_with(blank)) return blank.size();
    return 0;
}

/// The length of the blank at the end of `text`, 0 if there is none.
std::size_t trailingBlankLength(std::string_view text) {
    if (text.empty()) return 0;
    if (isAscii(text.back())) return isBlank(text.back()) ? 1 : 0;
    for (const auto blank : wideBlanks)
        if (text.ends_with(blank)) return blank.size();
    return 0;
}

/// The number that `line` has after `word` and any white space, as the C library's "%u"
/// reads it: with an optional sign, negative numbers modulo 2^32. Whatever follows the
/// number is ignored.
std::optional<std::uint32_t> scanNumberAfter(std::string_view word, std::string_view line) {
    if (!line.starts_with(word)) return std::nullopt;
    line.remove_prefix(word.size());
    while (!line.empty() && isBlank(line.front())) line.remove_prefix(1);
    const bool isNegative = line.starts_with('-');
    if (isNegative || line.starts_with('+')) line.remove_prefix(1);

    std::uint32_t magnitude = 0;
    const auto result = std::from_chars(line.data(), line.data() + line.size(), magnitude);
    if (result.ec == std::errc::invalid_argument) return std::nullopt;
    if (result.ec == std::errc::result_out_of_range)
        return std::numeric_limits<std::uint32_t>::max();
    return isNegative ? std::uint32_t{0} - magnitude : magnitude;
}

} // namespace

std::string_view trimmed(std::string_view text) {
    while (const auto length = leadingBlankLength(text)) text.remove_prefix(length);
    while (const auto length = trailingBlankLength(text)) text.remove_suffix(length);
    return text;
}

std::optional<Report> parseLine(std::string_view line) {
    // The order decides about a line that has several of them.
    if (const auto n = scanNumberAfter("Erase", line)) return EraseReport{*n};
    if (const auto n = scanNumberAfter("Write", line)) return WriteReport{*n};
    if (line.find("Flash geometry:") != line.npos) return GeometryReport{line};
    if (line.find("OS upload complete") != line.npos) return UploadComplete{};
    return std::nullopt;
}

std::string_view nextPiece(std::string_view& rest) {
    for (std::size_t i = 0; i < rest.size(); ++i) {
        if (isAscii(rest[i]) && rest[i] > '\r') continue; // as most are
        const auto length = newlineLength(rest.substr(i));
        if (length == 0) continue;
        const auto piece = rest.substr(0, i);
        rest.remove_prefix(i + length);
        return piece;
    }
    return std::exchange(rest, std::string_view{});
}

} // namespace oxlade
