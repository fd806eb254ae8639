// The waiting figure, pixel by pixel and step by step.
#include "tests/ui/program.h"
#include "ui/sprites/wait_girl_model.h"
#include "ui/sprites/wait_girl_view.h"

#include <QTimer>

namespace oxlade::test {
namespace {

const QColor frameColor{23, 26, 31};
const QColor screenColor{212, 230, 237};

class ViewTest : public ::testing::Test {
  protected:
    ViewTest() { view.resize(260, 184); }
    QImage render(double ratio) { return pictureOf(view, ratio, QWidget::DrawChildren); }

    bool reduceMotion = false;
    int asked = 0;
    WaitGirlView view{[this] {
                          ++asked;
                          return reduceMotion;
                      },
                      nullptr};
};

TEST_F(ViewTest, DrawsFrameAndScreenWithRoundedCorners) {
    const QImage image = render(1);
    const std::tuple<int, int, QColor> pixels[] = {
        {0, 0, Qt::magenta},    {259, 183, Qt::magenta}, // outside the rounded corners
        {5, 92, frameColor},    {130, 9, frameColor},    {10, 10, frameColor},
        {130, 10, screenColor}, {10, 92, screenColor},   {249, 92, screenColor},
        {250, 92, frameColor},  {130, 173, screenColor}, {130, 174, frameColor}};
    for (const auto& [x, y, expected] : pixels)
        EXPECT_EQ(image.pixelColor(x, y), expected) << x << ' ' << y;
}

/// Expects each pixel of the frame as a square of `size` device pixels, unblended.
void expectWholePixels(const QImage& image, const QImage& frame, QPoint origin, int size) {
    for (int y = 0; y < frame.height() * size; ++y)
        for (int x = 0; x < frame.width() * size; ++x)
            ASSERT_EQ(image.pixel(origin.x() + x, origin.y() + y), frame.pixel(x / size, y / size))
                << x << ' ' << y;
}

TEST_F(ViewTest, DrawsEachPixelAsAWholeSquareAtEveryRatio) {
    for (const std::uint64_t index : {0U, 4U}) {
        view.showFrame(index);
        // 212 by 152, with the lower left corner at (24, 16): 16 from the top, too.
        expectWholePixels(render(1), view.frames()[index], {24, 16}, 2);
        // Smaller where a pixel would be 2.5 or 3.5 device pixels, in the same place.
        expectWholePixels(render(1.25), view.frames()[index], {56, 39}, 2);
        expectWholePixels(render(1.75), view.frames()[index], {68, 47}, 3);
        expectWholePixels(render(1.5), view.frames()[index], {36, 24}, 3);
        expectWholePixels(render(2), view.frames()[index], {48, 32}, 4);
    }
    view.resize(261, 185); // the origin is (24, 16) from below: one more row above
    expectWholePixels(render(1), view.frames()[4], {24, 17}, 2);
}

TEST_F(ViewTest, StepsByATimerUntilItIsStopped) {
    EXPECT_EQ(view.frameIndex(), 0U);
    view.startWaiting();
    const QTimer* timer = view.timer();
    ASSERT_NE(timer, nullptr);
    EXPECT_TRUE(timer->isActive());
    EXPECT_FALSE(timer->isSingleShot());
    EXPECT_EQ(timer->interval(), 300);
    EXPECT_EQ(view.frameIndex(), 1U);
    view.tick();
    view.startWaiting();
    EXPECT_EQ(view.frameIndex(), 2U) << "a second start changes nothing";
    EXPECT_EQ(view.timer(), timer);
    EXPECT_EQ(asked, 1) << "a running animation does not ask for the setting";
    view.stopWaiting();
    EXPECT_EQ(view.frameIndex(), 0U);
    EXPECT_EQ(view.timer(), nullptr);
}

TEST_F(ViewTest, WithReducedMotionShowsOneFrameAndAsksAgainAtTheNextStart) {
    reduceMotion = true;
    for (int start = 0; start < 2; ++start) {
        view.startWaiting();
        EXPECT_EQ(view.frameIndex(), 4U);
        EXPECT_EQ(view.timer(), nullptr);
    }
    reduceMotion = false;
    view.startWaiting();
    EXPECT_EQ(view.frameIndex(), 1U);
    EXPECT_NE(view.timer(), nullptr);
}

} // namespace
} // namespace oxlade::test
