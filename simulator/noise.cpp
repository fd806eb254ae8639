#include "simulator/noise.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace oxlade::simulator {

namespace {

using namespace std::string_view_literals;

constexpr std::size_t pieceBytes = 65536; // the most in one write

/// Latin-1, an incomplete sequence, and bytes that UTF-8 never has.
constexpr std::string_view invalidUtf8 = "Sampler f\xFCr Ger\xE4te\n"
                                         "cut short \xE2\x82\n"
                                         "never seen \xC0\xFE\xFF\n"sv;

/// NUL, other control characters and bidirectional overrides.
constexpr std::string_view controls =
    "zero \0 bell \a escape \x1B[31m backspace \b\n"
    "override \xE2\x80\xAEgnihsalf\xE2\x80\xAC isolate \xE2\x81\xA7now\xE2\x81\xA9\n"sv;

constexpr std::string_view sentence =
    "The sampler is well and has nothing to report at this moment.\n";

/// Prints `bytes` bytes of `pattern`, repeated, and a line feed.
void repeat(std::string_view pattern, std::uint64_t bytes, const Output& output) {
    std::string piece;
    while (piece.size() + pattern.size() <= pieceBytes) piece += pattern;
    while (bytes > 0) {
        const auto length = static_cast<std::size_t>(std::min<std::uint64_t>(bytes, piece.size()));
        output.write(std::string_view(piece).substr(0, length));
        bytes -= length;
    }
    output.write("\n");
}

std::string withoutLineFeeds(std::string_view text) {
    std::string line{text};
    std::erase(line, '\n');
    return line;
}

/// Lines "Erase P%", P growing from 0 to 99.
void printProgressLines(std::uint64_t lines, const Output& output) {
    std::string piece;
    for (std::uint64_t line = 0; line < lines; ++line) {
        const std::uint64_t percent = line / lines * 100 + line % lines * 100 / lines;
        piece += "Erase " + std::to_string(percent) + "%\n";
        if (piece.size() + 16 <= pieceBytes) continue;
        output.write(piece);
        piece.clear();
    }
    if (!piece.empty()) output.write(piece);
}

} // namespace

void printNoise(const Options& options, const Output& output) {
    if (options.invalidUtf8) output.write(invalidUtf8);
    if (options.nul) output.write(controls);
    if (options.nulBytes > 0) repeat(controls, options.nulBytes - 1, output);
    if (options.nulLine > 0) repeat(withoutLineFeeds(controls), options.nulLine, output);
    if (options.longLine > 0) repeat("abcdefghijklmnopqrstuvwxyz", options.longLine, output);
    if (options.floodBytes > 0) repeat(sentence, options.floodBytes - 1, output);
    if (options.flood > 0) printProgressLines(options.flood, output);
}

} // namespace oxlade::simulator
