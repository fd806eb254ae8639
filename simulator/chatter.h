#pragma once

#include "simulator/behaviour.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>

namespace oxlade::simulator {

// Takes a piece of text; the pieces together are the text.
using Sink = std::function<void(std::string_view)>;

constexpr std::size_t pieceBytes = 65536; // the most that a piece has

// What a helper had better not print but might, all of it: as much of each kind
// as the behaviour asks for, in the order of the functions below. Each kind
// ends with a line end.
void sayOddThings(const Behaviour& behaviour, const Sink& sink);

// Lines that are no UTF-8: Latin-1, a sequence cut short, bytes that never occur.
void invalidUtf8Lines(const Sink& sink);
// Lines with NUL bytes, other control characters and bidirectional overrides.
void controlLines(const Sink& sink);
// `bytes` bytes of such lines; the last byte is a line end.
void repeatControlLines(std::uint64_t bytes, const Sink& sink);
// `bytes` bytes of the same without its line ends, and a line end on top.
void longControlLine(std::uint64_t bytes, const Sink& sink);
// `bytes` letters without a blank, and a line end on top.
void longLine(std::uint64_t bytes, const Sink& sink);
// `bytes` bytes of short English lines; the last byte is a line end.
void ordinaryText(std::uint64_t bytes, const Sink& sink);
// `lines` reports "Erase P%" with a line end each, P growing from 0 to 99.
void progressLines(std::uint64_t lines, const Sink& sink);

} // namespace oxlade::simulator
