#include "app/output_parser.h"

#include <cstdio>
#include <gtest/gtest.h>
#include <random>
#include <string>

namespace oxlade::test {

using Reports = std::vector<Report>;

Reports reportsOf(std::string_view chunk) {
    Reports reports;
    forEachReport(chunk, [&](const Report& report) { reports.push_back(report); });
    return reports;
}

std::vector<std::string> piecesOf(std::string_view text) {
    std::vector<std::string> pieces;
    for (std::string_view rest = text; rest.data() != nullptr;)
        pieces.emplace_back(nextPiece(rest));
    return pieces;
}

TEST(OutputParser, SplitsAtEveryNewlineCharacterAndKeepsEmptyPieces) {
    const std::vector<std::string> expected{"a", "b", "c", "", "d", "e", "f", "g", ""};
    EXPECT_EQ(piecesOf("a\nb\vc\r\nd\fe\u0085f\u2028g\u2029"), expected);
    EXPECT_EQ(piecesOf("x"), std::vector<std::string>{"x"});
    EXPECT_EQ(piecesOf(""), std::vector<std::string>{""});
}

TEST(OutputParser, CharactersThatOnlyLookLikeTheNewlinesDoNotSplit) {
    for (const auto* text : {"\u0084", "\u0086", "\u2027", "\u202A", "\u20A8", "\t", "\x1C"})
        EXPECT_EQ(piecesOf(text).size(), 1U) << text;
}

TEST(OutputParser, TrimsEverySpaceSeparatorAndNothingElse) {
    std::string blanks = "\t \u00A0\u1680\u202F\u205F\u3000\n\v\f\r\u0085\u2028\u2029";
    for (const auto* space : {"\u2000", "\u2001", "\u2002", "\u2003", "\u2004", "\u2005", "\u2006",
                              "\u2007", "\u2008", "\u2009", "\u200A"})
        blanks += space;
    EXPECT_EQ(trimmed(blanks + "x y" + blanks), "x y");
    EXPECT_EQ(trimmed(blanks), "");
    EXPECT_EQ(trimmed(""), "");
    for (const auto* kept : {"\u200B", "\uFEFF", "\u180E", "\u2060", "é", "\x1C", "\x7F"})
        EXPECT_EQ(trimmed(kept), kept);
    EXPECT_EQ(trimmed(std::string_view("\0", 1)).size(), 1U);
}

TEST(OutputParser, RecognisesTheFourReports) {
    EXPECT_EQ(reportsOf("Erase 42%"), (Reports{EraseReport{42}}));
    EXPECT_EQ(reportsOf("Write 42%"), (Reports{WriteReport{42}}));
    EXPECT_EQ(reportsOf(" x Flash geometry: 8 "), (Reports{GeometryReport{"x Flash geometry: 8"}}));
    EXPECT_EQ(reportsOf("..OS upload complete.."), (Reports{UploadComplete{}}));
}

TEST(OutputParser, OnlyTheFirstTestThatMatchesCounts) {
    EXPECT_EQ(reportsOf("Erase 5% Flash geometry: x"), (Reports{EraseReport{5}}));
    EXPECT_EQ(reportsOf("Flash geometry: OS upload complete"),
              (Reports{GeometryReport{"Flash geometry: OS upload complete"}}));
}

TEST(OutputParser, TakesWhatTheScanOfTheCLibraryTakes) {
    EXPECT_EQ(parseLine("Erase42"), Report{EraseReport{42}});
    EXPECT_EQ(parseLine("Write 7 of 9"), Report{WriteReport{7}});
    EXPECT_EQ(parseLine("Erase \t\v +9"), Report{EraseReport{9}});
    EXPECT_EQ(parseLine("Erase -1%"), Report{EraseReport{4294967295U}});
    EXPECT_EQ(parseLine("Erase -4294967295"), Report{EraseReport{1}});
    EXPECT_EQ(parseLine("Write 0x10"), Report{WriteReport{0}});
    EXPECT_EQ(parseLine("Write 4294967295"), Report{WriteReport{4294967295U}});
}

TEST(OutputParser, NumbersThatDoNotFitCountAsTheLargest) {
    for (const auto* line : {"Erase 4294967296", "Erase 99999999999999999999999999",
                             "Erase -4294967296", "Erase 18446744073709551617"})
        EXPECT_EQ(parseLine(line), Report{EraseReport{4294967295U}}) << line;
}

TEST(OutputParser, IgnoresEverythingElse) {
    for (const auto* line : {"", "erase 10%", "Erasing 10%", "Erase", "Erase %", "Erase - 1",
                             "Erase +-1", "Write\u00A05", "xErase 1", "ERASE 1", "flash geometry:",
                             "Flash geometry", "OS Upload complete", "Writ", "W"})
        EXPECT_FALSE(parseLine(line)) << line;
}

TEST(OutputParser, ANulEndsNoLineButStopsAScan) {
    using namespace std::string_view_literals;
    EXPECT_FALSE(parseLine("Erase\0 4"sv));
    EXPECT_EQ(parseLine("Erase 4\0002"sv), Report{EraseReport{4}});
    EXPECT_EQ(parseLine("a\0b OS upload complete"sv), Report{UploadComplete{}});
}

/// The rule that the parser follows, by the C library itself.
std::optional<Report> scanned(const std::string& line) {
    unsigned n = 0;
    if (std::sscanf(line.c_str(), "Erase %u%%", &n) == 1) return EraseReport{n};
    if (std::sscanf(line.c_str(), "Write %u%%", &n) == 1) return WriteReport{n};
    if (line.find("Flash geometry:") != std::string::npos) return GeometryReport{line};
    if (line.find("OS upload complete") != std::string::npos) return UploadComplete{};
    return std::nullopt;
}

/// Whether the library leaves open what it makes of the line.
bool hasNumberOver32Bits(const std::string& line) {
    constexpr std::uint64_t largest = 4294967295U;
    std::uint64_t number = 0;
    for (const char c : line) {
        const bool isDigit = c >= '0' && c <= '9';
        number =
            isDigit ? std::min(number * 10 + static_cast<std::uint64_t>(c - '0'), largest * 2) : 0;
        if (number > largest) return true;
    }
    return false;
}

TEST(OutputParser, AgreesWithTheCLibraryOnAHundredThousandLines) {
    std::mt19937 random{20260101}; // NOLINT: the same lines in each run
    const std::vector<std::string> parts{"Erase",
                                         "Write",
                                         "erase",
                                         "Erase ",
                                         "Write ",
                                         " ",
                                         "\t",
                                         "\v",
                                         "+",
                                         "-",
                                         "0",
                                         "7",
                                         "42",
                                         "100",
                                         "007",
                                         "%",
                                         "%%",
                                         "5%",
                                         "x",
                                         ".",
                                         "4294967295",
                                         "99999999",
                                         "Flash geometry:",
                                         "OS upload complete",
                                         "é",
                                         "\u00A0",
                                         "of",
                                         ","};
    int matched = 0, compared = 0;
    while (compared < 100'000) {
        std::string line;
        if (random() % 2 == 0) line = random() % 2 == 0 ? "Erase" : "Write ";
        for (auto count = random() % 5; count > 0; --count) line += parts[random() % parts.size()];
        line.resize(std::min(line.size(), std::size_t{random() % 40}));
        if (hasNumberOver32Bits(line)) continue;
        ++compared;
        const auto expected = scanned(line);
        matched += expected ? 1 : 0;
        ASSERT_EQ(parseLine(line), expected) << line;
    }
    EXPECT_GT(matched, 10'000);
}

TEST(OutputParser, AReportCutAnywhereIsTheReportOfWhatIsLeft) {
    const std::string line = "Erase 42%";
    for (std::size_t length = 0; length <= line.size(); ++length)
        EXPECT_EQ(parseLine(trimmed(line.substr(0, length))), scanned(line.substr(0, length)));
    EXPECT_EQ(parseLine("Erase 4"), Report{EraseReport{4}});
    EXPECT_FALSE(parseLine("2%"));
}

} // namespace oxlade::test
