// What is really painted, pixel by pixel.
#include "tests/ui/program.h"
#include "ui/control_drawing.h"
#include "ui/fonts.h"
#include "ui/palette.h"
#include "ui/slim_scroll_bar.h"
#include "ui/text_drawing.h"

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionSlider>

#include <gtest/gtest.h>

namespace oxlade::test {
namespace {

QImage pictureOf(QWidget& widget, double ratio = 1) {
    QImage image{(QSizeF{widget.size()} * ratio).toSize(), QImage::Format_RGB32};
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::magenta);
    widget.render(&image);
    return image;
}

class PaintingTest : public ::testing::TestWithParam<ColorScheme> {
  protected:
    PaintingTest() {
        program.interface->setColorScheme(GetParam());
        program.start();
        QApplication::processEvents();
    }
    QImage picture() { return pictureOf(content()); }
    WindowContent& content() { return program.content(); }
    QRect frame(const QWidget* widget) {
        return {widget->mapTo(&content(), QPoint{}), widget->size()};
    }
    Program program;
};
INSTANTIATE_TEST_SUITE_P(InBothAppearances, PaintingTest,
                         ::testing::Values(ColorScheme::light, ColorScheme::dark),
                         [](const auto& instance) {
                             return instance.param == ColorScheme::dark ? "Dark" : "Light";
                         });

/// How many pixels down the left edge the ground shows in the rounded corner.
int cornerDepth(const QImage& image, const QRect& frame, const QColor& ground) {
    int depth = 0;
    while (image.pixelColor(frame.left(), frame.top() + depth) == ground) ++depth;
    return depth;
}

TEST_P(PaintingTest, CardsHaveASoftEdgeOfOnePointAndRoundCorners) {
    const QImage image = picture();
    const QColor ground = groundColor(GetParam()), card = cardColor(GetParam());
    const QColor edge = over(color(SemanticColor::separatorColor, GetParam()), card);
    for (const QWidget* widget :
         {content().deviceCard, content().firmwareCard, content().progressCard}) {
        const QRect at = frame(widget);
        const int middle = at.center().x();
        EXPECT_EQ(image.pixelColor(middle, at.top() - 1), ground);
        EXPECT_EQ(image.pixelColor(middle, at.top()), edge);
        EXPECT_EQ(image.pixelColor(middle, at.top() + 1), card);
        EXPECT_EQ(image.pixelColor(middle, at.bottom()), edge);
        EXPECT_EQ(image.pixelColor(at.topLeft()), ground);
        EXPECT_EQ(image.pixelColor(at.bottomRight()), ground);
        EXPECT_GE(cornerDepth(image, at, ground), 6) << "of a radius of 12";
        EXPECT_LE(cornerDepth(image, at, ground), 12);
    }
}

TEST_P(PaintingTest, TheLogHasRoundCornersAndNoEdge) {
    const QImage image = picture();
    const QRect at = frame(content().logScrollView);
    const QColor ground = groundColor(GetParam()), log = logColor(GetParam());
    EXPECT_EQ(image.pixelColor(at.topLeft()), ground);
    EXPECT_EQ(image.pixelColor(at.bottomRight()), ground);
    EXPECT_EQ(image.pixelColor(at.center().x(), at.top()), log);
    EXPECT_EQ(image.pixelColor(at.center().x(), at.bottom()), log);
    EXPECT_GE(cornerDepth(image, at, ground), 6);
    EXPECT_LE(cornerDepth(image, at, ground), 12);
}

/// The colour furthest from the ground in this part of the picture.
QColor inkIn(const QImage& image, const QRect& part, const QColor& ground) {
    QColor ink = ground;
    for (int y = part.top(); y <= part.bottom(); ++y)
        for (int x = part.left(); x <= part.right(); ++x)
            if (contrast(image.pixelColor(x, y), ground) > contrast(ink, ground))
                ink = image.pixelColor(x, y);
    return ink;
}

TEST_P(PaintingTest, OldAndNewLogTextTakeTheNewColour) {
    const ColorScheme other =
        GetParam() == ColorScheme::dark ? ColorScheme::light : ColorScheme::dark;
    LogTextView& log = *content().logView;
    // Full blocks, so that there are pixels of nothing but ink.
    log.append("\u2588\u2588 old\n");
    log.flush();
    const auto oldPosition = log.content().taken() - 6;
    program.interface->setColorScheme(other);
    log.append("\u2588\u2588 new\n");
    log.flush();
    QApplication::processEvents();
    const auto newPosition = log.content().taken() - 6;
    const QImage image = picture();
    const QColor ground = logColor(other);
    const QColor text = log.palette().color(QPalette::Text);
    ASSERT_EQ(schemeOf(log.palette()), other);
    for (const auto position : {oldPosition, newPosition}) {
        QTextCursor cursor{log.document()};
        cursor.setPosition(int(log.content().toView(position)));
        const QPoint at = log.viewport()->mapTo(&content(), log.cursorRect(cursor).topLeft());
        EXPECT_EQ(inkIn(image, {at, QSize{12, 13}}, ground), text);
    }
}

TEST_P(PaintingTest, TheBarIsAsLongAsItsValue) {
    content().progress->setDoubleValue(15.5);
    const QImage image = picture();
    const QRect at = frame(content().progress);
    const int row = at.center().y();
    const QColor done = barColors(program.window().palette()).done;
    int length = 0;
    for (int x = at.left(); x <= at.right(); ++x) length += image.pixelColor(x, row) == done;
    EXPECT_NEAR(length, 520 * 0.155, 4) << "its end is round";
}

TEST_P(PaintingTest, ThePercentageEndsAtTheRight) {
    program.delegate->setOperation("op.write", 42);
    const QImage image = picture();
    const QRect at = frame(content().percentLabel);
    const QColor card = cardColor(GetParam());
    int last = at.left();
    for (int x = at.left(); x <= at.right(); ++x)
        for (int y = at.top(); y <= at.bottom(); ++y)
            if (image.pixelColor(x, y) != card) last = x;
    EXPECT_LE(at.right() - last, 2);
    EXPECT_GE(inkIn(image, at, card) == card ? 0 : 1, 1);
}

TEST_P(PaintingTest, LabelsCanBeReadOnWhatTheyStandOn) {
    const QImage image = picture();
    for (const QWidget* label : {static_cast<QWidget*>(content().titleLabel),
                                 static_cast<QWidget*>(content().deviceStatusLabel)}) {
        const QRect at = frame(label);
        const QColor ground = image.pixelColor(at.right(), at.top());
        EXPECT_GE(contrast(inkIn(image, at, ground), ground), 4.5);
    }
}

TEST_P(PaintingTest, TheLineUnderTheMenuBarHasNoGapAtAnyScale) {
    QMenuBar& bar = *program.window().menu().bar();
    for (const double ratio : {1.0, 1.25, 1.5, 1.75, 2.0}) {
        const QImage image = pictureOf(bar, ratio);
        const int row = image.height() - 1;
        for (int x = 1; x < image.width(); ++x)
            ASSERT_EQ(image.pixel(x, row), image.pixel(0, row)) << ratio << ' ' << x;
        EXPECT_NE(image.pixelColor(0, row), groundColor(GetParam())) << ratio;
    }
}

/// The column where the sign's ink begins.
int signStart(const QString& text, const QFont& font) {
    QImage image{100, 20, QImage::Format_RGB32};
    image.fill(Qt::white);
    QPainter painter{&image};
    painter.setFont(font);
    drawSteadyLine(painter, {0, 0, 100, 20}, text, Qt::AlignLeft);
    painter.end();
    const int from = steadyWidth(text.chopped(1), QFontMetrics{font});
    for (int x = from; x < image.width(); ++x)
        for (int y = 0; y < image.height(); ++y)
            if (image.pixelColor(x, y).lightness() < 128) return x;
    return -1;
}

TEST(SteadyLine, TheSignStandsStillWhateverTheDigits) {
    for (const char* family : {"Inter", "Noto Sans", "DejaVu Sans"}) {
        QFont font{QLatin1String{family}};
        font.setPixelSize(13);
        const int ones = signStart(QStringLiteral("11%"), font);
        EXPECT_GT(ones, 0);
        EXPECT_EQ(ones, signStart(QStringLiteral("88%"), font)) << family;
    }
}

TEST(SlimScrollBar, ItsThumbReachesBothEndsAndStandsOffTheEdge) {
    QWidget window;
    SlimScrollBar bar{&window};
    bar.setGeometry(0, 0, bar.sizeHint().width(), 156);
    bar.setRange(0, 1000);
    bar.setPageStep(10);
    bar.setValue(0);
    EXPECT_EQ(bar.thumb().top(), 5);
    EXPECT_GE(bar.thumb().height(), 24) << "long enough to be caught";
    bar.setValue(1000);
    EXPECT_EQ(bar.thumb().bottom(), 156 - 1 - 5);
    EXPECT_EQ(bar.width() - 1 - bar.thumb().right(), 5);
}

TEST_P(PaintingTest, TheLinkHasTheColourOfLinks) {
    const QImage image = picture();
    const QColor ground = groundColor(GetParam());
    const QColor link = over(color(SemanticColor::linkColor, GetParam()), ground);
    const auto distance = [&](const QColor& c) {
        return std::abs(c.red() - ground.red()) + std::abs(c.green() - ground.green()) +
               std::abs(c.blue() - ground.blue());
    };
    QColor clearest = ground; // of all pixels, most of which lie on a letter's edge
    const QRect at = frame(content().websiteLink);
    for (int y = at.top(); y <= at.bottom(); ++y)
        for (int x = at.left(); x <= at.right(); ++x)
            if (const QColor c = image.pixelColor(x, y); distance(c) > distance(clearest))
                clearest = c;
    const double share = double(distance(clearest)) / distance(link);
    EXPECT_GT(share, 0.6);
    EXPECT_NEAR(clearest.red(), ground.red() + share * (link.red() - ground.red()), 6);
    EXPECT_NEAR(clearest.green(), ground.green() + share * (link.green() - ground.green()), 6);
    EXPECT_NEAR(clearest.blue(), ground.blue() + share * (link.blue() - ground.blue()), 6);
}

TEST(SlimScrollBar, ShowsNothingWhereThereIsNothingToScroll) {
    QWidget window;
    SlimScrollBar bar{&window};
    bar.setGeometry(0, 0, 16, 156);
    const auto painted = [&] {
        QImage image{bar.size(), QImage::Format_RGB32};
        image.fill(Qt::magenta);
        bar.render(&image, {}, {}, {});
        return image.pixelColor(8, 80) != QColor{Qt::magenta};
    };
    bar.setRange(0, 0);
    EXPECT_FALSE(painted());
    bar.setRange(0, 3);
    bar.setPageStep(10);
    EXPECT_TRUE(painted());
}

} // namespace
} // namespace oxlade::test
