// Pictures as people write them: one character a pixel, one line a row.
#pragma once

#include "tools/sprite_encoder.h"

#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>
#include <variant>

namespace oxlade {

/// What is wrong with a picture, for people: "NAME:LINE: ...".
struct ArtError {
    std::string message;
};

/// Reads a picture of exactly `width` by `height` pixels: '#' is a pixel of a
/// line (level 0), '.' one of the background (level 15). Lines at the top that
/// begin with ';' are remarks. `name` stands for the file in messages.
std::variant<LevelPicture, ArtError> readArt(std::istream& in, std::string_view name,
                                             std::uint16_t width, std::uint16_t height);

} // namespace oxlade
