// Keys and the mouse in the window.
#include "tests/ui/program.h"

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
    /// As the window system reports it, at a time of its own: a press first tries the
    /// shortcuts.
    void sendReturn(QEvent::Type type, quint64 time) {
        QWindow* window = program.window().windowHandle();
        const bool press = type == QEvent::KeyPress;
        if (press && qt_sendShortcutOverrideEvent(window, ulong(time), Qt::Key_Return, {})) return;
        QKeyEvent event{type, Qt::Key_Return, Qt::NoModifier};
        event.setTimestamp(time);
        QCoreApplication::sendEvent(window, &event);
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

// The shortcut itself takes no key that is marked as a repetition; but on X11 the
// mark may be missing, and then only the times tell.
TEST_F(WindowTest, AHeldReturnCountsOnceAlsoWhenItsRepetitionsAreNotMarked) {
    program.dialogs.answerFirst = false;
    makeReady();
    press(Qt::Key_Return);
    for (int i = 0; i < 20; ++i) press(Qt::Key_Return, true);
    for (quint64 time = 1000; time < 1600; time += 30) {
        sendReturn(QEvent::KeyRelease, time);
        sendReturn(QEvent::KeyPress, time);
    }
    release(Qt::Key_Return);
    EXPECT_EQ(flashesAsked(), 1);
    sendReturn(QEvent::KeyPress, 5000);
    EXPECT_EQ(flashesAsked(), 1) << "a press of its own counts";
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
