// Keys and the mouse in the window.
#include "tests/gui/program.h"

#include <QApplication>
#include <QTest>

#include <gtest/gtest.h>

namespace oxlade::test {
namespace {

class WindowTest : public ::testing::Test {
  protected:
    WindowTest() {
        program.start();
        QApplication::processEvents();
    }
    /// Until Flash OS is enabled.
    void makeReady() {
        program.delegate->setDeviceState(DeviceState::ready);
        program.delegate->updateButtons();
        program.trace.take();
    }
    void press(int key, bool autoRepeat = false) {
        QWindow* window = program.window().windowHandle();
        QTest::simulateEvent(window, true, key, Qt::NoModifier, QString{}, autoRepeat);
        QApplication::processEvents();
    }
    void release(int key) {
        QWindow* window = program.window().windowHandle();
        QTest::simulateEvent(window, false, key, Qt::NoModifier, QString{}, false);
        QApplication::processEvents();
    }
    int flashesAsked() {
        const std::string happened = program.trace.take(), alert = "critical alert";
        int count = 0;
        for (auto at = happened.find(alert); at != std::string::npos;
             at = happened.find(alert, at + 1))
            ++count;
        return count;
    }
    WindowContent& content() { return program.content(); }
    Program program;
};

TEST_F(WindowTest, ReturnAndEnterPressFlash) {
    program.dialogs.answerFirst = false;
    makeReady();
    press(Qt::Key_Return);
    EXPECT_EQ(flashesAsked(), 1);
    press(Qt::Key_Enter);
    EXPECT_EQ(flashesAsked(), 1);
}

TEST_F(WindowTest, ReturnPressesFlashWhateverHasTheKeyboard) {
    program.dialogs.answerFirst = false;
    makeReady();
    for (QWidget* focus :
         {static_cast<QWidget*>(content().checkButton), static_cast<QWidget*>(content().logView),
          static_cast<QWidget*>(content().websiteLink),
          static_cast<QWidget*>(content().languageControl->childAt(1, 1))}) {
        focus->setFocus();
        ASSERT_TRUE(focus->hasFocus()) << focus->objectName().toStdString();
        press(Qt::Key_Return);
        EXPECT_EQ(flashesAsked(), 1) << focus->objectName().toStdString();
    }
}

TEST_F(WindowTest, ReturnDoesNothingWhileFlashIsDisabled) {
    program.trace.take();
    content().checkButton->setFocus();
    press(Qt::Key_Return);
    EXPECT_TRUE(program.trace.take().empty()) << "not even the focused button is pressed";
}

TEST_F(WindowTest, AHeldReturnCountsOnce) {
    program.dialogs.answerFirst = false;
    makeReady();
    press(Qt::Key_Return);
    for (int i = 0; i < 20; ++i) press(Qt::Key_Return, true);
    release(Qt::Key_Return);
    EXPECT_EQ(flashesAsked(), 1);
}

TEST_F(WindowTest, SpacePressesTheFocusedButton) {
    program.trace.take();
    content().checkButton->setFocus();
    press(Qt::Key_Space);
    release(Qt::Key_Space);
    EXPECT_EQ(program.processes.made, 1);
}

TEST_F(WindowTest, EveryButtonCallsItsAction) {
    program.trace.take();
    content().checkButton->click();
    EXPECT_EQ(program.processes.made, 1);
    program.exit(0);
    program.trace.take();
    content().chooseButton->click();
    EXPECT_FALSE(program.trace.take().empty());
    program.delegate->setFirmwarePath({});
    content().builtinButton->click();
    EXPECT_EQ(program.delegate->firmwarePath(), bundledImage);
    program.trace.take();
    content().websiteLink->click();
    EXPECT_EQ(program.trace.take(), "open https://oxlade.example/\n");
    content().installButton->click();
    EXPECT_EQ(flashesAsked(), 1);
}

TEST_F(WindowTest, AClickOnTheOtherSegmentChangesTheLanguageAtOnce) {
    QTest::mouseClick(content().languageControl->childAt(75, 12), Qt::LeftButton);
    EXPECT_EQ(CurrentLanguage, 1);
    EXPECT_EQ(content().checkButton->text(), QStringLiteral("Проверить"));
    EXPECT_EQ(program.defaults.values.at("InterfaceLanguage"), "ru");
}

TEST_F(WindowTest, AClickOnTheChosenSegmentStoresItToo) {
    EXPECT_TRUE(program.defaults.values.empty()) << "nothing is stored at start";
    QTest::mouseClick(content().languageControl->childAt(25, 12), Qt::LeftButton);
    EXPECT_EQ(program.defaults.values.at("InterfaceLanguage"), "en");
    EXPECT_EQ(content().languageControl->selectedSegment(), 0);
}

TEST_F(WindowTest, ArrowKeysChangeTheLanguageToo) {
    content().languageControl->childAt(25, 12)->setFocus();
    press(Qt::Key_Right);
    EXPECT_EQ(CurrentLanguage, 1);
    press(Qt::Key_Left);
    EXPECT_EQ(CurrentLanguage, 0);
}

TEST_F(WindowTest, TabGoesThroughEveryControlInReadingOrder) {
    makeReady();
    std::vector<std::string> order;
    for (int i = 0; i < 8; ++i) {
        press(Qt::Key_Tab);
        const QWidget* focus = QApplication::focusWidget();
        ASSERT_NE(focus, nullptr);
        order.push_back((focus->objectName().isEmpty() ? focus->parentWidget() : focus)
                            ->objectName()
                            .toStdString());
    }
    EXPECT_EQ(order, (std::vector<std::string>{"languageControl", "checkButton", "builtinButton",
                                               "chooseButton", "installButton", "logView",
                                               "websiteLink", "languageControl"}));
}

TEST_F(WindowTest, AtFirstNoControlHasTheKeyboard) {
    EXPECT_EQ(QApplication::focusWidget(), &program.window());
}

TEST_F(WindowTest, AButtonThatWasDisabledUnderTheFingerTakesTheKeyboardBack) {
    content().checkButton->setFocus(Qt::TabFocusReason);
    press(Qt::Key_Space);
    release(Qt::Key_Space);
    EXPECT_FALSE(content().checkButton->hasFocus());
    program.exit(0);
    EXPECT_TRUE(content().checkButton->hasFocus());
}

TEST_F(WindowTest, ButNotFromAControlThatTheUserWentTo) {
    content().checkButton->setFocus(Qt::TabFocusReason);
    press(Qt::Key_Space);
    release(Qt::Key_Space);
    content().logView->setFocus(Qt::TabFocusReason);
    program.exit(0);
    EXPECT_TRUE(content().logView->hasFocus());
}

TEST_F(WindowTest, IsDraggedByItsBackgroundCardsLabelsAndFigure) {
    const auto at = [&](const QWidget* widget) {
        return widget->mapTo(&content(), widget->rect().center());
    };
    EXPECT_TRUE(content().isBackground({5, 5}));
    for (const QWidget* widget :
         {static_cast<QWidget*>(content().girlView), static_cast<QWidget*>(content().titleLabel),
          static_cast<QWidget*>(content().deviceStatusLabel),
          static_cast<QWidget*>(content().deviceStatusDot),
          static_cast<QWidget*>(content().percentLabel),
          static_cast<QWidget*>(content().creditLabel)})
        EXPECT_TRUE(content().isBackground(at(widget))) << widget->objectName().toStdString();
    EXPECT_TRUE(content().isBackground({310, 110})) << "a card";
}

TEST_F(WindowTest, IsNeverDraggedByAButtonTheBarOrTheLog) {
    const auto at = [&](const QWidget* widget) {
        return widget->mapTo(&content(), widget->rect().center());
    };
    EXPECT_FALSE(content().installButton->isEnabled()) << "a disabled one neither";
    for (const QWidget* widget :
         {static_cast<QWidget*>(content().installButton),
          static_cast<QWidget*>(content().checkButton),
          static_cast<QWidget*>(content().languageControl),
          static_cast<QWidget*>(content().progress), static_cast<QWidget*>(content().logView),
          static_cast<QWidget*>(content().websiteLink)})
        EXPECT_FALSE(content().isBackground(at(widget))) << widget->objectName().toStdString();
    EXPECT_FALSE(content().isBackground({26, 422})) << "the log's margin";
}

TEST_F(WindowTest, ClosesWithoutAQuestion) {
    program.delegate->checkDevice();
    program.trace.take();
    EXPECT_TRUE(program.window().close());
    EXPECT_TRUE(program.trace.take().empty());
}

TEST_F(WindowTest, TheLogStaysWhereItIsWhenTheLanguageChanges) {
    const QString before = content().logView->string();
    QTest::mouseClick(content().languageControl->childAt(75, 12), Qt::LeftButton);
    EXPECT_EQ(content().logView->string(), before);
}

} // namespace
} // namespace oxlade::test
