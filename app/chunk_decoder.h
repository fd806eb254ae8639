// From the bytes of one read to text. Pure; any thread.
#pragma once

#include <string>
#include <string_view>

namespace oxlade {

/// Whether the bytes are UTF-8 throughout: no overlong form, no surrogate, nothing
/// above U+10FFFF, no character cut at the end. An empty text is.
bool isUtf8(std::string_view bytes);

/// One chunk of the helper's output as UTF-8 text. Bytes that are not UTF-8
/// throughout are taken, the whole chunk, for Latin-1: every chunk stands by
/// itself, also one that ends inside a character. A byte-order mark stays.
std::string decodeChunk(std::string_view bytes);

} // namespace oxlade
