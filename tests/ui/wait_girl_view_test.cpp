// The picture panel, pixel for pixel and step for step.
#include "ui/sprites/wait_girl_model.h"
#include "ui/sprites/wait_girl_view.h"

#include <QImage>
#include <QPainter>
#include <QTimer>

#include <gtest/gtest.h>

namespace oxlade::test {
namespace {

const QColor frameColor{23, 26, 31};
const QColor screenColor{212, 230, 237};

QImage render(QWidget& view, double ratio) {
    QImage image{(QSizeF{view.size()} * ratio).toSize(), QImage::Format_RGB32};
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::magenta);
    view.render(&image, {}, {}, QWidget::DrawChildren);
    return image;
}

class ViewTest : public ::testing::Test {
  protected:
    ViewTest() { view.resize(260, 184); }
    bool reduceMotion = false;
    int asked = 0;
    WaitGirlView view{[this] {
                          ++asked;
                          return reduceMotion;
                      },
                      nullptr};
};

TEST_F(ViewTest, DrawsFrameAndScreenWithRoundedCorners) {
    const QImage image = render(view, 1);
    EXPECT_EQ(image.pixelColor(0, 0), QColor{Qt::magenta}) << "outside the rounded corner";
    EXPECT_EQ(image.pixelColor(259, 183), QColor{Qt::magenta});
    EXPECT_EQ(image.pixelColor(5, 92), frameColor);
    EXPECT_EQ(image.pixelColor(130, 9), frameColor);
    EXPECT_EQ(image.pixelColor(10, 10), frameColor) << "the screen's corner is rounded too";
    EXPECT_EQ(image.pixelColor(130, 10), screenColor);
    EXPECT_EQ(image.pixelColor(10, 92), screenColor);
    EXPECT_EQ(image.pixelColor(249, 92), screenColor);
    EXPECT_EQ(image.pixelColor(250, 92), frameColor);
    EXPECT_EQ(image.pixelColor(130, 173), screenColor);
    EXPECT_EQ(image.pixelColor(130, 174), frameColor);
}

/// Each pixel of the picture, `size` device pixels square, without a blend.
void expectWholePixels(const QImage& image, const QImage& frame, QPoint origin, int size) {
    for (int y = 0; y < frame.height() * size; ++y)
        for (int x = 0; x < frame.width() * size; ++x)
            ASSERT_EQ(image.pixel(origin.x() + x, origin.y() + y), frame.pixel(x / size, y / size))
                << x << ' ' << y;
}

TEST_F(ViewTest, DrawsEachPixelAsAWholeSquareAtEveryRatioThatAllowsIt) {
    for (const std::uint64_t index : {0U, 4U}) {
        view.showFrame(index);
        // 212 by 152 with the lower left corner at (24, 16): 16 from the top too.
        expectWholePixels(render(view, 1), view.frames()[index], {24, 16}, 2);
        expectWholePixels(render(view, 1.5), view.frames()[index], {36, 24}, 3);
        expectWholePixels(render(view, 2), view.frames()[index], {48, 32}, 4);
    }
}

TEST_F(ViewTest, BlendsNoColoursWhereTheRatioIsUneven) {
    const QImage image = render(view, 1.25);
    for (int y = 40; y < 180; ++y)
        for (int x = 40; x < 280; ++x) {
            const QRgb pixel = image.pixel(x, y);
            ASSERT_TRUE(pixel == qRgb(18, 33, 56) || pixel == qRgb(212, 230, 237));
        }
}

TEST_F(ViewTest, SpillsOverTheScreenWhenItIsSmall) {
    view.resize(100, 60);
    const PicturePlace place = placePicture({0, 0, 100, 60});
    EXPECT_EQ(place.target, (PictureRect{-3, -8, 106, 76}));
    const QImage image = render(view, 1);
    const QImage& frame = view.frames()[0];
    // Centred: three columns are cut on the left, and eight rows below and above.
    for (int y = 0; y < 60; ++y)
        for (int x = 0; x < 100; ++x) ASSERT_EQ(image.pixel(x, y), frame.pixel(x + 3, y + 8));
}

TEST_F(ViewTest, SnapsDownwardsInAFrameOfOddSize) {
    view.resize(261, 185);
    // The origin is (24, 16) from below: one row more is left above.
    expectWholePixels(render(view, 1), view.frames()[0], {24, 17}, 2);
}

TEST_F(ViewTest, HoldsSixFramesAndShowsTheFirst) {
    ASSERT_EQ(view.frames().size(), 6U);
    for (const QImage& frame : view.frames()) EXPECT_EQ(frame.size(), QSize(106, 76));
    EXPECT_EQ(view.frameIndex(), 0U);
    EXPECT_EQ(view.timer(), nullptr);
}

TEST_F(ViewTest, PlaysTheIntroOnceAndThenTapsItsFoot) {
    view.startWaiting();
    std::vector<std::uint64_t> shown{view.frameIndex()};
    for (int step = 0; step < 7; ++step) {
        view.tick();
        shown.push_back(view.frameIndex());
    }
    EXPECT_EQ(shown, (std::vector<std::uint64_t>{1, 2, 3, 4, 5, 4, 5, 4}));
    ASSERT_NE(view.timer(), nullptr);
    EXPECT_TRUE(view.timer()->isActive());
    EXPECT_FALSE(view.timer()->isSingleShot());
    EXPECT_EQ(view.timer()->interval(), 300);
}

TEST_F(ViewTest, ASecondStartChangesNothing) {
    view.startWaiting();
    view.tick();
    const QTimer* timer = view.timer();
    view.startWaiting();
    EXPECT_EQ(view.frameIndex(), 2U);
    EXPECT_EQ(view.timer(), timer);
    EXPECT_EQ(asked, 1) << "a running animation does not ask for the setting";
}

TEST_F(ViewTest, StoppingShowsTheIdleFrameAndLeavesNoTimer) {
    view.stopWaiting();
    EXPECT_EQ(view.frameIndex(), 0U);
    view.startWaiting();
    view.tick();
    view.stopWaiting();
    EXPECT_EQ(view.frameIndex(), 0U);
    EXPECT_EQ(view.timer(), nullptr);
}

TEST_F(ViewTest, ReducedMotionShowsOneStillFrame) {
    reduceMotion = true;
    view.startWaiting();
    EXPECT_EQ(view.frameIndex(), 4U);
    EXPECT_EQ(view.timer(), nullptr);
    view.stopWaiting();
    EXPECT_EQ(view.frameIndex(), 0U);
}

TEST_F(ViewTest, TheSettingIsReadAgainAtTheNextStart) {
    reduceMotion = true;
    view.startWaiting();
    reduceMotion = false;
    view.startWaiting();
    EXPECT_EQ(view.frameIndex(), 1U);
    EXPECT_NE(view.timer(), nullptr);
}

TEST_F(ViewTest, FromAnyFrameBeyondTheFourthItGoesBackToIt) {
    for (const std::uint64_t index : {5U, 6U, 99U}) {
        view.showFrame(index);
        view.tick();
        EXPECT_EQ(view.frameIndex(), 4U);
    }
}

TEST(WaitGirlView, MovesWhenNobodyToldItAboutMotion) {
    WaitGirlView view{{}, nullptr};
    view.startWaiting();
    EXPECT_EQ(view.frameIndex(), 1U);
}

} // namespace
} // namespace oxlade::test
