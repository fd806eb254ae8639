#include "app/chunk_decoder.h"

#include <cstdint>
#include <cstring>

namespace oxlade {

namespace {

using Byte = unsigned char;

/// The number of ASCII bytes at the front.
std::size_t asciiLength(std::string_view bytes) {
    std::size_t length = 0;
    // 32 at a time: most output is ASCII throughout.
    for (std::uint64_t words[4]; bytes.size() - length >= sizeof words; length += sizeof words) {
        std::memcpy(words, bytes.data() + length, sizeof words);
        if (((words[0] | words[1] | words[2] | words[3]) & 0x8080808080808080U) != 0) break;
    }
    while (length < bytes.size() && static_cast<Byte>(bytes[length]) < 0x80) ++length;
    return length;
}

/// The length of the multi-byte character at the front; 0 if there is no valid one.
std::size_t characterLength(std::string_view bytes) {
    const auto at = [bytes](std::size_t index) { return static_cast<Byte>(bytes[index]); };
    const Byte lead = at(0);
    if (lead < 0xC2 || lead > 0xF4) return 0;
    const std::size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    if (bytes.size() < length) return 0;
    // The bounds of the second byte exclude overlong forms, surrogates and numbers
    // above U+10FFFF.
    const Byte least = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    const Byte most = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    if (at(1) < least || at(1) > most) return 0;
    for (std::size_t i = 2; i < length; ++i)
        if ((at(i) & 0xC0U) != 0x80U) return 0;
    return length;
}

std::string fromLatin1(std::string_view bytes) {
    std::string text;
    text.reserve(bytes.size() * 2);
    for (const char c : bytes) {
        const auto byte = static_cast<Byte>(c);
        if (byte < 0x80) {
            text += c;
        } else {
            text += static_cast<char>(0xC0U | (byte >> 6U));
            text += static_cast<char>(0x80U | (byte & 0x3FU));
        }
    }
    return text;
}

} // namespace

bool isUtf8(std::string_view bytes) {
    for (;;) {
        bytes.remove_prefix(asciiLength(bytes));
        if (bytes.empty()) return true;
        const auto length = characterLength(bytes);
        if (length == 0) return false;
        bytes.remove_prefix(length);
    }
}

SharedBytes decodeChunk(const SharedBytes& bytes) {
    if (isUtf8(bytes.view)) return bytes;
    const auto text = std::make_shared<const std::string>(fromLatin1(bytes.view));
    return {*text, text};
}

std::string_view takeLines(std::string_view& text, std::size_t size) {
    const auto isLineEnd = [](char c) { return c == '\n' || c == '\r'; };
    while (size < text.size() && !isLineEnd(text[size - 1])) ++size;
    const auto lines = text.substr(0, size);
    text.remove_prefix(lines.size());
    return lines;
}

} // namespace oxlade
