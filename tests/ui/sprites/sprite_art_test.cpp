#include "tools/art_reader.h"

#include <gtest/gtest.h>
#include <sstream>

namespace oxlade {
namespace {

using Outcome = std::variant<LevelPicture, ArtError>;

/// Reads a picture of 3 by 2 pixels.
Outcome read(const std::string& text) {
    std::istringstream in(text);
    return readArt(in, "girl.txt", 3, 2);
}

std::string complaint(const std::string& text) { return std::get<ArtError>(read(text)).message; }

const LevelPicture small{3, 2, {0, 15, 0, 15, 0, 15}};

TEST(Art, AHashIsALineAndADotIsBackground) {
    EXPECT_EQ(std::get<LevelPicture>(read("#.#\n.#.\n")), small);
}

TEST(Art, RemarksMayStandAboveThePicture) {
    EXPECT_EQ(std::get<LevelPicture>(read("; a girl\n;\n#.#\n.#.\n")), small);
}

TEST(Art, TheLastLineNeedsNoLineEnd) { EXPECT_EQ(std::get<LevelPicture>(read("#.#\n.#.")), small); }

TEST(Art, ARowOfTheWrongLengthIsNamed) {
    EXPECT_EQ(complaint("#.#\n.#\n"), "girl.txt:2: the row has 2 pixels, not 3");
    EXPECT_EQ(complaint("; x\n#.#.\n.#.\n"), "girl.txt:2: the row has 4 pixels, not 3");
    EXPECT_EQ(complaint("#.#\n\n.#.\n"), "girl.txt:2: the row has 0 pixels, not 3");
}

TEST(Art, AnUnknownCharacterIsNamedWithItsPlace) {
    EXPECT_EQ(complaint("#.#\n.x.\n"), "girl.txt:2: pixel 2 is 'x', not '#' or '.'");
    EXPECT_EQ(complaint("#.#\r\n.#.\r\n"), "girl.txt:1: pixel 4 is byte 13, not '#' or '.'");
    EXPECT_EQ(complaint("#.#\n; late\n"), "girl.txt:2: pixel 1 is ';', not '#' or '.'");
}

TEST(Art, MissingAndSurplusRowsAreNamed) {
    EXPECT_EQ(complaint("; x\n#.#\n"), "girl.txt:2: the picture ends after 1 rows of 2");
    EXPECT_EQ(complaint(""), "girl.txt:0: the picture ends after 0 rows of 2");
    EXPECT_EQ(complaint("#.#\n.#.\n...\n"), "girl.txt:3: more than 2 rows");
}

} // namespace
} // namespace oxlade
