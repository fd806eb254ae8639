// The menu bar.
#include "tests/ui/program.h"

#include <QApplication>
#include <QClipboard>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

namespace oxlade::test {
namespace {

class MenuTest : public ::testing::Test {
  protected:
    MenuTest() {
        program.start();
        QApplication::processEvents();
    }
    QMenuBar& bar() { return *program.window().menu().bar(); }
    QAction* item(int menu, int index) {
        return bar().actions().at(menu)->menu()->actions().at(index);
    }
    std::string titles() {
        QString result;
        for (const QAction* menu : bar().actions()) {
            result += menu->text() + u':';
            for (const QAction* action : menu->menu()->actions()) result += action->text() + u';';
        }
        return result.toStdString();
    }
    void switchTo(int segment) {
        QTest::mouseClick(program.content().languageControl->childAt(25 + 50 * segment, 12),
                          Qt::LeftButton);
    }
    void press(int key, Qt::KeyboardModifiers modifiers) {
        QTest::simulateEvent(program.window().windowHandle(), true, key, modifiers, QString{},
                             false);
        QApplication::processEvents();
    }
    Program program;
};

TEST_F(MenuTest, HoldsNothingBeyondTheTable) {
    EXPECT_EQ(titles(), "Oxlade:Quit Oxlade;Edit:Copy;Select All;");
    EXPECT_EQ(item(0, 0)->shortcut(), QKeySequence{Qt::CTRL | Qt::Key_Q});
    EXPECT_EQ(item(1, 0)->shortcut(), QKeySequence{Qt::CTRL | Qt::Key_C});
    EXPECT_EQ(item(1, 1)->shortcut(), QKeySequence{Qt::CTRL | Qt::Key_A});
}

TEST_F(MenuTest, FollowsTheLanguageAtOnceAndBack) {
    switchTo(1);
    EXPECT_EQ(titles(), "Oxlade:Завершить Oxlade;Правка:Скопировать;Выбрать все;");
    switchTo(0);
    EXPECT_EQ(titles(), "Oxlade:Quit Oxlade;Edit:Copy;Select All;");
}

TEST_F(MenuTest, IsReplacedWithoutAChangeOfTheWindowsSize) {
    struct Watch final : QObject {
        bool eventFilter(QObject*, QEvent* event) override {
            changes += event->type() == QEvent::Resize;
            return false;
        }
        int changes = 0;
    } watch;
    program.window().installEventFilter(&watch);
    for (const int segment : {1, 0}) {
        switchTo(segment);
        for (int i = 0; i < 10; ++i) QApplication::processEvents();
    }
    EXPECT_EQ(watch.changes, 0);
}

TEST_F(MenuTest, IsReplacedAsAWholeAndTheOldOneGoes) {
    const QPointer<QMenuBar> old = &bar();
    const QPointer<QAction> oldItem = item(0, 0);
    switchTo(1);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(old.isNull());
    EXPECT_TRUE(oldItem.isNull());
    EXPECT_EQ(program.window().findChildren<QMenuBar*>().size(), 1);
}

TEST_F(MenuTest, ASwitchOfLanguageLeavesTheContentWhereItWas) {
    const QRect before = program.content().geometry();
    const QSize window = program.window().size();
    switchTo(1);
    QApplication::processEvents();
    EXPECT_EQ(program.content().geometry(), before);
    EXPECT_EQ(program.window().size(), window);
}

TEST_F(MenuTest, ItsTitlesHaveNoMnemonics) {
    program.interface->setMainMenu({{"A & B", {{"C && D", MenuAction::copy, 'c'}}}});
    EXPECT_EQ(bar().actions().at(0)->text(), QStringLiteral("A && B"));
    EXPECT_EQ(item(0, 0)->text(), QStringLiteral("C &&&& D"));
}

TEST_F(MenuTest, AKeyThatIsInNoTableIsShownItself) {
    const std::string title{L("menu.unknown")};
    program.interface->setMainMenu({{title, {{title, MenuAction::copy, 'c'}}}});
    EXPECT_EQ(bar().actions().at(0)->text(), QStringLiteral("menu.unknown"));
    EXPECT_EQ(item(0, 0)->text(), QStringLiteral("menu.unknown"));
}

TEST_F(MenuTest, EveryItemSaysWhatItIsToAMac) {
    EXPECT_EQ(item(0, 0)->menuRole(), QAction::QuitRole);
    EXPECT_EQ(item(1, 0)->menuRole(), QAction::NoRole);
    EXPECT_EQ(item(1, 1)->menuRole(), QAction::NoRole);
}

TEST_F(MenuTest, CopyAndSelectAllNeedTheLogToHaveTheKeyboard) {
    const auto enabled = [&] { return item(1, 0)->isEnabled() && item(1, 1)->isEnabled(); };
    const auto disabled = [&] { return !item(1, 0)->isEnabled() && !item(1, 1)->isEnabled(); };
    EXPECT_TRUE(disabled());
    program.content().logView->setFocus();
    EXPECT_TRUE(enabled());
    program.content().checkButton->setFocus();
    EXPECT_TRUE(disabled());
    program.content().logView->setFocus();
    bar().setFocus(Qt::MenuBarFocusReason);
    EXPECT_TRUE(enabled()) << "a menu opened by keyboard has the focus itself";
    switchTo(1);
    EXPECT_TRUE(disabled()) << "the segment that was clicked has it now";
    EXPECT_TRUE(item(0, 0)->isEnabled());
}

TEST_F(MenuTest, CopyAndSelectAllActOnTheLogThroughAnOpenMenu) {
    program.content().logView->setFocus();
    bar().setFocus(Qt::MenuBarFocusReason);
    item(1, 1)->trigger();
    item(1, 0)->trigger();
    EXPECT_EQ(QApplication::clipboard()->text(), program.content().logView->string());
}

TEST_F(MenuTest, TheirKeysActOnTheLog) {
    program.content().logView->setFocus();
    QApplication::clipboard()->clear();
    press(Qt::Key_A, Qt::ControlModifier);
    press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), program.content().logView->string());
}

TEST_F(MenuTest, TheirKeysDoNothingElsewhere) {
    QApplication::clipboard()->setText(QStringLiteral("mine"));
    program.content().checkButton->setFocus();
    press(Qt::Key_A, Qt::ControlModifier);
    press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("mine"));
    EXPECT_FALSE(program.content().logView->textCursor().hasSelection());
}

TEST_F(MenuTest, QuitEndsTheEventLoopAtOnceAlsoInMidRun) {
    program.delegate->checkDevice();
    program.trace.take();
    QTimer::singleShot(0, [&] { press(Qt::Key_Q, Qt::ControlModifier); });
    // Would run for ever otherwise: the test's time limit would show it.
    EXPECT_EQ(QApplication::exec(), 0);
    EXPECT_TRUE(program.trace.take().empty()) << "no question";
}

TEST(MainMenu, IsKeptUntilThereIsAWindow) {
    Program program{1};
    EXPECT_EQ(program.interface->window(), nullptr);
    program.start();
    EXPECT_EQ(program.window().menu().bar()->actions().size(), 2);
}

} // namespace
} // namespace oxlade::test
