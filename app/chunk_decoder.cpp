#include "app/chunk_decoder.h"

#include <cstdint>
#include <cstring>

namespace oxlade {

namespace {

constexpr bool isContinuation(unsigned char byte) { return (byte & 0xC0U) == 0x80U; }

/// The number of bytes of the character that `lead` and `second` begin, 0 if no
/// character begins so. The second byte alone tells overlong forms, surrogates and
/// numbers that are too large.
constexpr std::size_t characterLength(unsigned char lead, unsigned char second) {
    if (!isContinuation(second)) return 0;
    if (lead >= 0xC2 && lead <= 0xDF) return 2;
    if (lead == 0xE0) return second >= 0xA0 ? 3 : 0;
    if (lead == 0xED) return second <= 0x9F ? 3 : 0;
    if (lead >= 0xE1 && lead <= 0xEF) return 3;
    if (lead == 0xF0) return second >= 0x90 ? 4 : 0;
    if (lead == 0xF4) return second <= 0x8F ? 4 : 0;
    return lead >= 0xF1 && lead <= 0xF3 ? 4 : 0;
}

/// How many bytes at the front are ASCII, counted in words of eight.
std::size_t asciiWordsLength(std::string_view bytes) {
    std::size_t length = 0;
    for (; bytes.size() - length >= sizeof(std::uint64_t); length += sizeof(std::uint64_t)) {
        std::uint64_t word = 0;
        std::memcpy(&word, bytes.data() + length, sizeof word);
        if ((word & 0x8080808080808080U) != 0) break;
    }
    return length;
}

std::string fromLatin1(std::string_view bytes) {
    std::string text;
    text.reserve(bytes.size() * 2);
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
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
    std::size_t i = 0;
    const auto at = [bytes](std::size_t index) { return static_cast<unsigned char>(bytes[index]); };
    while (i < bytes.size()) {
        i += asciiWordsLength(bytes.substr(i));
        if (i == bytes.size()) break;
        if (at(i) < 0x80) {
            ++i;
            continue;
        }
        if (bytes.size() - i < 2) return false;
        const auto length = characterLength(at(i), at(i + 1));
        if (length == 0 || bytes.size() - i < length) return false;
        for (std::size_t k = 2; k < length; ++k)
            if (!isContinuation(at(i + k))) return false;
        i += length;
    }
    return true;
}

std::string decodeChunk(std::string_view bytes) {
    return isUtf8(bytes) ? std::string{bytes} : fromLatin1(bytes);
}

} // namespace oxlade
