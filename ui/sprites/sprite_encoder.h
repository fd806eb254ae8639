// The encoder of stored frames, for pictures that are text: '#' is a pixel of level
// 0, '.' one of level 15; a line feed stands before the first row and after each.
// Pure and constexpr throughout; nothing here allocates. The inner loop makes no
// calls, so that compilers evaluate six pictures in about a second.
#pragma once

#include "ui/sprites/sprite_decoder.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace oxlade {

/// Runs of 1 to 7 pixels become short tokens, those of 8 to 127 long ones.
inline constexpr std::size_t longestStoredShortRun = 7;

/// The bytes of one stored frame while they are written. `capacity` must be enough
/// for all of them: the header and one byte a pixel always are.
template <std::size_t capacity>
class SpriteEncoder final {
  public:
    constexpr explicit SpriteEncoder(SpriteSize size) {
        for (const unsigned side : {size.width, size.height}) {
            put(side & 0xFF);
            put(side >> 8);
        }
    }

    /// Appends the pixels of one run, whose level must differ from the last one's.
    /// More than 127 pixels become tokens of 127 and one for the rest, if any.
    constexpr void addRun(std::size_t run, unsigned level) {
        while (run > longestStoredShortRun) {
            const std::size_t part = run < longestRun ? run : longestRun;
            put(static_cast<unsigned>(0x80 | part));
            put(level);
            run -= part;
        }
        if (run > 0) put(static_cast<unsigned>(run - 1) << 4 | level);
    }

    constexpr SpriteBytes bytes() const { return SpriteBytes{bytes_.data(), size_}; }

  private:
    constexpr void put(unsigned byte) { bytes_[size_++] = static_cast<std::uint8_t>(byte); }

    std::array<std::uint8_t, capacity> bytes_{};
    std::size_t size_ = 0;
};

/// The first fault of a picture; rows and columns count from 1.
struct ArtFault {
    enum Kind {
        none,
        noLineFeed,     ///< before the first row, or after the last
        wrongCharacter, ///< at row and column
        wrongWidth,     ///< `column` is the width of the row
        wrongHeight,    ///< `row` is the number of rows
    };

    Kind kind = none;
    std::size_t row = 0;
    std::size_t column = 0;

    friend constexpr bool operator==(const ArtFault&, const ArtFault&) = default;
};

/// A picture in its stored form, or the fault that ended the reading.
template <SpriteSize size>
struct EncodedArt {
    SpriteEncoder<spriteHeaderBytes + size.pixels()> encoder{size};
    ArtFault fault;
};

/// Encodes a picture that must have `size`.
template <SpriteSize size>
constexpr EncodedArt<size> encodeArt(std::string_view art) {
    EncodedArt<size> encoded;
    const auto level = [](char c) { return c == '#' ? 0U : 15U; };
    const auto failed = [&](ArtFault::Kind kind, std::size_t row, std::size_t column) {
        encoded.fault = {kind, row, column};
        return encoded;
    };
    if (!art.starts_with('\n') || !art.ends_with('\n')) return failed(ArtFault::noLineFeed, 0, 0);

    char current = '.';
    std::size_t run = 0;
    std::size_t row = 0;
    const char* at = art.data() + 1;
    const char* const end = art.data() + art.size();
    for (; at != end; ++at) {
        const char* const begin = at;
        if (++row > size.height) return failed(ArtFault::wrongHeight, row, 0);
        for (; *at != '\n'; ++at) {
            if (*at == current) {
                ++run;
                continue;
            }
            const auto column = static_cast<std::size_t>(at - begin) + 1;
            if (*at != '#' && *at != '.') return failed(ArtFault::wrongCharacter, row, column);
            // The encoder has room for the pixels of `size` alone.
            if (column <= size.width) encoded.encoder.addRun(run, level(current));
            current = *at;
            run = 1;
        }
        const auto width = static_cast<std::size_t>(at - begin);
        if (width != size.width) return failed(ArtFault::wrongWidth, row, width);
    }
    if (row != size.height) return failed(ArtFault::wrongHeight, row, 0);
    encoded.encoder.addRun(run, level(current));
    return encoded;
}

/// Does not compile unless `fault` is none. The compiler prints the fault, with its
/// place, as the argument of the template beside the message.
template <ArtFault fault>
constexpr bool isGoodArt() {
    static_assert(fault.kind != ArtFault::noLineFeed,
                  "the picture lacks the line feed before its first row or after its last");
    static_assert(fault.kind != ArtFault::wrongCharacter,
                  "a pixel of the picture is neither '#' nor '.': ArtFault{kind, row, column}");
    static_assert(fault.kind != ArtFault::wrongWidth,
                  "a row of the picture has the wrong width: ArtFault{kind, row, width}");
    static_assert(fault.kind != ArtFault::wrongHeight,
                  "the picture has the wrong number of rows: ArtFault{kind, rows, 0}");
    return true;
}

/// Whether a token has the form that the encoder gives its run; an empty run has none.
constexpr bool hasStoredForm(const SpriteToken& token) {
    if (token.unused != 0) return false;
    return token.bytes == (token.run <= longestStoredShortRun ? 1 : 2);
}

/// Whether a frame is stored the way the encoder stores it: levels 0 and 15 alone,
/// every token in its form, adjacent tokens of one level only where a run of more
/// than 127 pixels is cut, the last run ending on the last pixel, no byte after it.
constexpr bool followsStorageRule(SpriteBytes stored) {
    bool good = true;
    std::size_t bytes = spriteHeaderBytes;
    std::size_t pixels = 0;
    SpriteToken last{longestRun, 0, 0, 0};
    const auto check = [&](const SpriteToken& token, std::size_t) {
        const bool split = last.run < longestRun && token.level == last.level;
        const bool twoTone = token.level == 0 || token.level == 15;
        good = good && twoTone && !split && hasStoredForm(token);
        bytes += token.bytes;
        pixels += token.run;
        last = token;
    };
    if (visitSpriteTokens(stored, check)) return false;
    return good && bytes == stored.size() && pixels == readSpriteSize(stored)->pixels();
}

} // namespace oxlade
