// The helper's progress protocol: parses lines of output into reports.
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

/// `text` without leading and trailing Unicode space separators, tabs and newline
/// characters (those of nextPiece). `text` is UTF-8.
std::string_view trimmed(std::string_view text);

/// The report of one trimmed line; nothing if the line is not a report.
std::optional<Report> parseLine(std::string_view line);

/// Removes the text up to the next newline character (U+000A to U+000D, U+0085, U+2028,
/// U+2029), and that character, from the front of `rest`; returns the text. Without a
/// newline character, returns all of `rest`, which may be empty, and sets the data() of
/// `rest` to null.
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
