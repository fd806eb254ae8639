#include "app/chunk_decoder.h"

#include <gtest/gtest.h>
#include <string>

namespace oxlade::test {

using namespace std::string_literals;

TEST(ChunkDecoder, TextThatIsUtf8StaysAsItIs) {
    for (const auto& text :
         {""s, "Erase 42%\r"s, "Стирание flash"s, "\U0001F3B9"s, "a\0b"s, "\xEF\xBB\xBFmark"s,
          "\xEF\xBB\xBF\xEF\xBB\xBF"s, "\xF4\x8F\xBF\xBF"s, "\xED\x9F\xBF"s, "\xEE\x80\x80"s})
        EXPECT_EQ(decodeChunk(text), text);
}

TEST(ChunkDecoder, AnythingElseIsTakenForLatin1AsAWhole) {
    EXPECT_EQ(decodeChunk("caf\xE9"), "caf\u00E9");
    EXPECT_EQ(decodeChunk("\xC3\xA9 \xE9"), "\u00C3\u00A9 \u00E9") << "the valid part too";
}

TEST(ChunkDecoder, OverlongFormsSurrogatesAndTooLargeNumbersAreNotUtf8) {
    for (const auto& bytes :
         {"\xC0\x80"s, "\xC1\xBF"s, "\xE0\x80\x80"s, "\xE0\x9F\xBF"s, "\xF0\x80\x80\x80"s,
          "\xF0\x8F\xBF\xBF"s, "\xED\xA0\x80"s, "\xED\xBF\xBF"s, "\xF4\x90\x80\x80"s,
          "\xF5\x80\x80\x80"s, "\xFF"s, "\xFE"s, "\x80"s, "\xBF"s})
        EXPECT_FALSE(isUtf8(bytes)) << testing::PrintToString(bytes);
}

TEST(ChunkDecoder, ACharacterCutAnywhereIsNotUtf8) {
    for (const auto& text : {"é"s, "€"s, "\U0001F3B9"s})
        for (std::size_t length = 1; length < text.size(); ++length) {
            EXPECT_FALSE(isUtf8(text.substr(0, length)));
            EXPECT_FALSE(isUtf8("sixteen bytes.. " + text.substr(0, length)));
            EXPECT_FALSE(isUtf8(text.substr(length)));
            EXPECT_FALSE(isUtf8(text.substr(0, length) + "a"));
        }
}

TEST(ChunkDecoder, EveryCodePointPassesAndItsNeighboursInEncodingDoNot) {
    const auto encoded = [](char32_t c) {
        std::string s;
        const auto tail = [&](unsigned shift) {
            s += static_cast<char>(0x80U | ((c >> shift) & 0x3FU));
        };
        if (c < 0x80)
            s += static_cast<char>(c);
        else if (c < 0x800)
            s += static_cast<char>(0xC0U | (c >> 6U)), tail(0);
        else if (c < 0x10000)
            s += static_cast<char>(0xE0U | (c >> 12U)), tail(6), tail(0);
        else
            s += static_cast<char>(0xF0U | (c >> 18U)), tail(12), tail(6), tail(0);
        return s;
    };
    for (char32_t c = 0; c < 0x110100; ++c) {
        const bool valid = c < 0x110000 && !(c >= 0xD800 && c <= 0xDFFF);
        ASSERT_EQ(isUtf8(encoded(c)), valid) << std::hex << static_cast<unsigned>(c);
    }
}

TEST(ChunkDecoder, AllBytesHaveTheirLatin1Character) {
    std::string bytes;
    for (int b = 0; b < 256; ++b) bytes += static_cast<char>(b);
    const auto text = decodeChunk(bytes);
    EXPECT_EQ(text.size(), 128U + 2 * 128U);
    EXPECT_TRUE(isUtf8(text));
    EXPECT_TRUE(text.ends_with("\u00FF"));
}

} // namespace oxlade::test
