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

TEST_P(PaintingTest, CardsHaveASoftEdgeOfOnePointAndTheLogHasNone) {
    const QImage image = picture();
    const QColor ground = groundColor(GetParam()), card = cardColor(GetParam());
    const QColor edge = over(color(SemanticColor::separatorColor, GetParam()), card);
    const auto expectPanel = [&](const QWidget* panel, const QColor& rim, const QColor& fill) {
        const QRect at = frame(panel);
        const int middle = at.center().x();
        EXPECT_EQ(image.pixelColor(middle, at.top() - 1), ground);
        EXPECT_EQ(image.pixelColor(middle, at.top()), rim);
        EXPECT_EQ(image.pixelColor(middle, at.top() + 1), fill);
        EXPECT_EQ(image.pixelColor(middle, at.bottom()), rim);
        EXPECT_EQ(image.pixelColor(at.bottomRight()), ground);
        EXPECT_GE(cornerDepth(image, at, ground), 6) << "of a radius of 12";
        EXPECT_LE(cornerDepth(image, at, ground), 12);
    };
    for (const QWidget* each :
         {widgets().deviceCard, widgets().firmwareCard, widgets().progressCard})
        expectPanel(each, edge, card);
    expectPanel(widgets().logScrollView, logColor(GetParam()), logColor(GetParam()));
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
    log.append("\u2588\u2588\n");
    log.flush();
    program.interface->setColorScheme(other);
    log.append("\u2588\u2588\n");
    log.flush();
    QApplication::processEvents();
    const QImage image = picture();
    ASSERT_EQ(schemeOf(log.palette()), other);
    for (const auto position : {log.content().taken() - 2, log.content().taken() - 5}) {
        QTextCursor cursor{log.document()};
        cursor.setPosition(static_cast<int>(log.content().toView(position)));
        const QPoint at = log.viewport()->mapTo(&content(), log.cursorRect(cursor).topLeft());
        EXPECT_EQ(inkIn(image, {at, QSize{12, 13}}, logColor(other)),
                  log.palette().color(QPalette::Text));
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
    QRect lastColumns = frame(widgets().percentLabel);
    lastColumns.setLeft(lastColumns.right() - 2);
    const QColor card = cardColor(GetParam());
    EXPECT_NE(inkIn(picture(), lastColumns, card), card);
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
    const QColor ground = groundColor(GetParam());
    const QColor ink = inkIn(picture(), frame(widgets().websiteLink), ground);
    const QColor link = over(color(SemanticColor::linkColor, GetParam()), ground);
    EXPECT_NEAR(ink.hslHueF(), link.hslHueF(), 0.02); // most pixels lie on a letter's edge
    EXPECT_GT(contrast(ink, ground), 0.6 * contrast(link, ground));
}

/// The part of a scroll bar in which it shows its thumb.
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
        const bool isVertical = orientation == Qt::Vertical;
        bar.resize(isVertical ? QSize{16, 156} : QSize{156, 16});
        // As if it stood upright.
        const auto thumb = [&] {
            const QRect at = thumbOf(bar);
            return isVertical ? at : QRect{at.y(), at.x(), at.height(), at.width()};
        };
        EXPECT_EQ(bar.style()->pixelMetric(QStyle::PM_ScrollBarExtent), 16);
        bar.setRange(0, 0);
        EXPECT_TRUE(thumb().isEmpty()) << "nothing to scroll";
        bar.setRange(0, 1000);
        bar.setPageStep(10);
        bar.show();
        EXPECT_EQ(thumb().topLeft(), QPoint(5, 5));
        EXPECT_EQ(thumb().right(), 10);
        EXPECT_GE(thumb().height(), 24) << "long enough to grab";
        bar.setValue(1000);
        EXPECT_EQ(thumb().bottom(), 156 - 1 - 5);
    }
}

TEST_P(PaintingTest, AButtonShowsWhetherItIsPressedDisabledOrTheDefault) {
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
    makeReady();
    const QRect install = frame(widgets().installButton);
    EXPECT_EQ(picture().pixelColor(install.left() + 12, install.center().y()),
              accentColor(GetParam()))
        << "the default button";
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
