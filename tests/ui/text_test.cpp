#include "ui/text.h"

#include <gtest/gtest.h>

using namespace std::string_view_literals;

namespace oxlade {
namespace {

TEST(Text, EveryCharacterSurvivesTheRoundTrip) {
    for (const std::string_view text :
         {""sv, "plain"sv, "\xD0\x96\xE2\x80\xA6\xF0\x9F\x8E\xB9"sv, "a\0b"sv, "\0"sv,
          "\xEF\xBB\xBF"
          "mark"sv,
          "in\xEF\xBB\xBFside"sv, "\xEF\xBB\xBF\xEF\xBB\xBF"sv, "\xE2\x80\xAErtl"sv}) {
        EXPECT_EQ(toUtf8(toQString(text)), text);
    }
}

TEST(Text, NulsBecomeVisible) {
    EXPECT_EQ(withVisibleNuls(toQString("a\0b"sv)), QStringLiteral("a\u2400b"));
}

TEST(Text, InvalidBytesAreReplacedAndTheRestIsKept) {
    EXPECT_EQ(toQString("a\xFF"
                        "b"sv),
              QStringLiteral(u"a\uFFFDb"));
    EXPECT_EQ(toQString("a\xD0"sv), QStringLiteral(u"a\uFFFD"));
}

} // namespace
} // namespace oxlade
