// What screen readers get. That changes are announced, and that controls can be pressed, is
// tested on a real bus in tests/e2e: events reach nobody without a display.
#include "tests/ui/program.h"
#include "ui/accessibility.h"
#include "ui/text.h"

#include <QAccessible>
#include <QRadioButton>
#include <QToolTip>

namespace oxlade::test {
namespace {

class AccessibilityTest : public ProgramTest {
  protected:
    static QAccessibleInterface& access(QObject* widget) {
        return *QAccessible::queryAccessibleInterface(widget);
    }
    static std::string name(QWidget* widget) {
        return toUtf8(access(widget).text(QAccessible::Name));
    }
};

TEST_F(AccessibilityTest, RolesAndNames) {
    const Widgets all = widgets();
    program.delegate->setOperation("op.write", 42);
    const std::tuple<QWidget*, QAccessible::Role, const char*> rows[] = {
        {all.titleLabel, QAccessible::StaticText, "Oxlade"},
        {all.percentLabel, QAccessible::StaticText, "42%"},
        {all.languageControl, QAccessible::Grouping, ""},
        {all.girlView, QAccessible::Whitespace, ""},
        {all.deviceStatusDot, QAccessible::Whitespace, ""},
        {all.deviceCard, QAccessible::Grouping, "DEVICE"},
        {all.firmwareCard, QAccessible::Grouping, "FIRMWARE"},
        {all.progressCard, QAccessible::Grouping, ""},
        {all.progress, QAccessible::ProgressBar, "Writing OS"},
        {all.chooseButton, QAccessible::PushButton, "Choose\u2026"},
        {all.websiteLink, QAccessible::PushButton, "oxlade.example"},
        {all.logView, QAccessible::EditableText, "LOG"}, // the bus calls this role "text"
    };
    for (const auto& [widget, role, text] : rows) {
        EXPECT_EQ(access(widget).role(), role) << widget->objectName().toStdString();
        EXPECT_EQ(name(widget), text) << widget->objectName().toStdString();
    }
    // Each change of these is told but for the percentage, which says nothing that is not said.
    for (QWidget* widget : content().findChildren<QWidget*>()) {
        const auto* label = dynamic_cast<const LabelView*>(widget);
        EXPECT_EQ(label != nullptr && label->style().quiet, widget == all.percentLabel);
        const bool needsName = access(widget).role() == QAccessible::PushButton ||
                               access(widget).role() == QAccessible::RadioButton;
        EXPECT_FALSE(needsName && name(widget).empty()) << widget->objectName().toStdString();
    }
}

TEST_F(AccessibilityTest, TheLanguagesAreTwoRadioButtonsThatCanBePressed) {
    QAccessibleInterface& control = access(widgets().languageControl);
    ASSERT_EQ(control.childCount(), 2);
    for (const int i : {0, 1}) {
        QAccessibleInterface& segment = *control.child(i);
        EXPECT_EQ(segment.role(), QAccessible::RadioButton);
        EXPECT_EQ(segment.text(QAccessible::Name),
                  i == 0 ? QStringLiteral("EN") : QStringLiteral("RU"));
        EXPECT_EQ(segment.state().checked, i == 0);
    }
    for (const auto& action :
         {QAccessibleActionInterface::toggleAction(), QAccessibleActionInterface::pressAction()}) {
        const std::int64_t other = 1 - CurrentLanguage;
        control.child(static_cast<int>(other))->actionInterface()->doAction(action);
        EXPECT_EQ(CurrentLanguage, other) << action.toStdString();
    }
}

TEST_F(AccessibilityTest, TheBarHasARangeAndAValue) {
    QAccessibleInterface& bar = access(widgets().progress);
    widgets().progress->setDoubleValue(15.5);
    ASSERT_NE(bar.valueInterface(), nullptr);
    EXPECT_EQ(bar.valueInterface()->currentValue().toDouble(), 15.5);
    EXPECT_EQ(bar.valueInterface()->minimumValue().toDouble(), 0);
    EXPECT_EQ(bar.valueInterface()->maximumValue().toDouble(), 100);
    EXPECT_TRUE(bar.state().readOnly);
}

TEST_F(AccessibilityTest, ThePathOfTheImageIsPlainInDescriptionAndToolTip) {
    QtFileLabel& label = *widgets().firmwareLabel;
    const QString path = QString::fromStdString(bundledImage);
    EXPECT_EQ(access(&label).text(QAccessible::Description), path);
    QToolTip::showText({}, label.toolTip(), &label);
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (!window->inherits("QTipLabel")) continue;
        EXPECT_EQ(access(window).role(), QAccessible::ToolTip);
        EXPECT_EQ(access(window).text(QAccessible::Name), path);
        return QToolTip::hideText();
    }
    FAIL() << "no tool tip";
}

class LogAccessTest : public ::testing::Test {
  protected:
    LogAccessTest() {
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
    const bool isInstalled = (installAccessibility(), true); // before the view asks for its own
    QWidget window;
    QtLogView log{&window};
    QAccessibleInterface* access = nullptr;
};

TEST_F(LogAccessTest, CannotBeEdited) {
    EXPECT_EQ(access->editableTextInterface(), nullptr);
    EXPECT_TRUE(access->state().readOnly);
    EXPECT_FALSE(access->state().editable);
    EXPECT_TRUE(access->state().multiLine);
}

TEST_F(LogAccessTest, GivesWhatWasAppendedAtOnceAndWithoutTheViewsBreaks) {
    const std::string line(10'000, 'x');
    log.append(line + std::string(1, '\0'));
    EXPECT_EQ(whole(), line + "\u2400") << "the bus would cut it at a NUL";
    for (int i = 0; i < 20'000; ++i) log.append("more and more\n");
    ASSERT_TRUE(log.isBehind());
    EXPECT_EQ(text().characterCount(), 10'001 + 20'000 * 14);
    log.flush();
    EXPECT_EQ(whole(), toUtf8(withVisibleNuls(log.string())));
}

TEST_F(LogAccessTest, KnowsLinesAndWords) {
    log.append("one two\nthree\n\nlast");
    constexpr auto line = QAccessible::LineBoundary;
    const std::tuple<int, QAccessible::TextBoundaryType, const char*> rows[] = {
        {0, line, "one two\n"},
        {7, line, "one two\n"}, // its ending belongs to it
        {8, line, "three\n"},
        {14, line, "\n"},
        {19, line, "last"},
        {5, QAccessible::WordBoundary, "two"},
        {4, QAccessible::CharBoundary, "t"}};
    for (const auto& [offset, type, expected] : rows) EXPECT_EQ(at(offset, type), expected);
    int from = -1, to = -1;
    EXPECT_EQ(text().textAfterOffset(0, line, &from, &to), QStringLiteral("three\n"));
    EXPECT_EQ(text().textBeforeOffset(8, line, &from, &to), QStringLiteral("one two\n"));
    EXPECT_EQ(text().textBeforeOffset(0, line, &from, &to), QString{});
    EXPECT_EQ(text().textAfterOffset(18, line, &from, &to), QString{});
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
