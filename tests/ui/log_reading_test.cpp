// Reading the log: keys, the mouse, selections, and where its text stands.
#include "ui/log_text_view.h"
#include "ui/text.h"

#include <QApplication>
#include <QClipboard>
#include <QScrollBar>
#include <QTest>
#include <QTextBlock>

#include <gtest/gtest.h>

namespace oxlade::test {
namespace {

class LogReadingTest : public ::testing::Test {
  protected:
    LogReadingTest() {
        window.resize(712, 156);
        log.resize(window.size());
        window.show();
        window.activateWindow();
        log.setFocus();
        QApplication::processEvents();
    }
    void appendLines(int count) {
        for (int i = 0; i < count; ++i) log.append("line " + std::to_string(i) + "\n");
        log.flush();
    }
    /// Much more than one slice takes.
    std::string flood() {
        std::string all;
        for (int i = 0; i < 400'000; ++i) all += "line " + std::to_string(i) + "\n";
        log.append(all);
        EXPECT_TRUE(log.isBehind());
        return all;
    }
    void press(int key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(&log, Qt::Key(key), modifiers);
    }
    std::string copied() {
        QApplication::clipboard()->clear();
        log.copySelection();
        return toUtf8(QApplication::clipboard()->text());
    }
    QScrollBar& bar() { return *log.verticalScrollBar(); }
    /// The place of a text position's row in the log's frame.
    QRect row(qsizetype position) {
        QTextCursor cursor{log.document()};
        cursor.setPosition(int(log.content().toView(position)));
        return log.cursorRect(cursor).translated(log.viewport()->pos());
    }
    QWidget window;
    LogTextView log{&window};
};

TEST_F(LogReadingTest, PageKeysGoOnePageFromWhereTheViewIs) {
    appendLines(300);
    const int end = bar().value(), page = bar().pageStep();
    EXPECT_EQ(end, bar().maximum());
    press(Qt::Key_PageUp);
    EXPECT_EQ(bar().value(), end - page);
    press(Qt::Key_PageUp);
    EXPECT_EQ(bar().value(), end - 2 * page);
    press(Qt::Key_PageDown);
    EXPECT_EQ(bar().value(), end - page);
}

TEST_F(LogReadingTest, ArrowsGoOneRowAndHomeAndEndAllTheWay) {
    appendLines(300);
    const int end = bar().value();
    press(Qt::Key_Up);
    EXPECT_EQ(bar().value(), end - 1);
    press(Qt::Key_Down);
    EXPECT_EQ(bar().value(), end);
    press(Qt::Key_Home);
    EXPECT_EQ(bar().value(), 0);
    press(Qt::Key_End);
    EXPECT_EQ(bar().value(), end);
    press(Qt::Key_Home, Qt::ControlModifier);
    EXPECT_EQ(bar().value(), 0);
}

TEST_F(LogReadingTest, ShiftSelectsFromWhatIsSeen) {
    appendLines(300);
    const std::string first = toUtf8(log.cursorForPosition({0, 0}).block().text());
    press(Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_EQ(copied(), first + "\n");
    press(Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_EQ(copied(), first + "\nl");
    press(Qt::Key_Left, Qt::ShiftModifier);
    EXPECT_EQ(copied(), first + "\n");
}

TEST_F(LogReadingTest, NoKeyBringsTheRestIntoTheView) {
    flood();
    for (const int key : {Qt::Key_Control, Qt::Key_Alt, Qt::Key_A, Qt::Key_Up, Qt::Key_PageUp}) {
        press(key);
        EXPECT_TRUE(log.isBehind()) << key;
    }
    press(Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_TRUE(log.isBehind());
}

TEST_F(LogReadingTest, EverythingCanBeCopiedWhileItIsStillOnItsWay) {
    const std::string all = flood();
    log.selectEverything();
    EXPECT_EQ(copied(), all);
    EXPECT_TRUE(log.isBehind()) << "nothing waited for the view";
}

TEST_F(LogReadingTest, SelectAllHoldsForTheTextOfItsMoment) {
    const std::string all = flood();
    press(Qt::Key_A, Qt::ControlModifier);
    log.append("later\n");
    log.flush();
    EXPECT_EQ(copied(), all);
    EXPECT_EQ(log.textCursor().position(), int(log.content().toView(qsizetype(all.size()))));
    press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(toUtf8(QApplication::clipboard()->text()), all);
}

TEST_F(LogReadingTest, AnyOtherSelectionTakesItsPlace) {
    flood();
    log.selectEverything();
    log.select({5, 9});
    log.flush();
    EXPECT_EQ(copied(), toUtf8(log.string().mid(5, 4)));
    log.selectEverything();
    log.moveCursor(QTextCursor::Start);
    log.append("more");
    log.flush();
    EXPECT_EQ(copied(), "");
}

TEST_F(LogReadingTest, AFloodIsPackedInBlocksOfManyLines) {
    const std::string all = flood();
    log.flush();
    EXPECT_LT(log.blockCount(), 5000);
    EXPECT_EQ(toUtf8(log.toPlainText()) + "\n", all);
    for (QTextBlock block = log.document()->begin(); block.isValid(); block = block.next())
        ASSERT_LE(block.length(), LogText::longestBlock + 1);
    EXPECT_NEAR(log.document()->lineCount(), 400'000, 10) << "the scroll range counts its rows";
}

TEST_F(LogReadingTest, TheThirdClickTakesOneLineAlsoOutOfAPackedBlock) {
    flood();
    log.flush();
    const QPoint at = log.cursorRect(log.cursorForPosition({30, 60})).center();
    ASSERT_TRUE(log.cursorForPosition(at).block().text().contains(QChar{QChar::LineSeparator}));
    QTest::mouseClick(log.viewport(), Qt::LeftButton, {}, at);
    QTest::mouseDClick(log.viewport(), Qt::LeftButton, {}, at);
    QTest::mouseClick(log.viewport(), Qt::LeftButton, {}, at);
    const std::string line = copied();
    EXPECT_TRUE(line.starts_with("line ")) << line;
    EXPECT_TRUE(line.ends_with("\n"));
    EXPECT_EQ(line.find('\n'), line.size() - 1) << line;
}

TEST_F(LogReadingTest, TheEndStandsAsFarFromTheEdgeAsTheStart) {
    appendLines(3);
    const int above = row(0).top();
    EXPECT_GE(above, 8);
    EXPECT_LE(above, 12);
    EXPECT_EQ(row(0).left(), 10);
    appendLines(100);
    const int below = log.height() - row(log.string().size() - 2).bottom() - 1;
    EXPECT_LE(std::abs(below - above), 2) << above << ' ' << below;
    log.append("without an end");
    log.flush();
    EXPECT_EQ(log.height() - row(log.string().size()).bottom() - 1, below);
}

TEST_F(LogReadingTest, TheViewReachesTheLowerEdge) {
    EXPECT_EQ(log.viewport()->geometry().bottom(), log.rect().bottom());
}

TEST_F(LogReadingTest, AFloodComesInByManyTurnsOfTheEventLoop) {
    flood();
    int turns = 0;
    for (; log.isBehind(); ++turns) QApplication::processEvents();
    EXPECT_GE(turns, 3);
}

} // namespace
} // namespace oxlade::test
