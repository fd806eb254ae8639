#include "tools/sprite_encoder.h"

#include "ui/sprites/sprite_rule.h"

#include <algorithm>
#include <cstddef>

namespace oxlade {
namespace {

using Bytes = std::vector<std::uint8_t>;

void appendSize(Bytes& out, std::uint16_t size) {
    out.push_back(static_cast<std::uint8_t>(size & 0xFF));
    out.push_back(static_cast<std::uint8_t>(size >> 8));
}

void appendToken(Bytes& out, std::size_t run, std::uint8_t level) {
    if (run <= longestStoredShortRun) {
        out.push_back(static_cast<std::uint8_t>((run - 1) << 4 | level));
        return;
    }
    out.push_back(static_cast<std::uint8_t>(0x80 | run));
    out.push_back(level);
}

void appendRun(Bytes& out, std::size_t run, std::uint8_t level) {
    for (; run > 0; run -= std::min<std::size_t>(run, longestRun))
        appendToken(out, std::min<std::size_t>(run, longestRun), level);
}

} // namespace

std::vector<std::uint8_t> encodeSprite(const LevelPicture& picture) {
    Bytes out;
    appendSize(out, picture.width);
    appendSize(out, picture.height);
    const auto end = picture.levels.end();
    for (auto at = picture.levels.begin(); at != end;) {
        const auto next = std::find_if(at, end, [&](auto level) { return level != *at; });
        appendRun(out, static_cast<std::size_t>(next - at), *at & 0x0F);
        at = next;
    }
    return out;
}

} // namespace oxlade
