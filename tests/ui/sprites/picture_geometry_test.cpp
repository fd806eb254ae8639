#include "ui/sprites/picture_geometry.h"

#include <gtest/gtest.h>
#include <ostream>

namespace oxlade {

static std::ostream& operator<<(std::ostream& out, const PictureRect& r) {
    return out << r.x << ", " << r.y << ", " << r.width << " x " << r.height;
}

static std::ostream& operator<<(std::ostream& out, const PicturePlace& place) {
    return out << "scale " << place.scale << " at " << place.target;
}

namespace {

PicturePlace placeIn(double width, double height) { return placePicture({0, 0, width, height}); }

TEST(PictureGeometry, TheScreenIsTenPointsWithinTheFrame) {
    EXPECT_EQ(screenOf({3, 4, 260, 184}), (PictureRect{13, 14, 240, 164}));
    EXPECT_EQ(screenOf({0, 0, 15, 20}), (PictureRect{10, 10, -5, 0}));
}

TEST(PictureGeometry, TheWindowsPanelShowsThePictureTwiceItsSize) {
    EXPECT_EQ(placeIn(260, 184), (PicturePlace{2, {24, 16, 212, 152}}));
}

TEST(PictureGeometry, TheScaleGrowsWhenBothSidesOfTheScreenAllowIt) {
    EXPECT_EQ(placeIn(232, 172).scale, 2);
    EXPECT_EQ(placeIn(231, 172).scale, 1);
    EXPECT_EQ(placeIn(232, 171).scale, 1);
    EXPECT_EQ(placeIn(231.999, 1000).scale, 1);
    EXPECT_EQ(placeIn(338, 248).scale, 3);
    EXPECT_EQ(placeIn(338, 247).scale, 2);
    EXPECT_EQ(placeIn(1080, 780).scale, 10);
}

TEST(PictureGeometry, InATightViewThePictureJustFitsOrSpillsOver) {
    EXPECT_EQ(placeIn(126, 96), (PicturePlace{1, {10, 10, 106, 76}}));
    EXPECT_EQ(placeIn(125, 96), (PicturePlace{1, {9, 10, 106, 76}}));
    EXPECT_EQ(placeIn(126, 95), (PicturePlace{1, {10, 9, 106, 76}}));
    EXPECT_EQ(placeIn(60, 40), (PicturePlace{1, {-23, -18, 106, 76}}));
    EXPECT_EQ(placeIn(0, 0), (PicturePlace{1, {-53, -38, 106, 76}}));
}

TEST(PictureGeometry, ANegativeSizeIsCentredLikeAnyOther) {
    EXPECT_EQ(placeIn(-7, -4), (PicturePlace{1, {-57, -40, 106, 76}}));
}

TEST(PictureGeometry, OddSizesAreMovedDownAndLeftToWholePoints) {
    EXPECT_EQ(placeIn(261, 185), (PicturePlace{2, {24, 16, 212, 152}}));
    EXPECT_EQ(placeIn(105, 75), (PicturePlace{1, {-1, -1, 106, 76}}));
    EXPECT_EQ(placeIn(260.9, 184.9), (PicturePlace{2, {24, 16, 212, 152}}));
}

TEST(PictureGeometry, TheOriginOfTheBoundsMovesThePictureBeforeItIsRounded) {
    EXPECT_EQ(placePicture({100, 50, 260, 184}), (PicturePlace{2, {124, 66, 212, 152}}));
    EXPECT_EQ(placePicture({0.5, 0.25, 261, 185}), (PicturePlace{2, {25, 16, 212, 152}}));
    EXPECT_EQ(placePicture({-24.5, -16.5, 260, 184}), (PicturePlace{2, {-1, -1, 212, 152}}));
}

} // namespace
} // namespace oxlade
