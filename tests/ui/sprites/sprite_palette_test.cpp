#include "ui/sprites/sprite_palette.h"

#include <gtest/gtest.h>

namespace oxlade {
namespace {

TEST(SpritePalette, EachOfTheSixteenLevelsHasItsColour) {
    constexpr std::array<SpriteColor, 16> expected{{
        {18, 33, 56, 255},
        {31, 46, 68, 255},
        {44, 59, 80, 255},
        {57, 72, 92, 255},
        {70, 86, 104, 255},
        {82, 99, 116, 255},
        {95, 112, 129, 255},
        {108, 125, 141, 255},
        {121, 138, 153, 255},
        {134, 151, 165, 255},
        {147, 164, 177, 255},
        {160, 177, 189, 255},
        {173, 190, 201, 255},
        {186, 203, 213, 255},
        {199, 216, 225, 255},
        {212, 230, 237, 255},
    }};
    for (std::size_t level = 0; level < expected.size(); ++level)
        EXPECT_EQ(spritePalette[level], expected[level]) << "level " << level;
}

TEST(SpritePalette, HalvesAreRoundedUpwardsAndWhatIsJustBelowIsNot) {
    EXPECT_EQ(detail::roundedByte(229.5), 230);
    EXPECT_EQ(detail::roundedByte(229.49999999999997), 229);
    EXPECT_EQ(detail::roundedByte(0.49999999999999994), 0);
    EXPECT_EQ(detail::roundedByte(0), 0);
    EXPECT_EQ(detail::roundedByte(255), 255);
}

} // namespace
} // namespace oxlade
