// A stored frame: four bytes of size, then run-length tokens.
//
//   offset 0  width in pixels, 16 bits, low byte first
//   offset 2  height, likewise
//   offset 4  tokens, until width * height pixels are there; raster order
//
//   short token  0rrrllll            r + 1 pixels (1 to 8) of level l
//   long token   1rrrrrrr xxxxllll   r pixels (0 to 127) of level l; x has no meaning
//
// There is no end marker. What follows the token that completes the picture is
// never read, and a run that would pass the end is cut there.
// Pure and constexpr throughout; nothing here allocates.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace oxlade {

using SpriteBytes = std::span<const std::uint8_t>;

inline constexpr std::size_t spriteHeaderBytes = 4;
inline constexpr unsigned longestRun = 127;

enum class SpriteError {
    headerTooShort, ///< not even the size is there
    streamTooShort, ///< the bytes end before the picture does, perhaps within a token
};

/// In pixels; zero is a size like any other.
struct SpriteSize {
    std::uint16_t width = 0;
    std::uint16_t height = 0;

    constexpr std::size_t pixels() const { return std::size_t{width} * height; }
    friend constexpr bool operator==(const SpriteSize&, const SpriteSize&) = default;
};

struct SpriteToken {
    unsigned run = 0;       ///< in pixels
    std::uint8_t level = 0; ///< 0 to 15
    std::size_t bytes = 0;  ///< the token's own length: 1 or 2

    friend constexpr bool operator==(const SpriteToken&, const SpriteToken&) = default;
};

/// The size that a stored frame declares, or nothing if its header is cut.
constexpr std::optional<SpriteSize> readSpriteSize(SpriteBytes stored) {
    if (stored.size() < spriteHeaderBytes) return std::nullopt;
    const auto field = [stored](std::size_t at) {
        return static_cast<std::uint16_t>(stored[at] | stored[at + 1] << 8);
    };
    return SpriteSize{field(0), field(2)};
}

/// The token at the beginning of `rest`, or nothing if it is not all there.
constexpr std::optional<SpriteToken> readSpriteToken(SpriteBytes rest) {
    if (rest.empty()) return std::nullopt;
    const unsigned first = rest[0];
    if (first < 0x80) return SpriteToken{(first >> 4) + 1, std::uint8_t(first & 0x0F), 1};
    if (rest.size() < 2) return std::nullopt;
    return SpriteToken{first & 0x7F, std::uint8_t(rest[1] & 0x0F), 2};
}

/// Calls `visit(token, pixel)` for each token that is read, with the number of
/// pixels before it; empty runs come too, and the last run may pass the end.
/// Returns the error that stopped the walk, or nothing if the picture is whole.
template <typename Visit>
constexpr std::optional<SpriteError> visitSpriteTokens(SpriteBytes stored, Visit&& visit) {
    const std::optional<SpriteSize> size = readSpriteSize(stored);
    if (!size) return SpriteError::headerTooShort;
    SpriteBytes rest = stored.subspan(spriteHeaderBytes);
    for (std::size_t pixel = 0; pixel < size->pixels();) {
        const std::optional<SpriteToken> token = readSpriteToken(rest);
        if (!token) return SpriteError::streamTooShort;
        visit(*token, pixel);
        pixel += token->run;
        rest = rest.subspan(token->bytes);
    }
    return std::nullopt;
}

} // namespace oxlade
