// What a screen reader gets to know.
#include "tests/ui/program.h"

#include <QAccessible>
#include <QApplication>
#include <QElapsedTimer>

#include <gtest/gtest.h>

namespace oxlade::test {
namespace {

class AccessibilityTest : public ::testing::Test {
  protected:
    AccessibilityTest() {
        program.start();
        QApplication::processEvents();
    }
    static std::string name(QWidget* widget) {
        return QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Name).toStdString();
    }
    static QAccessible::Role role(QWidget* widget) {
        return QAccessible::queryAccessibleInterface(widget)->role();
    }
    WindowContent& content() { return program.content(); }
    Program program;
};

TEST_F(AccessibilityTest, LabelsAreTextsNamedByWhatTheyShow) {
    for (TextLabel* label : {content().subtitleLabel, content().deviceStatusLabel,
                             content().deviceDetailLabel, content().operationLabel}) {
        EXPECT_EQ(role(label), QAccessible::StaticText);
        EXPECT_EQ(name(label), label->text().toStdString());
        EXPECT_FALSE(name(label).empty());
    }
    EXPECT_EQ(name(content().titleLabel), "Oxlade");
}

TEST_F(AccessibilityTest, ButtonsAreButtonsNamedByTheirTitles) {
    const auto expectButton = [](QWidget* button, const char* title) {
        EXPECT_EQ(role(button), QAccessible::PushButton);
        EXPECT_EQ(name(button), title);
    };
    expectButton(content().checkButton, "Check");
    expectButton(content().builtinButton, "Bundled");
    expectButton(content().chooseButton, "Choose\u2026");
    expectButton(content().installButton, "Flash OS");
    expectButton(content().websiteLink, "oxlade.example");
}

TEST_F(AccessibilityTest, AButtonCanBePressed) {
    QAccessibleInterface* check = QAccessible::queryAccessibleInterface(content().checkButton);
    ASSERT_NE(check->actionInterface(), nullptr);
    check->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    // The toolkit shows the press for a moment before it acts.
    QElapsedTimer deadline;
    deadline.start();
    while (program.processes.made == 0 && !deadline.hasExpired(10'000))
        QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    EXPECT_EQ(program.processes.made, 1);
    EXPECT_TRUE(check->state().disabled);
}

TEST_F(AccessibilityTest, TheLanguagesAreTwoRadioButtons) {
    QAccessibleInterface* control =
        QAccessible::queryAccessibleInterface(content().languageControl);
    EXPECT_EQ(control->role(), QAccessible::Grouping);
    ASSERT_EQ(control->childCount(), 2);
    EXPECT_EQ(control->child(0)->text(QAccessible::Name), QStringLiteral("EN"));
    EXPECT_EQ(control->child(1)->text(QAccessible::Name), QStringLiteral("RU"));
    EXPECT_EQ(control->child(0)->role(), QAccessible::RadioButton);
    EXPECT_TRUE(control->child(0)->state().checked);
    EXPECT_FALSE(control->child(1)->state().checked);
}

TEST_F(AccessibilityTest, TheBarHasARangeAValueAndTheOperationsName) {
    QAccessibleInterface* bar = QAccessible::queryAccessibleInterface(content().progress);
    EXPECT_EQ(bar->role(), QAccessible::ProgressBar);
    content().progress->setDoubleValue(15.5);
    ASSERT_NE(bar->valueInterface(), nullptr);
    EXPECT_EQ(bar->valueInterface()->currentValue().toDouble(), 15.5);
    EXPECT_EQ(bar->valueInterface()->minimumValue().toDouble(), 0);
    EXPECT_EQ(bar->valueInterface()->maximumValue().toDouble(), 100);
    EXPECT_EQ(name(content().progress), "Ready");
}

TEST_F(AccessibilityTest, CardsAreGroupsAndTheLogIsATextNamedByTheirCaptions) {
    EXPECT_EQ(role(content().deviceCard), QAccessible::Grouping);
    EXPECT_EQ(name(content().deviceCard), "DEVICE");
    EXPECT_EQ(name(content().firmwareCard), "FIRMWARE");
    EXPECT_EQ(role(content().logView), QAccessible::EditableText) << "the bus calls it a text";
    EXPECT_EQ(name(content().logView), "LOG");
}

TEST_F(AccessibilityTest, FigureAndLightAreDecoration) {
    EXPECT_EQ(role(content().girlView), QAccessible::Whitespace);
    EXPECT_TRUE(name(content().girlView).empty());
    EXPECT_EQ(role(content().deviceStatusDot), QAccessible::Whitespace);
    EXPECT_TRUE(name(content().deviceStatusDot).empty());
}

TEST_F(AccessibilityTest, ThePathOfTheImageIsItsPlainDescription) {
    QAccessibleInterface* label = QAccessible::queryAccessibleInterface(content().firmwareLabel);
    EXPECT_EQ(label->text(QAccessible::Description).toStdString(), bundledImage);
}

// Events reach nobody on this platform: that they come, and once, is for a test on a
// real accessibility bus. Here: who sends them.
TEST_F(AccessibilityTest, EveryNewTextIsToldButForThePercentage) {
    for (const QWidget* widget : program.window().findChildren<QWidget*>()) {
        const auto* field = dynamic_cast<const TextField*>(widget);
        if (field == nullptr) continue;
        EXPECT_EQ(field->style().quiet, field == content().percentLabel)
            << field->objectName().toStdString();
    }
}

TEST_F(AccessibilityTest, ThePercentageCanBeAskedFor) {
    program.delegate->setOperation("op.write", 42);
    EXPECT_EQ(name(content().percentLabel), "42%");
    EXPECT_EQ(name(content().progress), "Writing OS");
}

TEST_F(AccessibilityTest, EverythingThatCanHaveTheKeyboardOrShowsAnythingHasAName) {
    program.delegate->setOperation("op.write", 42); // the percentage is empty before
    for (QWidget* widget : content().findChildren<QWidget*>()) {
        ASSERT_NE(widget, nullptr);
        const bool shows = dynamic_cast<TextField*>(widget) || dynamic_cast<CardView*>(widget) ||
                           dynamic_cast<ProgressBar*>(widget);
        const bool hasOne = shows || widget->focusPolicy() != Qt::NoFocus;
        // The progress card stands by itself; the bar in it has the operation's name.
        if (!hasOne || widget == content().progressCard) continue;
        EXPECT_FALSE(name(widget).empty()) << widget->objectName().toStdString();
    }
}

TEST_F(AccessibilityTest, NamesFollowTheLanguage) {
    CurrentLanguage = 1;
    program.delegate->refreshTexts();
    EXPECT_EQ(name(content().deviceCard), "УСТРОЙСТВО");
    EXPECT_EQ(name(content().logView), "ЖУРНАЛ");
    EXPECT_EQ(name(content().installButton), "Прошить OS");
    EXPECT_EQ(name(content().progress), "Готово");
}

} // namespace
} // namespace oxlade::test
