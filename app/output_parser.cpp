#include "app/output_parser.h"

#include <limits>
#include <utility>

namespace oxlade {

namespace {

using Byte = unsigned char;

constexpr Byte byteAt(std::string_view text, std::size_t index) {
    return static_cast<Byte>(text[index]);
}

// The newline characters outside ASCII, in UTF-8.
constexpr std::string_view nextLine = "\xC2\x85";
constexpr std::string_view lineSeparator = "\xE2\x80\xA8";
constexpr std::string_view paragraphSeparator = "\xE2\x80\xA9";

/// The length of the newline character at `index`, 0 if there is none.
std::size_t newlineLength(std::string_view text, std::size_t index) {
    const Byte first = byteAt(text, index);
    if (first < 0x80) return first >= 0x0A && first <= 0x0D ? 1 : 0;
    const auto rest = text.substr(index);
    if (rest.starts_with(nextLine)) return nextLine.size();
    const bool isSeparator =
        rest.starts_with(lineSeparator) || rest.starts_with(paragraphSeparator);
    return isSeparator ? lineSeparator.size() : 0;
}

/// Unicode's space separators and newline characters, by code point.
constexpr bool isBlank(char32_t c) {
    return c == 0x09 || (c >= 0x0A && c <= 0x0D) || c == 0x20 || c == 0x85 || c == 0xA0 ||
           c == 0x1680 || (c >= 0x2000 && c <= 0x200A) || c == 0x2028 || c == 0x2029 ||
           c == 0x202F || c == 0x205F || c == 0x3000;
}

/// The two- or three-byte character at the front of `bytes`, 0 for any other; all
/// blanks are of one, two or three bytes.
constexpr char32_t shortCharacter(std::string_view bytes) {
    const auto low = [&](std::size_t i) { return static_cast<char32_t>(byteAt(bytes, i) & 0x3FU); };
    if (bytes.size() == 2) return ((byteAt(bytes, 0) & 0x1FU) << 6U) | low(1);
    if (bytes.size() == 3) return ((byteAt(bytes, 0) & 0x0FU) << 12U) | (low(1) << 6U) | low(2);
    return 0;
}

constexpr std::size_t lengthByLead(Byte lead) {
    if (lead < 0x80) return 1;
    if ((lead & 0xE0U) == 0xC0U) return 2;
    return (lead & 0xF0U) == 0xE0U ? 3 : 0;
}

std::size_t leadingBlankLength(std::string_view text) {
    const auto length = lengthByLead(byteAt(text, 0));
    if (length == 0 || length > text.size()) return 0;
    const auto character =
        length == 1 ? char32_t{byteAt(text, 0)} : shortCharacter(text.substr(0, length));
    return isBlank(character) ? length : 0;
}

std::size_t trailingBlankLength(std::string_view text) {
    std::size_t length = 1;
    while (length < 3 && length < text.size() &&
           (byteAt(text, text.size() - length) & 0xC0U) == 0x80U)
        ++length;
    const auto last = text.substr(text.size() - length);
    return leadingBlankLength(last) == length ? length : 0;
}

constexpr bool isScanSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
constexpr bool isDigit(char c) { return c >= '0' && c <= '9'; }

/// What the C library's scan of `word`, any white space and "%u" converts: a sign
/// is taken, a negative number wraps. What follows the number does not matter.
std::optional<std::uint32_t> scanNumberAfter(std::string_view word, std::string_view line) {
    if (!line.starts_with(word)) return std::nullopt;
    line.remove_prefix(word.size());
    while (!line.empty() && isScanSpace(line.front())) line.remove_prefix(1);
    const bool isNegative = line.starts_with('-');
    if (isNegative || line.starts_with('+')) line.remove_prefix(1);
    if (line.empty() || !isDigit(line.front())) return std::nullopt;

    constexpr std::uint64_t largest = std::numeric_limits<std::uint32_t>::max();
    std::uint64_t number = 0;
    for (; !line.empty() && isDigit(line.front()); line.remove_prefix(1)) {
        number = number * 10 + static_cast<std::uint64_t>(line.front() - '0');
        if (number > largest) return std::numeric_limits<std::uint32_t>::max();
    }
    const auto magnitude = static_cast<std::uint32_t>(number);
    return isNegative ? std::uint32_t{0} - magnitude : magnitude;
}

} // namespace

std::string_view trimmed(std::string_view text) {
    while (!text.empty()) {
        const auto length = leadingBlankLength(text);
        if (length == 0) break;
        text.remove_prefix(length);
    }
    while (!text.empty()) {
        const auto length = trailingBlankLength(text);
        if (length == 0) break;
        text.remove_suffix(length);
    }
    return text;
}

std::optional<Report> parseLine(std::string_view line) {
    // Most lines of a run are one of these two; a line is looked through for the
    // other two only when it is neither.
    if (const auto n = scanNumberAfter("Erase", line)) return EraseReport{*n};
    if (const auto n = scanNumberAfter("Write", line)) return WriteReport{*n};
    if (line.find("Flash geometry:") != std::string_view::npos) return GeometryReport{line};
    if (line.find("OS upload complete") != std::string_view::npos) return UploadComplete{};
    return std::nullopt;
}

std::string_view nextPiece(std::string_view& rest) {
    for (std::size_t i = 0; i < rest.size(); ++i) {
        const auto length = newlineLength(rest, i);
        if (length == 0) continue;
        const auto piece = rest.substr(0, i);
        rest.remove_prefix(i + length);
        return piece;
    }
    return std::exchange(rest, std::string_view{});
}

} // namespace oxlade
