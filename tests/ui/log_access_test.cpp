// The log as a screen reader gets it: the text as it was appended, and no way to edit.
#include "ui/accessibility.h"
#include "ui/log_text_view.h"
#include "ui/text.h"

#include <QAccessible>
#include <QApplication>

#include <gtest/gtest.h>

namespace oxlade::test {
namespace {

class LogAccessTest : public ::testing::Test {
  protected:
    LogAccessTest() {
        installAccessibility();
        window.resize(712, 156);
        log.resize(window.size());
        window.show();
        QApplication::processEvents();
        access = QAccessible::queryAccessibleInterface(&log);
    }
    QAccessibleTextInterface& text() { return *access->textInterface(); }
    std::string whole() { return toUtf8(text().text(0, text().characterCount())); }
    std::string at(int offset, QAccessible::TextBoundaryType type) {
        int from = -1, to = -1;
        const QString found = text().textAtOffset(offset, type, &from, &to);
        EXPECT_EQ(found, text().text(from, to));
        return toUtf8(found);
    }
    std::string selected() {
        int from = -1, to = -1;
        text().selection(0, &from, &to);
        return toUtf8(text().text(from, to));
    }
    QWidget window;
    LogTextView log{&window};
    QAccessibleInterface* access = nullptr;
};

TEST_F(LogAccessTest, CannotBeEdited) {
    log.append("Oxlade started.\n");
    EXPECT_EQ(access->editableTextInterface(), nullptr);
    access->setText(QAccessible::Value, QStringLiteral("other"));
    EXPECT_EQ(whole(), "Oxlade started.\n");
    EXPECT_EQ(toUtf8(log.toPlainText()), "Oxlade started.");
    EXPECT_TRUE(access->state().readOnly);
    EXPECT_FALSE(access->state().editable);
    EXPECT_TRUE(access->state().multiLine);
}

TEST_F(LogAccessTest, GivesWhatWasAppendedAtOnceAndWithoutTheViewsBreaks) {
    const std::string line(10'000, 'x');
    log.append(line);
    EXPECT_EQ(whole(), line);
    for (int i = 0; i < 20'000; ++i) log.append("more and more\n");
    ASSERT_TRUE(log.isBehind());
    EXPECT_EQ(text().characterCount(), 10'000 + 20'000 * 14);
    log.flush();
    EXPECT_EQ(whole(), toUtf8(log.string()));
}

TEST_F(LogAccessTest, ANulHidesNothingThatComesAfterIt) {
    log.append({"zero \0 and more", 15});
    EXPECT_EQ(whole(), "zero \u2400 and more");
    EXPECT_EQ(text().characterCount(), 15);
}

TEST_F(LogAccessTest, KnowsLinesAndWords) {
    log.append("one two\nthree\n\nlast");
    EXPECT_EQ(at(0, QAccessible::LineBoundary), "one two\n");
    EXPECT_EQ(at(7, QAccessible::LineBoundary), "one two\n") << "its ending belongs to it";
    EXPECT_EQ(at(8, QAccessible::LineBoundary), "three\n");
    EXPECT_EQ(at(14, QAccessible::LineBoundary), "\n");
    EXPECT_EQ(at(19, QAccessible::LineBoundary), "last");
    EXPECT_EQ(at(5, QAccessible::WordBoundary), "two");
    EXPECT_EQ(at(4, QAccessible::CharBoundary), "t");
    int from = -1, to = -1;
    EXPECT_EQ(text().textAfterOffset(0, QAccessible::LineBoundary, &from, &to),
              QStringLiteral("three\n"));
    EXPECT_EQ(text().textBeforeOffset(8, QAccessible::LineBoundary, &from, &to),
              QStringLiteral("one two\n"));
    EXPECT_EQ(text().textBeforeOffset(0, QAccessible::LineBoundary, &from, &to), QString{});
    EXPECT_EQ(text().textAfterOffset(18, QAccessible::LineBoundary, &from, &to), QString{});
}

TEST_F(LogAccessTest, SelectsByThePositionsOfTheText) {
    log.append(std::string(5000, 'x') + "end of it\n");
    log.flush();
    text().setSelection(0, 5000, 5003);
    EXPECT_EQ(selected(), "end");
    EXPECT_EQ(toUtf8(log.textCursor().selectedText()), "end") << "the view has a break more";
    EXPECT_EQ(text().cursorPosition(), 5003);
    text().removeSelection(0);
    EXPECT_EQ(text().selectionCount(), 0);
    EXPECT_EQ(text().cursorPosition(), 5003);
    text().addSelection(0, 3);
    EXPECT_EQ(selected(), "xxx");
    log.selectEverything();
    EXPECT_EQ(selected(), toUtf8(log.string()));
}

TEST_F(LogAccessTest, FindsACharacterWhereItStands) {
    log.append("first\nsecond\n");
    const QRect s = text().characterRect(6);
    EXPECT_EQ(text().offsetAtPoint(s.center() - QPoint{1, 0}), 6);
    EXPECT_GT(s.top(), text().characterRect(0).top());
    EXPECT_GT(s.width(), 3);
}

} // namespace
} // namespace oxlade::test
