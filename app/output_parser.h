// The helper's progress protocol: one line of output in, one report out.
// Pure; any thread; any bytes.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <variant>

namespace oxlade {

/// n as reported, not clamped; a number that does not fit in 32 bits is 2^32 - 1.
struct EraseReport {
    std::uint32_t n;
    friend bool operator==(const EraseReport&, const EraseReport&) = default;
};
struct WriteReport {
    std::uint32_t n;
    friend bool operator==(const WriteReport&, const WriteReport&) = default;
};
/// The whole trimmed line; a view into the text that was parsed.
struct GeometryReport {
    std::string_view line;
    friend bool operator==(const GeometryReport&, const GeometryReport&) = default;
};
struct UploadComplete {
    friend bool operator==(const UploadComplete&, const UploadComplete&) = default;
};

using Report = std::variant<EraseReport, WriteReport, GeometryReport, UploadComplete>;

/// Without leading and trailing white space and newline characters (Unicode's
/// space separators, tab, and those of nextPiece). `text` is UTF-8.
std::string_view trimmed(std::string_view text);

/// What one line, already trimmed, reports; nothing for any other line.
std::optional<Report> parseLine(std::string_view line);

/// Takes the text up to the next newline character (U+000A to U+000D, U+0085,
/// U+2028, U+2029) from the front of `rest`, and the character with it. The last
/// piece, which may be empty, leaves `rest` with a null data().
std::string_view nextPiece(std::string_view& rest);

/// Calls `apply` with each report of the chunk, in order.
template <class Apply>
void forEachReport(std::string_view chunk, Apply apply) {
    for (std::string_view rest = chunk; rest.data() != nullptr;) {
        const std::string_view piece = nextPiece(rest);
        if (const auto report = parseLine(trimmed(piece))) apply(*report);
    }
}

} // namespace oxlade
