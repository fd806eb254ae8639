#include "app/output_parser.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace oxlade::test {

using namespace std::string_view_literals;

namespace {

std::vector<std::string> piecesOf(std::string_view text) {
    std::vector<std::string> pieces;
    for (std::string_view rest = text; rest.data() != nullptr;)
        pieces.emplace_back(nextPiece(rest));
    return pieces;
}

} // namespace

TEST(OutputParser, SplitsAtEveryNewlineCharacterAndKeepsEmptyPieces) {
    const std::vector<std::string> expected{"a", "b", "c", "", "d", "e", "f", "g", ""};
    EXPECT_EQ(piecesOf("a\nb\vc\r\nd\fe\u0085f\u2028g\u2029"), expected);
    EXPECT_EQ(piecesOf(""), std::vector<std::string>{""});
    for (const auto* other : {"\u0084", "\u0086", "\u2027", "\u202A", "\u20A8", "\t", "\x0E"})
        EXPECT_EQ(piecesOf(other), std::vector<std::string>{other});
}

TEST(OutputParser, TrimsSpaceSeparatorsTabsAndNewlinesAndNothingElse) {
    const std::string blanks =
        "\t\n\v\f\r \u0085\u00A0\u1680\u2000\u2001\u2002\u2003\u2004\u2005\u2006\u2007\u2008"
        "\u2009\u200A\u2028\u2029\u202F\u205F\u3000";
    EXPECT_EQ(trimmed(blanks + "x y" + blanks), "x y");
    EXPECT_EQ(trimmed(blanks), "");
    for (const auto kept : {"\u200B"sv, "\uFEFF"sv, "\u180E"sv, "\u2060"sv, "é"sv, "\x0E"sv,
                            "\x08"sv, "!"sv, "\x7F"sv, "\0"sv})
        EXPECT_EQ(trimmed(kept), kept);
}

TEST(OutputParser, OnlyTheFirstTestThatMatchesCounts) {
    EXPECT_EQ(parseLine("Erase 5% Write 6% Flash geometry:"), Report{EraseReport{5}});
    EXPECT_EQ(parseLine("Write 6% OS upload complete"), Report{WriteReport{6}});
    const auto both = "x OS upload complete Flash geometry: 8"sv;
    EXPECT_EQ(parseLine(both), Report{GeometryReport{both}});
    EXPECT_EQ(parseLine("x OS upload complete."), Report{UploadComplete{}});
}

TEST(OutputParser, TakesTheNumbersThatTheCLibraryTakes) {
    for (const auto& [line, n] : {std::pair{"Erase42", 42U},
                                  {"Erase 7 of 9", 7U},
                                  {"Erase \t\v +9", 9U},
                                  {"Erase 0x10", 0U},
                                  {"Erase -1%", 4294967295U},
                                  {"Erase -4294967295", 1U},
                                  {"Erase 4294967295", 4294967295U}})
        EXPECT_EQ(parseLine(line), Report{EraseReport{n}}) << line;
}

TEST(OutputParser, NumbersThatDoNotFitCountAsTheLargest) {
    for (const auto* line : {"Erase 4294967296", "Erase 99999999999999999999999999",
                             "Erase -4294967296", "Erase 18446744073709551617"})
        EXPECT_EQ(parseLine(line), Report{EraseReport{4294967295U}}) << line;
}

TEST(OutputParser, IgnoresEveryOtherLine) {
    for (const auto line :
         {""sv, "erase 10%"sv, "Erasing 10%"sv, "Erase"sv, "Erase %"sv, "Erase - 1"sv,
          "Erase +-1"sv, "Write\u00A05"sv, "xErase 1"sv, "flash geometry:"sv, "Flash geometry"sv,
          "OS Upload complete"sv, "Writ"sv, "Erase\0 4"sv})
        EXPECT_FALSE(parseLine(line)) << line;
}

TEST(OutputParser, ANulIsACharacterLikeAnyOther) {
    EXPECT_EQ(parseLine("Erase 4\0002"sv), Report{EraseReport{4}});
    EXPECT_EQ(parseLine("a\0b OS upload complete"sv), Report{UploadComplete{}});
}

} // namespace oxlade::test
