// The C++ header that carries the encoded frames into the program.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace oxlade {

/// The header's text: each frame as a constant array wait_girl_frame_N, and
/// wait_girl_frames, the table that refers to them in order.
std::string framesHeader(std::span<const std::vector<std::uint8_t>> frames);

} // namespace oxlade
