// Stored frames and their decoder. A stored frame is four bytes of size, then
// run-length tokens:
//
//   offset 0  width in pixels, 16 bits, low byte first
//   offset 2  height, likewise
//   offset 4  tokens, until width * height pixels are complete; raster order
//
//   short token  0rrrllll            r + 1 pixels (1 to 8) of level l
//   long token   1rrrrrrr xxxxllll   r pixels (0 to 127) of level l; x is ignored
//
// There is no end marker. Bytes after the token that completes the picture are not
// read, and a run that would pass the end is cut there.
// Pure; all but decodeSprite is constexpr and does not allocate.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <variant>
#include <vector>

namespace oxlade {

using SpriteBytes = std::span<const std::uint8_t>;

inline constexpr std::size_t spriteHeaderBytes = 4;
inline constexpr unsigned longestRun = 127;

enum class SpriteError {
    headerTooShort, ///< the size is not complete
    streamTooShort, ///< the bytes end before the picture does, perhaps within a token
};

/// In pixels; zero is allowed.
struct SpriteSize {
    std::uint16_t width = 0;
    std::uint16_t height = 0;

    constexpr std::size_t pixels() const { return std::size_t{width} * height; }
    friend constexpr bool operator==(const SpriteSize&, const SpriteSize&) = default;
};

struct SpriteToken {
    unsigned run = 0;        ///< in pixels
    std::uint8_t level = 0;  ///< 0 to 15
    std::uint8_t unused = 0; ///< the four bits without meaning
    std::size_t bytes = 0;   ///< the length of the token itself: 1 or 2; 0: not complete

    friend constexpr bool operator==(const SpriteToken&, const SpriteToken&) = default;
};

/// The size that a stored frame declares, or nothing if its header is incomplete.
constexpr std::optional<SpriteSize> readSpriteSize(SpriteBytes stored) {
    if (stored.size() < spriteHeaderBytes) return std::nullopt;
    const auto field = [stored](std::size_t at) {
        return static_cast<std::uint16_t>(stored[at] | stored[at + 1] << 8);
    };
    return SpriteSize{field(0), field(2)};
}

/// The token at offset `at`; one of 0 bytes if it is not complete.
constexpr SpriteToken readSpriteToken(SpriteBytes stored, std::size_t at) {
    const auto low = [](unsigned byte) { return static_cast<std::uint8_t>(byte & 0x0F); };
    if (at >= stored.size()) return {};
    const unsigned first = stored[at];
    if (first < 0x80) return {(first >> 4) + 1, low(first), 0, 1};
    if (at + 1 >= stored.size()) return {};
    const unsigned second = stored[at + 1];
    return {first & 0x7F, low(second), low(second >> 4), 2};
}

/// Calls `visit(token, pixel)` for each token, with the number of pixels before it;
/// also for empty runs. The last run may pass the end. Returns the error that stopped
/// the walk, or nothing if the picture is complete.
template <typename Visit>
constexpr std::optional<SpriteError> visitSpriteTokens(SpriteBytes stored, Visit&& visit) {
    const std::optional<SpriteSize> size = readSpriteSize(stored);
    if (!size) return SpriteError::headerTooShort;
    std::size_t at = spriteHeaderBytes;
    for (std::size_t pixel = 0; pixel < size->pixels();) {
        const SpriteToken token = readSpriteToken(stored, at);
        if (token.bytes == 0) return SpriteError::streamTooShort;
        visit(token, pixel);
        pixel += token.run;
        at += token.bytes;
    }
    return std::nullopt;
}

/// Red, green, blue, and an unused byte that is always 255.
using SpriteColor = std::array<std::uint8_t, 4>;

inline constexpr std::size_t spriteBytesPerPixel = std::tuple_size_v<SpriteColor>;
inline constexpr std::size_t spriteLevels = 16;

namespace detail {

/// Rounds a non-negative value, halves upwards. Compares the fraction alone: adding
/// a half could round a value just below it to the next integer.
constexpr std::uint8_t roundedByte(double value) {
    const auto whole = static_cast<unsigned>(value);
    return static_cast<std::uint8_t>(value - whole >= 0.5 ? whole + 1 : whole);
}

constexpr std::uint8_t mixed(double dark, double light, double v) {
    return roundedByte((dark + v * (light - dark)) * 255);
}

constexpr SpriteColor colorOfLevel(std::size_t level) {
    const double v = static_cast<double>(level) / 15;
    return {mixed(0.07, 0.83, v), mixed(0.13, 0.90, v), mixed(0.22, 0.93, v), 255};
}

constexpr std::array<SpriteColor, spriteLevels> makeSpritePalette() {
    std::array<SpriteColor, spriteLevels> palette{};
    for (std::size_t level = 0; level < spriteLevels; ++level) palette[level] = colorOfLevel(level);
    return palette;
}

} // namespace detail

/// The colours of the grey levels: from dark navy at 0 to pale blue-grey at 15.
inline constexpr std::array<SpriteColor, spriteLevels> spritePalette = detail::makeSpritePalette();

static_assert(spritePalette[0] == SpriteColor{18, 33, 56, 255});
static_assert(spritePalette[5] == SpriteColor{82, 99, 116, 255});
static_assert(spritePalette[10] == SpriteColor{147, 164, 177, 255});
static_assert(spritePalette[15] == SpriteColor{212, 230, 237, 255}, "229.5 rounds to 230");

/// A decoded frame, which owns its pixels: four bytes each (red, green, blue,
/// 255), rows from top to bottom and without padding.
struct SpriteFrame {
    std::uint16_t width = 0;
    std::uint16_t height = 0;
    std::vector<std::uint8_t> pixels;

    friend bool operator==(const SpriteFrame&, const SpriteFrame&) = default;
};

/// Writes the pixels of a stored frame into `pixels`, which must have room for all
/// that its header declares. On an error only the pixels before the fault are written.
constexpr std::optional<SpriteError> decodeSpritePixels(SpriteBytes stored,
                                                        std::span<std::uint8_t> pixels) {
    const std::size_t total = readSpriteSize(stored).value_or(SpriteSize{}).pixels();
    const auto paint = [=](const SpriteToken& token, std::size_t pixel) {
        const SpriteColor& color = spritePalette[token.level];
        const std::size_t end = std::min(total, pixel + token.run);
        for (; pixel < end; ++pixel)
            for (std::size_t part = 0; part < spriteBytesPerPixel; ++part)
                pixels[pixel * spriteBytesPerPixel + part] = color[part];
    };
    return visitSpriteTokens(stored, paint);
}

/// Decodes a stored frame. Bytes that end too soon are an error, found before any
/// memory is allocated: a short file with a huge size in its header costs nothing.
inline std::variant<SpriteFrame, SpriteError> decodeSprite(SpriteBytes stored) {
    const auto nothing = [](const SpriteToken&, std::size_t) {};
    if (const auto error = visitSpriteTokens(stored, nothing)) return *error;

    const SpriteSize size = *readSpriteSize(stored);
    SpriteFrame frame{size.width, size.height,
                      std::vector<std::uint8_t>(size.pixels() * spriteBytesPerPixel)};
    decodeSpritePixels(stored, frame.pixels);
    return frame;
}

} // namespace oxlade
