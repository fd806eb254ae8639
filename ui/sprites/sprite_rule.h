// What the shipped frames keep to, beyond what the decoder would accept: there
// is exactly one way to store a picture, the one that the encoder writes.
#pragma once

#include "ui/sprites/sprite_format.h"

namespace oxlade {

/// Runs of 1 to 7 pixels are short tokens, those of 8 to 127 long ones.
inline constexpr unsigned longestStoredShortRun = 7;

/// Whether a token has the form that its run calls for, and nothing in the bits
/// without meaning. `stored` begins with the token.
constexpr bool hasStoredForm(const SpriteToken& token, SpriteBytes stored) {
    if (token.run == 0) return false;
    if (token.run <= longestStoredShortRun) return token.bytes == 1;
    return token.bytes == 2 && stored[1] == token.level;
}

/// Whether a whole frame is stored by the rule: every token in its form, equal
/// neighbours only where a run of more than 127 pixels is cut, the last run
/// ending on the last pixel, and not one byte after it.
constexpr bool followsStorageRule(SpriteBytes stored) {
    bool good = true;
    std::size_t at = spriteHeaderBytes;
    std::size_t end = 0;
    SpriteToken last{longestRun, 0, 0};
    const auto check = [&](const SpriteToken& token, std::size_t pixel) {
        const bool split = last.run < longestRun && token.level == last.level;
        good = good && !split && hasStoredForm(token, stored.subspan(at));
        at += token.bytes;
        end = pixel + token.run;
        last = token;
    };
    if (visitSpriteTokens(stored, check)) return false;
    return good && at == stored.size() && end == readSpriteSize(stored)->pixels();
}

/// Whether a frame consists of levels 0 and 15 alone.
constexpr bool isTwoTone(SpriteBytes stored) {
    bool good = true;
    const auto check = [&](const SpriteToken& token, std::size_t) {
        good = good && (token.level == 0 || token.level == 15);
    };
    return !visitSpriteTokens(stored, check) && good;
}

} // namespace oxlade
