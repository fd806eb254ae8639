#include "ui/text.h"

#include <gtest/gtest.h>

using namespace std::string_view_literals;

namespace oxlade {
namespace {

TEST(Text, EveryCharacterSurvivesTheRoundTrip) {
    for (const std::string_view text :
         {""sv, "plain"sv, "\u0416\u2026\U0001F3B9"sv, "a\0b"sv, "\0"sv, "\uFEFFmark"sv,
          "in\uFEFFside"sv, "\uFEFF\uFEFF"sv, "\u202Ertl"sv})
        EXPECT_EQ(toUtf8(toQString(text)), text);
}

TEST(Text, NulsAndInvalidBytesBecomeVisibleAndTheRestIsKept) {
    EXPECT_EQ(withVisibleNuls(toQString("a\0b"sv)), u"a\u2400b"_qs);
    EXPECT_EQ(toQString("a\xFF\x62"sv), u"a\uFFFDb"_qs);
    EXPECT_EQ(toQString("a\xD0"sv), u"a\uFFFD"_qs);
}

} // namespace
} // namespace oxlade
