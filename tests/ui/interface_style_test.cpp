// What is painted, pixel by pixel.
#include "tests/ui/program.h"
#include "ui/palette.h"

#include <QLabel>
#include <QScrollBar>
#include <QStyle>

namespace oxlade::test {
namespace {

class PaintingTest : public ProgramTest, public ::testing::WithParamInterface<ColorScheme> {
  protected:
    PaintingTest() {
        program.interface->setColorScheme(GetParam());
        QApplication::processEvents();
    }
    QImage picture() { return pictureOf(content()); }
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
         {widgets().deviceCard, widgets().firmwareCard, widgets().progressCard}) {
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
    const QRect at = frame(widgets().logScrollView);
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
    QtLogView& log = *widgets().logView;
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
    widgets().progress->setDoubleValue(15.5);
    const QImage image = picture();
    const QRect at = frame(widgets().progress);
    const int row = at.center().y();
    const QColor done = markColor(program.window().palette());
    int length = 0;
    for (int x = at.left(); x <= at.right(); ++x) length += image.pixelColor(x, row) == done;
    EXPECT_NEAR(length, 520 * 0.155, 4) << "its end is round";
}

TEST_P(PaintingTest, ThePercentageEndsAtTheRight) {
    program.delegate->setOperation("op.write", 42);
    const QImage image = picture();
    const QRect at = frame(widgets().percentLabel);
    const QColor card = cardColor(GetParam());
    int last = at.left();
    for (int x = at.left(); x <= at.right(); ++x)
        for (int y = at.top(); y <= at.bottom(); ++y)
            if (image.pixelColor(x, y) != card) last = x;
    EXPECT_LE(at.right() - last, 2);
    EXPECT_NE(inkIn(image, at, card), card);
}

TEST_P(PaintingTest, TheLineUnderTheMenuBarHasNoGapAtAnyScale) {
    QMenuBar& bar = program.menuBar();
    for (const double ratio : {1.0, 1.25, 1.5, 1.75, 2.0}) {
        const QImage image = pictureOf(bar, ratio);
        const int row = image.height() - 1;
        for (int x = 1; x < image.width(); ++x)
            ASSERT_EQ(image.pixel(x, row), image.pixel(0, row)) << ratio << ' ' << x;
        EXPECT_NE(image.pixelColor(0, row), groundColor(GetParam())) << ratio;
    }
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
    const QRect at = frame(widgets().websiteLink);
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

/// The rows in which a scroll bar shows its thumb, of which `column` is one column.
QRect thumbOf(QScrollBar& bar) {
    const QImage image = pictureOf(bar, 1, {});
    QRect thumb;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (image.pixelColor(x, y) != QColor{Qt::magenta}) thumb |= QRect{x, y, 1, 1};
    return thumb;
}

TEST_P(PaintingTest, TheThumbOfAScrollBarReachesBothEnds) {
    for (const auto orientation : {Qt::Vertical, Qt::Horizontal}) {
        QScrollBar bar{orientation, &content()};
        bar.resize(bar.sizeHint().expandedTo({16, 16}));
        bar.resize(orientation == Qt::Vertical ? QSize{16, 156} : QSize{156, 16});
        const auto along = [&](const QRect& thumb) {
            return orientation == Qt::Vertical ? std::pair{thumb.top(), thumb.bottom()}
                                               : std::pair{thumb.left(), thumb.right()};
        };
        const auto across = [&](const QRect& thumb) {
            return orientation == Qt::Vertical ? std::pair{thumb.left(), thumb.right()}
                                               : std::pair{thumb.top(), thumb.bottom()};
        };
        EXPECT_EQ(bar.style()->pixelMetric(QStyle::PM_ScrollBarExtent), 16);
        bar.setRange(0, 0);
        EXPECT_TRUE(thumbOf(bar).isEmpty()) << "nothing to scroll";
        bar.setRange(0, 1000);
        bar.setPageStep(10);
        bar.show();
        const QRect first = thumbOf(bar);
        EXPECT_EQ(along(first).first, 5);
        EXPECT_GE(along(first).second - along(first).first + 1, 24) << "long enough to grab";
        EXPECT_EQ(across(first), (std::pair{5, 10}));
        bar.setValue(1000);
        EXPECT_EQ(along(thumbOf(bar)).second, 156 - 1 - 5);
    }
}

TEST_P(PaintingTest, AButtonShowsWhetherItIsPressed) {
    QtButton& button = *widgets().checkButton;
    const QRect at = frame(&button);
    const QPoint inside{at.left() + 12, at.center().y()};
    const QColor before = picture().pixelColor(inside);
    button.setDown(true);
    EXPECT_NE(picture().pixelColor(inside), before);
    button.setDown(false);
    button.setEnabled(false);
    EXPECT_NE(picture().pixelColor(inside), before);
    EXPECT_EQ(picture().pixelColor(at.left() + 2, at.center().y()), cardColor(GetParam()))
        << "drawn inside its frame";
}

TEST_P(PaintingTest, UnderThePointerAControlIsRaisedAndNotFaded) {
    const QColor card = cardColor(GetParam()), ground = groundColor(GetParam());
    const auto strongest = [&](QWidget& widget, const QColor& below) {
        return contrast(inkIn(picture(), frame(&widget), below), below);
    };
    for (QWidget* widget : {static_cast<QWidget*>(widgets().checkButton),
                            static_cast<QWidget*>(widgets().websiteLink),
                            widgets().languageControl->childAt(75, 12)}) {
        const QColor below = widget == widgets().checkButton ? card : ground;
        const double before = strongest(*widget, below);
        const QImage plain = picture();
        widget->setAttribute(Qt::WA_UnderMouse);
        EXPECT_NE(picture(), plain);
        EXPECT_GE(strongest(*widget, below), before);
        widget->setAttribute(Qt::WA_UnderMouse, false);
    }
}

TEST_P(PaintingTest, TheDefaultButtonIsFilledWithTheAccent) {
    makeReady();
    const QRect at = frame(widgets().installButton);
    EXPECT_EQ(picture().pixelColor(at.left() + 12, at.center().y()), accentColor(GetParam()));
}

TEST_P(PaintingTest, TheChosenSegmentIsRaised) {
    const QRect at = frame(widgets().languageControl);
    const auto segment = [&](int i) {
        return picture().pixelColor(at.left() + 6 + 50 * i, at.center().y());
    };
    const QColor chosen = segment(0), other = segment(1);
    EXPECT_NE(chosen, other);
    switchTo(1);
    EXPECT_EQ(segment(0), other);
    EXPECT_EQ(segment(1), chosen);
}

} // namespace
} // namespace oxlade::test
