#include "simulator/chatter.h"

#include <algorithm>
#include <string>

namespace oxlade::simulator {

namespace {

using namespace std::string_view_literals;

constexpr std::string_view controls =
    "zero \0 bell \a escape \x1B[31m backspace \b\n"
    "override \xE2\x80\xAEgnihsalf\xE2\x80\xAC isolate \xE2\x81\xA7now\xE2\x81\xA9\n"sv;

// `bytes` bytes of `pattern` said over and over.
void repeat(std::string_view pattern, std::uint64_t bytes, const Sink& sink) {
    std::string piece;
    while (piece.size() + pattern.size() <= pieceBytes) piece += pattern;
    while (bytes > 0) {
        const auto length = static_cast<std::size_t>(std::min<std::uint64_t>(bytes, piece.size()));
        sink(std::string_view(piece).substr(0, length));
        bytes -= length;
    }
}

} // namespace

void sayOddThings(const Behaviour& behaviour, const Sink& sink) {
    if (behaviour.invalidUtf8) invalidUtf8Lines(sink);
    if (behaviour.nul) controlLines(sink);
    if (behaviour.nulBytes > 0) repeatControlLines(behaviour.nulBytes, sink);
    if (behaviour.nulLine > 0) longControlLine(behaviour.nulLine, sink);
    if (behaviour.longLine > 0) longLine(behaviour.longLine, sink);
    if (behaviour.floodBytes > 0) ordinaryText(behaviour.floodBytes, sink);
    if (behaviour.flood > 0) progressLines(behaviour.flood, sink);
}

void invalidUtf8Lines(const Sink& sink) {
    sink("Sampler f\xFCr Ger\xE4te\n"
         "cut short \xE2\x82\n"
         "never seen \xC0\xFE\xFF\n"sv);
}

void controlLines(const Sink& sink) { sink(controls); }

void repeatControlLines(std::uint64_t bytes, const Sink& sink) {
    repeat(controls, bytes - 1, sink);
    sink("\n");
}

void longControlLine(std::uint64_t bytes, const Sink& sink) {
    std::string withoutEnds{controls};
    std::erase(withoutEnds, '\n');
    repeat(withoutEnds, bytes, sink);
    sink("\n");
}

void longLine(std::uint64_t bytes, const Sink& sink) {
    repeat("abcdefghijklmnopqrstuvwxyz", bytes, sink);
    sink("\n");
}

void ordinaryText(std::uint64_t bytes, const Sink& sink) {
    repeat("The sampler is well and has nothing to report at this moment.\n", bytes - 1, sink);
    sink("\n");
}

void progressLines(std::uint64_t lines, const Sink& sink) {
    std::string piece;
    for (std::uint64_t line = 0; line < lines; ++line) {
        const std::uint64_t percent = line / lines * 100 + line % lines * 100 / lines;
        piece += "Erase " + std::to_string(percent) + "%\n";
        if (piece.size() + 16 <= pieceBytes) continue;
        sink(piece);
        piece.clear();
    }
    if (!piece.empty()) sink(piece);
}

} // namespace oxlade::simulator
