#include "tools/frames_header.h"

#include <cstddef>

namespace oxlade {
namespace {

constexpr std::size_t bytesPerLine = 16;

constexpr const char* opening =
    R"(// Made by encode_sprites from the pictures in ui/sprites/art. Edit those.
#pragma once

#include <array>
#include <cstdint>
#include <span>

namespace oxlade {

)";

std::string nameOfFrame(std::size_t index) { return "wait_girl_frame_" + std::to_string(index); }

std::string hexByte(std::uint8_t byte) {
    constexpr const char* digits = "0123456789ABCDEF";
    return {'0', 'x', digits[byte >> 4], digits[byte & 0x0F], ','};
}

std::string arrayOf(std::size_t index, const std::vector<std::uint8_t>& bytes) {
    std::string text = "inline constexpr std::array<std::uint8_t, " + std::to_string(bytes.size()) +
                       "> " + nameOfFrame(index) + "{";
    for (std::size_t at = 0; at < bytes.size(); ++at)
        text += (at % bytesPerLine == 0 ? "\n    " : " ") + hexByte(bytes[at]);
    return text + "\n};\n\n";
}

std::string tableOf(std::size_t count) {
    std::string text = "inline constexpr std::array<std::span<const std::uint8_t>, " +
                       std::to_string(count) + "> wait_girl_frames{\n";
    for (std::size_t index = 0; index < count; ++index)
        text += "    std::span<const std::uint8_t>(" + nameOfFrame(index) + "),\n";
    return text + "};\n\n";
}

} // namespace

std::string framesHeader(std::span<const std::vector<std::uint8_t>> frames) {
    std::string text = opening;
    for (std::size_t index = 0; index < frames.size(); ++index)
        text += arrayOf(index, frames[index]);
    return text + tableOf(frames.size()) + "} // namespace oxlade\n";
}

} // namespace oxlade
