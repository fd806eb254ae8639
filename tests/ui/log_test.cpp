// The log: everything that was added, as it was added, at its end.
#include "ui/log_text_view.h"
#include "ui/text.h"

#include <QApplication>
#include <QClipboard>
#include <QElapsedTimer>
#include <QMimeData>
#include <QScrollBar>
#include <QTest>
#include <QTextBlock>
#include <QTimer>
#include <QWheelEvent>

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
        QApplication::processEvents();
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
    void select(int from, int to) {
        QTextCursor cursor = log.textCursor();
        cursor.setPosition(from);
        cursor.setPosition(to, QTextCursor::KeepAnchor);
        log.setTextCursor(cursor);
    }
    /// Whether the last line can be seen whole.
    bool endIsVisible() {
        QApplication::processEvents();
        QTextCursor end{log.document()};
        end.movePosition(QTextCursor::End);
        const QRect line = log.cursorRect(end);
        return line.top() >= 0 && line.bottom() <= log.viewport()->height();
    }
    void appendLines(int count) {
        for (int i = 0; i < count; ++i) log.append("line " + std::to_string(i) + "\n");
        log.flush();
    }
    QWidget window;
    LogTextView log{&window};
};

TEST_F(LogTest, StartsEmpty) {
    EXPECT_TRUE(log.string().isEmpty());
    EXPECT_TRUE(log.toPlainText().isEmpty());
}

TEST_F(LogTest, AnEmptyTextChangesNothingAndDoesNotScroll) {
    appendLines(100);
    log.verticalScrollBar()->setValue(3);
    log.append("");
    log.flush();
    EXPECT_EQ(log.verticalScrollBar()->value(), 3);
    EXPECT_EQ(log.blockCount(), 100);
}

TEST_F(LogTest, PiecesWithoutALineEndingMakeOneLine) {
    log.append("Erase 4");
    log.append("2%\n");
    log.flush();
    EXPECT_EQ(log.document()->firstBlock().text(), QStringLiteral("Erase 42%"));
    EXPECT_EQ(log.blockCount(), 1);
    log.append("Erase 43%\n");
    log.flush();
    EXPECT_EQ(log.blockCount(), 2);
}

TEST_F(LogTest, AddsNoLineEndingOfItsOwn) {
    log.append("abc");
    EXPECT_EQ(log.blockCount(), 1);
    EXPECT_EQ(allCopied(), "abc");
}

TEST_F(LogTest, TheFirstPieceIsInTheViewAtOnce) {
    log.append("Oxlade started.\n");
    EXPECT_FALSE(log.isBehind());
    EXPECT_EQ(log.toPlainText(), QStringLiteral("Oxlade started."));
    EXPECT_EQ(log.string(), QStringLiteral("Oxlade started.\n"));
}

TEST_F(LogTest, TheFirstFrameShowsAllThatCameBeforeIt) {
    LogTextView fresh{nullptr};
    fresh.append("Oxlade started.\n");
    fresh.append("Firmware selected.\n");
    EXPECT_FALSE(fresh.isBehind());
    EXPECT_EQ(fresh.toPlainText(), QStringLiteral("Oxlade started.\nFirmware selected."));
}

TEST_F(LogTest, EveryAppendScrollsToTheEndWhereverTheUserWas) {
    appendLines(200);
    EXPECT_TRUE(endIsVisible());
    log.verticalScrollBar()->setValue(0);
    EXPECT_FALSE(endIsVisible());
    log.append("more");
    log.flush();
    EXPECT_TRUE(endIsVisible());
}

TEST_F(LogTest, TheEndIsReachedBehindLinesThatAreWrapped) {
    for (int i = 0; i < 30; ++i) log.append(std::string(1000, 'x') + "\n");
    log.flush();
    EXPECT_TRUE(endIsVisible());
    log.append(std::string(9000, 'y'));
    log.flush();
    EXPECT_TRUE(endIsVisible());
    for (int i = 0; i < 50; ++i) log.append("and many words that go on and on ");
    log.flush();
    EXPECT_TRUE(endIsVisible());
}

TEST_F(LogTest, AFloodArrivesWholeWithoutHelp) {
    std::string expected;
    for (int i = 0; i < 20'000; ++i) {
        const std::string line = "line " + std::to_string(i) + "\n";
        expected += line;
        log.append(line);
    }
    QElapsedTimer deadline;
    deadline.start();
    while (log.isBehind() && !deadline.hasExpired(30'000)) QApplication::processEvents();
    EXPECT_EQ(toUtf8(log.toPlainText()) + "\n", expected);
    EXPECT_TRUE(endIsVisible());
}

TEST_F(LogTest, ASelectionStaysWhatItWas) {
    log.append("one two three");
    log.flush();
    select(4, 7);
    log.append(" four\nfive");
    log.flush();
    EXPECT_EQ(copied(), "two");
}

TEST_F(LogTest, ASelectionThatReachesTheEndDoesNotGrow) {
    log.append("one two");
    log.flush();
    select(4, 7);
    log.append(" three");
    log.flush();
    EXPECT_EQ(copied(), "two");
    select(13, 8); // backwards
    log.append(" four\n");
    log.flush();
    EXPECT_EQ(copied(), "three");
    EXPECT_EQ(log.textCursor().position(), 8);
    EXPECT_EQ(log.textCursor().anchor(), 13);
}

TEST_F(LogTest, TheCaretAtTheEndSelectsNothingOfWhatIsAdded) {
    log.append("one");
    log.flush();
    select(3, 3);
    log.append(" two");
    log.flush();
    EXPECT_FALSE(log.textCursor().hasSelection());
    EXPECT_EQ(log.textCursor().position(), 3);
}

TEST_F(LogTest, WhatIsCopiedIsWhatWasAppended) {
    using namespace std::string_literals;
    const std::string odd =
        "nul \0 bell \a escape \x1b[1m backspace \b form\f\v"s +
        "\ttab \u00A0 no-break \u202E override \u2028 line \u2029 paragraph \uFEFF mark " +
        "\uFDD0 \uFDD1 \U0001F600 \u0301 <b>&amp;</b>\r\n\rend\n\n";
    log.append(odd);
    EXPECT_EQ(allCopied(), odd);
}

TEST_F(LogTest, PartsOfOddTextAreCopiedRightToo) {
    const QString odd = QStringLiteral("a\r\nb\u2029c\uFDD0d\u00A0e\nf");
    log.append(toUtf8(odd));
    log.flush();
    for (int from = 0; from < odd.size(); ++from) {
        select(from, int(odd.size()));
        EXPECT_EQ(copied(), toUtf8(odd.mid(from)));
    }
}

TEST_F(LogTest, EveryCharacterThatThereIsIsCopiedAsItWasAppended) {
    QString all;
    for (char32_t c = 0; c <= QChar::LastValidCodePoint; ++c) {
        if (QChar::isSurrogate(c)) continue;
        all += QString::fromUcs4(&c, 1);
        if (c % 128 == 0) all += u'\n';
    }
    for (qsizetype at = 0; at < all.size();) { // cut between characters only
        qsizetype length = std::min<qsizetype>(100'003, all.size() - at);
        if (at + length < all.size() && all[at + length].isLowSurrogate()) ++length;
        log.append(toUtf8(all.mid(at, length)));
        at += length;
    }
    log.flush();
    EXPECT_TRUE(allCopied() == toUtf8(all));
}

TEST_F(LogTest, AnyMixtureCutAnywhereIsCopiedAsItWasAppendedAndSoIsAnyPartOfIt) {
    const QString odd[] = {
        QStringLiteral("word "),  QStringLiteral("\r"),     QStringLiteral("\n"),
        QStringLiteral("\r\n"),   QStringLiteral("\u2028"), QStringLiteral("\u2029"),
        QStringLiteral("\uFDD0"), QStringLiteral("\uFDD1"), QString(1, u'\0'),
        QStringLiteral("\uFFFC"), QStringLiteral("\u0301"), QStringLiteral("\U0001F600"),
        QStringLiteral("\u202E"), QStringLiteral("\u2067"), QStringLiteral("\t"),
        QStringLiteral("\u00A0")};
    std::mt19937 random{16}; // NOLINT: the same mixtures in each run
    QString all;
    for (int piece = 0; piece < 300; ++piece) {
        QString text;
        // Now and then so much at once that the view takes it as a flood.
        for (auto parts = piece % 50 == 49 ? 5000U : random() % 40; parts > 0; --parts)
            text += odd[random() % std::size(odd)];
        all += text;
        log.append(toUtf8(text));
        if (random() % 4 == 0) log.flush();
    }
    all += u'.'; // a line's end at the very end waits for what comes after it
    log.append(".");
    log.flush();
    ASSERT_TRUE(allCopied() == toUtf8(all));
    for (int round = 0; round < 100; ++round) {
        auto from = qsizetype(random() % std::size_t(all.size()));
        auto to = std::min(all.size(), from + qsizetype(random() % 3000) + 1);
        if (all[from].isLowSurrogate()) --from;
        if (to < all.size() && all[to].isLowSurrogate()) ++to;
        log.select({from, to});
        ASSERT_TRUE(copied() == toUtf8(all.mid(from, to - from))) << from << " to " << to;
    }
}

TEST_F(LogTest, LongLinesAreBrokenInTheViewAlone) {
    const std::string line(10'000, 'x');
    log.append(line);
    log.flush();
    EXPECT_EQ(log.blockCount(), 3);
    for (QTextBlock block = log.document()->begin(); block.isValid(); block = block.next())
        EXPECT_LE(block.text().size(), LogText::longestBlock);
    EXPECT_EQ(allCopied(), line);
    select(3990, 4011);
    EXPECT_EQ(copied(), std::string(20, 'x')) << "one of the positions is the break";
}

TEST_F(LogTest, ALineThatGrowsBitByBitIsBrokenToo) {
    std::string all;
    for (int i = 0; i < 3000; ++i) {
        const std::string piece = std::to_string(i) + ' ';
        all += piece;
        log.append(piece);
    }
    log.flush();
    for (QTextBlock block = log.document()->begin(); block.isValid(); block = block.next())
        EXPECT_LE(block.text().size(), LogText::longestBlock);
    EXPECT_EQ(allCopied(), all);
}

TEST_F(LogTest, CopyingNothingLeavesTheClipboardAlone) {
    log.append("text");
    QApplication::clipboard()->setText(QStringLiteral("mine"));
    log.copySelection();
    EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("mine"));
}

TEST_F(LogTest, SelectAllTakesWhatIsStillOnItsWay) {
    for (int i = 0; i < 5; ++i) log.append("again\n");
    EXPECT_TRUE(log.isBehind());
    EXPECT_EQ(allCopied(), "again\nagain\nagain\nagain\nagain\n");
}

TEST_F(LogTest, CannotBeEdited) {
    log.append("text");
    log.setFocus();
    QTest::keyClicks(&log, QStringLiteral("abc"));
    QTest::keyClick(&log, Qt::Key_Backspace);
    QTest::keyClick(&log, Qt::Key_V, Qt::ControlModifier);
    QTest::keyClick(&log, Qt::Key_X, Qt::ControlModifier);
    EXPECT_EQ(log.toPlainText(), QStringLiteral("text"));
}

TEST_F(LogTest, MarkupIsText) {
    log.append("<b>bold</b> &lt;\n");
    log.flush();
    EXPECT_EQ(log.toPlainText(), QStringLiteral("<b>bold</b> &lt;"));
}

TEST_F(LogTest, KeepsEverything) {
    appendLines(30'000);
    const QStringList lines = log.toPlainText().split(u'\n');
    ASSERT_EQ(lines.size(), 30'000);
    for (int i = 0; i < lines.size(); ++i) ASSERT_EQ(lines[i], QStringLiteral("line %1").arg(i));
}

TEST_F(LogTest, TheWheelNeverChangesTheSizeOfItsText) {
    const QFont before = log.font();
    for (const Qt::KeyboardModifier modifier : {Qt::NoModifier, Qt::ControlModifier}) {
        const QPointF at = log.viewport()->rect().center();
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

TEST_F(LogTest, ItsScrollBarHasNoMenu) {
    bool hasMenu = false;
    QTimer::singleShot(0, [&] {
        hasMenu = QApplication::activePopupWidget() != nullptr;
        if (hasMenu) QApplication::activePopupWidget()->close();
    });
    QScrollBar& bar = *log.verticalScrollBar();
    const QPoint at = bar.rect().center();
    QContextMenuEvent event{QContextMenuEvent::Mouse, at, bar.mapToGlobal(at)};
    QCoreApplication::sendEvent(&bar, &event);
    QCoreApplication::processEvents();
    EXPECT_FALSE(hasMenu);
}

} // namespace
} // namespace oxlade::test
