#include "app/chunk_decoder.h"

#include <gtest/gtest.h>
#include <string>
#include <sys/mman.h>
#include <unistd.h>

namespace oxlade::test {

using namespace std::string_literals;

namespace {

std::string encoded(char32_t c) {
    const auto tail = [c](unsigned shift) {
        return static_cast<char>(0x80U | (c >> shift & 0x3FU));
    };
    if (c < 0x80) return {static_cast<char>(c)};
    if (c < 0x800) return {static_cast<char>(0xC0U | c >> 6U), tail(0)};
    if (c < 0x10000) return {static_cast<char>(0xE0U | c >> 12U), tail(6), tail(0)};
    return {static_cast<char>(0xF0U | c >> 18U), tail(12), tail(6), tail(0)};
}

std::string decoded(std::string_view bytes) {
    return std::string{decodeChunk({bytes, nullptr}).view};
}

} // namespace

TEST(ChunkDecoder, Utf8IsReturnedByteForByteWithItsByteOrderMarks) {
    for (const auto& text : {""s, "Erase 42%\r"s, "Стирание flash"s, "\U0001F3B9"s, "a\0b"s,
                             "\xEF\xBB\xBF"s, "\xEF\xBB\xBF\xEF\xBB\xBFmark"s})
        EXPECT_EQ(decoded(text), text);
}

TEST(ChunkDecoder, AChunkThatIsNotUtf8IsLatin1AsAWhole) {
    EXPECT_EQ(decoded("\xC3\xA9 \xE9"), "\u00C3\u00A9 \u00E9");
    for (int byte = 0x80; byte < 0x100; ++byte)
        EXPECT_EQ(decoded(std::string(1, static_cast<char>(byte))),
                  encoded(static_cast<char32_t>(byte)));
}

TEST(ChunkDecoder, LinesAreTakenUpToALineEndAtOrBehindTheSize) {
    std::string_view text{"ab\ncd\ref\n\ngh"};
    EXPECT_EQ(takeLines(text, 3), "ab\n");
    EXPECT_EQ(takeLines(text, 1), "cd\r");
    EXPECT_EQ(takeLines(text, 4), "ef\n\n");
    EXPECT_EQ(takeLines(text, 1), "gh");
    EXPECT_EQ(takeLines(text, 1), "");
    std::string_view line{"abc"};
    EXPECT_EQ(takeLines(line, 9), "abc");
    EXPECT_EQ(line, "");
}

TEST(ChunkDecoder, ExactlyTheCodePointsThatUnicodeHasAreUtf8) {
    for (char32_t c = 0; c < 0x140000; ++c) {
        const bool isValid = c < 0x110000 && !(c >= 0xD800 && c <= 0xDFFF);
        ASSERT_EQ(isUtf8(encoded(c)), isValid) << std::hex << static_cast<unsigned>(c);
    }
}

TEST(ChunkDecoder, OverlongFormsAndStrayBytesAreNotUtf8) {
    for (const auto& bytes :
         {"\xC0\x80"s, "\xC1\xBF"s, "\xE0\x80\x80"s, "\xE0\x9F\xBF"s, "\xF0\x80\x80\x80"s,
          "\xF0\x8F\xBF\xBF"s, "\xF5\x80\x80\x80"s, "\xFF"s, "\xFE"s, "\x80"s, "\xBF"s})
        EXPECT_FALSE(isUtf8(bytes)) << testing::PrintToString(bytes);
}

TEST(ChunkDecoder, ACharacterWithoutOneOfItsBytesIsNotUtf8) {
    for (const auto& text : {"é"s, "€"s, "\U0001F3B9"s})
        for (std::size_t i = 1; i < text.size(); ++i)
            for (const auto& other : {""s, "a"s, "\xC0"s, "\xC3"s})
                EXPECT_FALSE(isUtf8(text.substr(0, i) + other + text.substr(i + 1)));
}

// The bytes end where a page does that may not be read.
TEST(ChunkDecoder, NothingIsReadBehindTheBytes) {
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    void* memory =
        mmap(nullptr, 2 * page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    ASSERT_NE(memory, MAP_FAILED);
    char* const end = static_cast<char*>(memory) + page;
    ASSERT_EQ(mprotect(end, page, PROT_NONE), 0);
    for (const auto& text : {"sixteen bytes, a"s, "\U0001F3B9\U0001F3B9"s, "ab\xE2\x82"s, "\xC3"s})
        for (std::size_t length = 1; length <= text.size(); ++length) {
            text.copy(end - length, length);
            EXPECT_EQ(isUtf8({end - length, length}), isUtf8(text.substr(0, length)));
        }
    munmap(memory, 2 * page);
}

} // namespace oxlade::test
