// Decodes the bytes of one read into text, and cuts it at line ends. Pure; any thread.
#pragma once

#include "interfaces/system.h"

#include <string_view>

namespace oxlade {

/// Whether all of `bytes` is UTF-8: no overlong form, no surrogate, nothing above
/// U+10FFFF, no character cut at either end. Empty input is UTF-8.
bool isUtf8(std::string_view bytes);

/// Decodes one chunk of the helper's output and returns it as UTF-8; the same bytes if they
/// are UTF-8. A chunk that is not UTF-8 as a whole is decoded as Latin-1 as a whole, also one
/// that merely ends inside a character: no bytes are carried over to the next chunk.
///
/// The result is empty only for empty input: UTF-8 is returned byte for byte, and each
/// Latin-1 byte becomes one character. So there is no second attempt for a chunk that
/// decodes to nothing. A byte-order mark is kept: a chunk is not the start of a file, and
/// the log shows every character that the helper wrote.
SharedBytes decodeChunk(const SharedBytes& bytes);

/// Takes whole lines off the front of `text` and returns them: `size` bytes, which is 1 or
/// more, and what follows up to the next line end ('\n' or '\r'); all of the text if there is
/// none.
std::string_view takeLines(std::string_view& text, std::size_t size);

} // namespace oxlade
