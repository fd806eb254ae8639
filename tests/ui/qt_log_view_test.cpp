// The log: what was appended, as it was appended, at its end; selecting, copying, scrolling.
#include "i18n/string_table.h"
#include "tests/testing/eventually.h"
#include "ui/qt_log_view.h"
#include "ui/text.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QScrollBar>
#include <QTest>
#include <QTextBlock>
#include <QTimer>
#include <QWheelEvent>

#include <cmath>
#include <gtest/gtest.h>
#include <random>

namespace oxlade::test {
namespace {

class LogTest : public ::testing::Test {
  protected:
    LogTest() {
        window.resize(712, 156);
        log.resize(window.size());
        window.show();
        window.activateWindow();
        log.setFocus();
        QApplication::processEvents();
    }
    /// Appends and brings it into the view.
    void append(std::string_view text) {
        log.append(text);
        log.flush();
    }
    void appendLines(int count) {
        for (int i = 0; i < count; ++i) log.append("line " + std::to_string(i) + "\n");
        log.flush();
    }
    /// Appends much more than one slice takes.
    std::string flood() {
        std::string all;
        for (int i = 0; i < 400'000; ++i) all += "line " + std::to_string(i) + "\n";
        log.append(all);
        EXPECT_TRUE(log.isBehind());
        return all;
    }
    void press(int key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(&log, static_cast<Qt::Key>(key), modifiers);
    }
    std::string copied() {
        QApplication::clipboard()->clear();
        log.copySelection();
        return toUtf8(QApplication::clipboard()->text());
    }
    std::string allCopied() {
        log.selectEverything();
        return copied();
    }
    /// Selects in positions of the view.
    void selectInView(int from, int to) {
        QTextCursor cursor = log.textCursor();
        cursor.setPosition(from);
        cursor.setPosition(to, QTextCursor::KeepAnchor);
        log.setTextCursor(cursor);
    }
    bool endIsVisible() {
        QApplication::processEvents();
        QTextCursor end{log.document()};
        end.movePosition(QTextCursor::End);
        const QRect line = log.cursorRect(end);
        return line.top() >= 0 && line.bottom() <= log.viewport()->height();
    }
    QScrollBar& bar() { return *log.verticalScrollBar(); }
    /// The place of a text position's row in the log's frame.
    QRect row(qsizetype position) {
        QTextCursor cursor{log.document()};
        cursor.setPosition(static_cast<int>(log.content().toView(position)));
        return log.cursorRect(cursor).translated(log.viewport()->pos());
    }
    void expectShortBlocks() {
        for (QTextBlock block = log.document()->begin(); block.isValid(); block = block.next())
            ASSERT_LE(block.text().size(), LogText::longestBlock);
    }
    QWidget window;
    QtLogView log{&window};
};

TEST_F(LogTest, AddsNoLineEndings) {
    append("Erase 4");
    append("2%\n");
    EXPECT_EQ(toUtf8(log.toPlainText()), "Erase 42%") << "no empty line at the end";
    append("Erase 43%\n");
    EXPECT_EQ(toUtf8(log.toPlainText()), "Erase 42%\nErase 43%");
    EXPECT_EQ(toUtf8(log.string()), "Erase 42%\nErase 43%\n");
    QtLogView fresh{nullptr};
    fresh.append("appended before");
    EXPECT_EQ(toUtf8(fresh.toPlainText()), "appended before") << "the first frame";
}

TEST_F(LogTest, EveryAppendScrollsToTheEnd) {
    appendLines(200);
    EXPECT_TRUE(endIsVisible());
    log.verticalScrollBar()->setValue(0);
    EXPECT_FALSE(endIsVisible());
    append("more");
    EXPECT_TRUE(endIsVisible());
    for (int i = 0; i < 30; ++i) log.append(std::string(1000, 'x') + "\n");
    append(std::string(9000, 'y'));
    EXPECT_TRUE(endIsVisible()) << "behind wrapped lines";
    for (int i = 0; i < 50; ++i) log.append("and many words that go on and on ");
    log.flush();
    EXPECT_TRUE(endIsVisible());
}

TEST_F(LogTest, AFloodArrivesWholeByManyTurnsOfTheEventLoopInPackedBlocks) {
    const std::string all = flood();
    int turns = 0;
    EXPECT_TRUE(eventually([&] { return ++turns, !log.isBehind(); },
                           [] { QApplication::processEvents(); }));
    EXPECT_GE(turns, 3);
    EXPECT_TRUE(endIsVisible());
    EXPECT_LT(log.blockCount(), 5000);
    EXPECT_TRUE(toUtf8(log.toPlainText()) + "\n" == all);
    expectShortBlocks();
    EXPECT_NEAR(log.document()->lineCount(), 400'000, 10) << "the scroll range counts its rows";
}

TEST_F(LogTest, OnlyTheVisibleEndOfALongTextIsLaidOut) {
    for (int slice = 0; slice < 10; ++slice) appendLines(1000);
    int rows = 0;
    for (auto block = log.document()->begin(); block.isValid(); block = block.next())
        rows += block.layout()->lineCount();
    EXPECT_LT(rows, 1000);
}

TEST_F(LogTest, ASelectionDoesNotGrow) {
    append("one two three");
    selectInView(4, 7);
    append(" four\nfive");
    EXPECT_EQ(copied(), "two");
    const int end = static_cast<int>(log.string().size());
    selectInView(end, end - 4); // backwards from the end
    append(" six\n");
    EXPECT_EQ(copied(), "five");
    EXPECT_EQ(log.textCursor().position(), end - 4);
    selectInView(end + 4, end + 4);
    append("\nseven");
    EXPECT_EQ(copied(), "");
}

/// All characters of the first plane; of the others, which Qt treats alike, some of each block.
QString everyCharacter() {
    QString all;
    for (char32_t c = 0; c <= QChar::LastValidCodePoint; c += c < 0x10000 ? 1 : 61) {
        if (!QChar::isSurrogate(c)) all += QString::fromUcs4(&c, 1);
        if (c % 128 == 0) all += u'\n';
    }
    return all;
}

TEST_F(LogTest, AnyPartOfAnyMixtureIsCopiedAsItWasAppended) {
    const QString odd[] = {u"word "_qs,       u"\r"_qs,     u"\n"_qs,     u"\r\n"_qs,
                           u"\u2028"_qs,      u"\u2029"_qs, u"\uFDD0"_qs, u"\uFDD1"_qs,
                           QString(1, u'\0'), u"\uFFFC"_qs, u"\u0301"_qs, u"\U0001F600"_qs,
                           u"\u202E"_qs,      u"\u2067"_qs, u"\t"_qs,     u"\u00A0"_qs,
                           u"<b>&amp;"_qs};
    std::mt19937 random{16}; // NOLINT: the same mixtures in each run
    QString all = everyCharacter();
    log.append(toUtf8(all));
    for (int piece = 0; piece < 300; ++piece) {
        QString text;
        // Sometimes so much at once that the view takes it as a flood.
        for (auto parts = piece % 50 == 49 ? 5000U : random() % 40; parts > 0; --parts)
            text += odd[random() % std::size(odd)];
        all += text;
        log.append(toUtf8(text));
        if (random() % 4 == 0) log.flush();
    }
    all += u'.'; // a line ending at the very end waits for what comes after it
    append(".");
    ASSERT_TRUE(allCopied() == toUtf8(all));
    for (int round = 0; round < 100; ++round) {
        auto from = static_cast<qsizetype>(random() % static_cast<std::size_t>(all.size()));
        auto to = std::min(all.size(), from + static_cast<qsizetype>(random() % 3000) + 1);
        if (all[from].isLowSurrogate()) --from;
        if (to < all.size() && all[to].isLowSurrogate()) ++to;
        log.select({from, to});
        ASSERT_TRUE(copied() == toUtf8(all.mid(from, to - from))) << from << " to " << to;
    }
}

TEST_F(LogTest, LongLinesAreBrokenInTheViewAlone) {
    std::string line(10'000, 'x');
    append(line);
    EXPECT_EQ(log.blockCount(), 3);
    EXPECT_EQ(allCopied(), line);
    selectInView(3990, 4011);
    EXPECT_EQ(copied(), std::string(20, 'x')) << "one of the positions is the break";
    for (int i = 0; i < 3000; ++i) {
        log.append(std::to_string(i) + ' ');
        line += std::to_string(i) + ' ';
    }
    log.flush();
    expectShortBlocks();
    EXPECT_EQ(allCopied(), line);
}

TEST_F(LogTest, CannotBeEditedAndCopyingNothingKeepsTheClipboard) {
    log.append("text");
    QApplication::clipboard()->setText(QStringLiteral("mine"));
    log.copySelection();
    EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("mine"));
    QTest::keyClicks(&log, QStringLiteral("abc"));
    press(Qt::Key_Backspace);
    press(Qt::Key_V, Qt::ControlModifier);
    press(Qt::Key_X, Qt::ControlModifier);
    EXPECT_EQ(toUtf8(log.toPlainText()), "text");
}

TEST_F(LogTest, TheWheelNeverZooms) {
    const QFont before = log.font();
    const QPointF at = log.viewport()->rect().center();
    for (const Qt::KeyboardModifier modifier : {Qt::NoModifier, Qt::ControlModifier}) {
        QWheelEvent event{at,
                          log.viewport()->mapToGlobal(at),
                          {},
                          {0, 480},
                          Qt::NoButton,
                          modifier,
                          Qt::NoScrollPhase,
                          false};
        QCoreApplication::sendEvent(log.viewport(), &event);
        EXPECT_EQ(log.font(), before);
    }
}

TEST_F(LogTest, ARightClickOffersCopyAndSelectAllInTheWindowsLanguage) {
    append("text");
    const auto items = [](QWidget* widget) {
        if (auto* menu = QApplication::activePopupWidget()) menu->close();
        const QPoint at = widget->rect().center();
        QContextMenuEvent event{QContextMenuEvent::Mouse, at, widget->mapToGlobal(at)};
        QCoreApplication::sendEvent(widget, &event);
        auto* menu = QApplication::activePopupWidget();
        return menu != nullptr ? menu->actions() : QList<QAction*>{};
    };
    EXPECT_TRUE(items(&bar()).isEmpty()) << "Qt's own would not be in the window's language";
    CurrentLanguage = 1;
    auto actions = items(log.viewport());
    CurrentLanguage = 0;
    ASSERT_EQ(actions.size(), 2);
    EXPECT_EQ(toUtf8(actions[0]->text()), "Скопировать");
    EXPECT_EQ(toUtf8(actions[1]->text()), "Выбрать все");
    EXPECT_FALSE(actions[0]->isEnabled()) << "nothing is selected";
    actions[1]->trigger();
    actions = items(log.viewport());
    ASSERT_EQ(actions.size(), 2);
    EXPECT_TRUE(actions[0]->isEnabled());
    QApplication::clipboard()->clear();
    actions[0]->trigger();
    EXPECT_EQ(toUtf8(QApplication::clipboard()->text()), "text");
    QApplication::activePopupWidget()->close();
}

TEST_F(LogTest, NoCaretIsPainted) {
    append("text");
    const QImage focused = log.grab().toImage();
    log.clearFocus();
    EXPECT_EQ(log.grab().toImage(), focused);
}

TEST_F(LogTest, KeysScrollByRowsAndPages) {
    appendLines(300);
    const int end = bar().maximum(), page = bar().pageStep();
    const std::tuple<int, Qt::KeyboardModifier, int> steps[] = {
        {Qt::Key_PageUp, Qt::NoModifier, end - page},
        {Qt::Key_PageUp, Qt::NoModifier, end - 2 * page},
        {Qt::Key_PageDown, Qt::NoModifier, end - page},
        {Qt::Key_Up, Qt::NoModifier, end - page - 1},
        {Qt::Key_Down, Qt::NoModifier, end - page},
        {Qt::Key_Home, Qt::NoModifier, 0},
        {Qt::Key_End, Qt::NoModifier, end},
        {Qt::Key_Home, Qt::ControlModifier, 0}};
    for (const auto& [key, modifier, expected] : steps) {
        press(key, modifier);
        EXPECT_EQ(bar().value(), expected) << key;
    }
}

TEST_F(LogTest, ShiftSelectsFromTheFirstVisibleLine) {
    appendLines(300);
    const std::string first = toUtf8(log.cursorForPosition({0, 0}).block().text());
    press(Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_EQ(copied(), first + "\n");
    press(Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_EQ(copied(), first + "\nl");
}

TEST_F(LogTest, SelectingToTheEndIncludesTheLastLineFeedAndDoesNotGrow) {
    append("one\ntwo\n");
    log.select({4, 4});
    const auto modifiers = Qt::ControlModifier | Qt::ShiftModifier;
    press(Qt::Key_End, modifiers);
    EXPECT_EQ(copied(), "two\n");
    append("three\n");
    EXPECT_EQ(copied(), "two\n");
    press(Qt::Key_End, modifiers);
    EXPECT_EQ(copied(), "two\nthree\n");
    press(Qt::Key_Left, Qt::ShiftModifier);
    EXPECT_EQ(copied(), "two\nthre");
}

TEST_F(LogTest, NoKeyBringsTheRestIntoTheView) {
    flood();
    for (const int key : {Qt::Key_Control, Qt::Key_Alt, Qt::Key_A, Qt::Key_Up, Qt::Key_PageUp}) {
        press(key);
        EXPECT_TRUE(log.isBehind()) << key;
    }
    press(Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_TRUE(log.isBehind());
}

TEST_F(LogTest, SelectAllTakesTheTextOfItsMoment) {
    const std::string all = flood();
    press(Qt::Key_A, Qt::ControlModifier);
    EXPECT_TRUE(copied() == all);
    EXPECT_TRUE(log.isBehind()) << "waited for the view";
    append("later\n");
    EXPECT_TRUE(copied() == all);
    EXPECT_EQ(log.textCursor().position(),
              log.content().toView(static_cast<qsizetype>(all.size())));
    QApplication::clipboard()->clear();
    press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_TRUE(toUtf8(QApplication::clipboard()->text()) == all);
}

TEST_F(LogTest, AnyOtherSelectionReplacesSelectAll) {
    flood();
    log.selectEverything();
    log.select({5, 9});
    log.flush();
    EXPECT_EQ(copied(), toUtf8(log.string().mid(5, 4)));
    log.selectEverything();
    log.moveCursor(QTextCursor::Start);
    append("more");
    EXPECT_EQ(copied(), "");
}

TEST_F(LogTest, AThirdClickSelectsOneLineAlsoInAPackedBlock) {
    flood();
    log.flush();
    const QPoint at = log.cursorRect(log.cursorForPosition({30, 60})).center();
    ASSERT_TRUE(log.cursorForPosition(at).block().text().contains(QChar{QChar::LineSeparator}));
    QTest::mouseClick(log.viewport(), Qt::LeftButton, {}, at);
    QTest::mouseDClick(log.viewport(), Qt::LeftButton, {}, at);
    QTest::mouseClick(log.viewport(), Qt::LeftButton, {}, at);
    const std::string line = copied();
    EXPECT_TRUE(line.starts_with("line ")) << line;
    EXPECT_EQ(line.find('\n'), line.size() - 1) << line;
}

/// The rows that are selected, as they are painted: from their first to beyond their last pixel.
std::vector<std::pair<int, int>> paintedRows(const QImage& image, const QColor& fill) {
    std::vector<std::pair<int, int>> rows;
    for (int y = 0; y < image.height(); ++y) {
        bool isSelected = false;
        for (int x = 10; x < 100; ++x) isSelected = isSelected || image.pixelColor(x, y) == fill;
        if (!isSelected) continue;
        if (rows.empty() || rows.back().second != y) rows.emplace_back(y, y);
        rows.back().second = y + 1;
    }
    return rows;
}

TEST_F(LogTest, WholeRowsFillTheSpaceWithinTheInsetAtTheStartTheEndAndInBetween) {
    appendLines(50);
    append("\u4F60\u0E4A\U0001F600 of other fonts\nwithout an end");
    log.selectEverything();
    const QColor fill = log.palette().color(QPalette::Highlight);
    using Rows = std::vector<std::pair<int, int>>;
    for (const int scrolled : {0, 20, bar().maximum()}) {
        bar().setValue(scrolled);
        EXPECT_EQ(paintedRows(log.grab().toImage(), fill), (Rows{{10, 146}})) << scrolled;
    }
    const QRect last = row(log.string().size()), before = row(log.string().indexOf(u"49"));
    EXPECT_EQ(last.bottom() - before.bottom(), 2 * rowPitch) << "other fonts shift no row";
    EXPECT_EQ(row(log.string().lastIndexOf(u'\n') + 1).left(), 10);
    log.select({0, 0});
    EXPECT_EQ(paintedRows(log.grab().toImage(), fill), Rows{});
}

TEST_F(LogTest, AClickBetweenTwoRowsHitsALetterOfTheNearer) {
    append("first row\nsecond row\n");
    for (const int y : {10, 26, 27, 43}) {
        const QPoint at = QPoint{10 + 40, y} - log.viewport()->pos();
        QTest::mouseClick(log.viewport(), Qt::LeftButton, {}, at);
        const int column = log.textCursor().positionInBlock();
        EXPECT_TRUE(column > 3 && column < 8) << y << ' ' << column;
        EXPECT_EQ(log.textCursor().blockNumber(), y < 27 ? 0 : 1) << y;
    }
}

} // namespace
} // namespace oxlade::test
