// The menu bar. Its keys are tested in tests/e2e.
#include "tests/ui/program.h"
#include "ui/palette.h"

#include <QClipboard>
#include <QMenu>
#include <QTimer>

namespace oxlade::test {
namespace {

class MenuTest : public ProgramTest {
  protected:
    QMenuBar& bar() { return program.menuBar(); }
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
};

TEST_F(MenuTest, HasTheItemsOfTheMenuTree) {
    EXPECT_EQ(titles(), "Oxlade:Quit Oxlade;Edit:Copy;Select All;");
    EXPECT_EQ(item(0, 0)->shortcut(), QKeySequence{Qt::CTRL | Qt::Key_Q});
    EXPECT_EQ(item(1, 0)->shortcut(), QKeySequence{Qt::CTRL | Qt::Key_C});
    EXPECT_EQ(item(1, 1)->shortcut(), QKeySequence{Qt::CTRL | Qt::Key_A});
    EXPECT_EQ(item(0, 0)->menuRole(), QAction::QuitRole);
    EXPECT_EQ(item(1, 0)->menuRole(), QAction::NoRole);
    EXPECT_EQ(item(1, 1)->menuRole(), QAction::NoRole);
}

TEST_F(MenuTest, FollowsTheLanguageAtOnceAndBack) {
    switchTo(1);
    EXPECT_EQ(titles(), "Oxlade:Завершить Oxlade;Правка:Скопировать;Выбрать все;");
    switchTo(0);
    EXPECT_EQ(titles(), "Oxlade:Quit Oxlade;Edit:Copy;Select All;");
}

TEST_F(MenuTest, IsReplacedWithoutResizingTheWindow) {
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

TEST_F(MenuTest, ReplacesTheOldOneAsAWhole) {
    const QPointer<QMenuBar> old = &bar();
    const QPointer<QAction> oldItem = item(0, 0);
    switchTo(1);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(old.isNull());
    EXPECT_TRUE(oldItem.isNull());
    EXPECT_EQ(program.window().findChildren<QMenuBar*>().size(), 1);
}

TEST_F(MenuTest, ItsTitlesHaveNoMnemonics) {
    program.interface->setMainMenu({{"A & B", {{"C && D", MenuAction::copy, 'c'}}}});
    EXPECT_EQ(bar().actions().at(0)->text(), QStringLiteral("A && B"));
    EXPECT_EQ(item(0, 0)->text(), QStringLiteral("C &&&& D"));
}

TEST_F(MenuTest, CopyAndSelectAllNeedTheLogToHaveTheKeyboard) {
    const auto enabled = [&] { return item(1, 0)->isEnabled() && item(1, 1)->isEnabled(); };
    const auto disabled = [&] { return !item(1, 0)->isEnabled() && !item(1, 1)->isEnabled(); };
    EXPECT_TRUE(disabled());
    program.widgets().logView->setFocus();
    EXPECT_FALSE(item(1, 0)->isEnabled()) << "nothing is selected";
    EXPECT_TRUE(item(1, 1)->isEnabled());
    program.widgets().logView->selectEverything();
    EXPECT_TRUE(enabled());
    program.widgets().checkButton->setFocus();
    EXPECT_TRUE(disabled());
    program.widgets().logView->setFocus();
    bar().setFocus(Qt::MenuBarFocusReason);
    EXPECT_TRUE(enabled()) << "a menu opened by keyboard has the focus itself";
    switchTo(1);
    EXPECT_TRUE(disabled()) << "the segment that was clicked has it now";
    EXPECT_TRUE(item(0, 0)->isEnabled());
}

TEST_F(MenuTest, CopyAndSelectAllActOnTheLogThroughAnOpenMenu) {
    program.widgets().logView->setFocus();
    bar().setFocus(Qt::MenuBarFocusReason);
    item(1, 1)->trigger();
    item(1, 0)->trigger();
    EXPECT_EQ(QApplication::clipboard()->text(), program.widgets().logView->string());
}

TEST_F(MenuTest, WithoutLatinLettersOnTheKeyboardItsKeysWorkByTheirPlace) {
    const auto press = [this](int key, quint32 scanCode, Qt::KeyboardModifiers modifiers) {
        QKeyEvent event{QEvent::KeyPress, key, modifiers, scanCode, 0, 0};
        QCoreApplication::sendEvent(program.window().windowHandle(), &event);
    };
    constexpr int russian = 0x424; // any letter
    program.widgets().logView->setFocus();
    QApplication::clipboard()->setText(QStringLiteral("before"));
    press(russian, 38, Qt::NoModifier);
    press(russian, 38, Qt::ControlModifier | Qt::ShiftModifier);
    press(Qt::Key_Apostrophe, 38, Qt::ControlModifier); // as on a Latin keyboard of another order
    press(russian, 54, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("before"));
    press(russian, 38, Qt::ControlModifier);
    press(russian, 54, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), program.widgets().logView->string());
    QTimer::singleShot(0, [&] { press(russian, 24, Qt::ControlModifier); });
    QTimer deadline;
    deadline.callOnTimeout([] { QCoreApplication::exit(1); });
    deadline.start(30'000);
    EXPECT_EQ(QApplication::exec(), 0) << "it does not quit";
}

TEST_F(MenuTest, ItsItemsHaveNoIconColumn) {
    QMenu& menu = *bar().actions().at(1)->menu();
    const QImage image = pictureOf(menu);
    const QColor fill = menu.palette().color(QPalette::Button);
    EXPECT_NE(image.pixelColor(0, image.height() / 2), fill) << "the edge";
    const QRect row = menu.actionGeometry(item(1, 0));
    int ink = row.left() + 2;
    const auto isBlank = [&](int x) {
        for (int y = row.top(); y <= row.bottom(); ++y)
            if (contrast(image.pixelColor(x, y), fill) > 1.5) return false;
        return true;
    };
    while (ink < row.right() && isBlank(ink)) ++ink;
    EXPECT_GE(ink, row.left() + 12);
    EXPECT_LE(ink, row.left() + 18);
}

TEST(MainMenu, IsKeptUntilTheWindowIsBuilt) {
    Program program{1};
    EXPECT_EQ(program.interface->window(), nullptr);
    program.start();
    EXPECT_EQ(program.menuBar().actions().size(), 2);
}

} // namespace
} // namespace oxlade::test
