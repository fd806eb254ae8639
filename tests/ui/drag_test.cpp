// The window is dragged by what is no control, and by nothing else.
#include "tests/ui/program.h"

#include <QApplication>
#include <QTest>

#include <gtest/gtest.h>

namespace oxlade::test {
namespace {

class DragTest : public ::testing::Test {
  protected:
    DragTest() {
        program.start();
        program.window().startMove = [this] { ++moves; };
        QApplication::processEvents();
    }
    WindowContent& content() { return program.content(); }
    /// Moves as the window system reports them to the window. Returns how many drags
    /// were begun.
    int drag(const QPoint& inContent, Qt::MouseButton button = Qt::LeftButton) {
        moves = 0;
        QWindow* window = program.window().windowHandle();
        const QPoint from = content().mapTo(&program.window(), inContent);
        QTest::mousePress(window, button, {}, from);
        for (int step = 4; step <= 24; step += 4) {
            // The toolkit's own simulation says which button is down only to itself.
            const QPointF at = from + QPoint{step, 0};
            QMouseEvent event{QEvent::MouseMove, at,     at + window->position(),
                              Qt::NoButton,      button, Qt::NoModifier};
            QCoreApplication::sendEvent(window, &event);
        }
        QTest::mouseRelease(window, button, {}, from + QPoint{24, 0});
        QApplication::processEvents();
        return moves;
    }
    int dragBy(const QWidget* widget) {
        return drag(widget->mapTo(&content(), widget->rect().center()));
    }
    int moves = 0;
    Program program;
};

TEST_F(DragTest, ByBackgroundCardsLabelsAndFigure) {
    EXPECT_EQ(drag({5, 5}), 1) << "the background";
    EXPECT_EQ(drag({310, 110}), 1) << "a card";
    for (const QWidget* widget :
         {static_cast<QWidget*>(content().girlView), static_cast<QWidget*>(content().titleLabel),
          static_cast<QWidget*>(content().deviceStatusLabel),
          static_cast<QWidget*>(content().deviceStatusDot),
          static_cast<QWidget*>(content().percentLabel),
          static_cast<QWidget*>(content().creditLabel)})
        EXPECT_EQ(dragBy(widget), 1) << widget->objectName().toStdString();
}

TEST_F(DragTest, NeverByAControlNotEvenADisabledOne) {
    ASSERT_FALSE(content().installButton->isEnabled());
    for (const QWidget* widget :
         {static_cast<QWidget*>(content().installButton),
          static_cast<QWidget*>(content().checkButton),
          static_cast<QWidget*>(content().languageControl),
          static_cast<QWidget*>(content().progress), static_cast<QWidget*>(content().logView),
          static_cast<QWidget*>(content().websiteLink)})
        EXPECT_EQ(dragBy(widget), 0) << widget->objectName().toStdString();
    EXPECT_EQ(drag({26, 422}), 0) << "the log's margin";
}

TEST_F(DragTest, ByTheLeftButtonOnly) { EXPECT_EQ(drag({5, 5}, Qt::RightButton), 0); }

} // namespace
} // namespace oxlade::test
