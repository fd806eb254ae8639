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

TEST_F(MenuTest, HasTheItemsOfTheMenuTreeInTheCurrentLanguage) {
    EXPECT_EQ(titles(), "Oxlade:Quit Oxlade;Edit:Copy;Select All;");
    switchTo(1);
    EXPECT_EQ(titles(), "Oxlade:Завершить Oxlade;Правка:Скопировать;Выбрать все;");
    const std::tuple<QAction*, Qt::Key, QAction::MenuRole> items[] = {
        {item(0, 0), Qt::Key_Q, QAction::QuitRole},
        {item(1, 0), Qt::Key_C, QAction::NoRole},
        {item(1, 1), Qt::Key_A, QAction::NoRole}};
    for (const auto& [action, key, role] : items) {
        EXPECT_EQ(action->shortcut(), QKeySequence(Qt::ControlModifier | key));
        EXPECT_EQ(action->menuRole(), role);
    }
}

TEST_F(MenuTest, IsReplacedAsAWholeWithoutResizingTheWindow) {
    struct Watch final : QObject {
        bool eventFilter(QObject*, QEvent* event) override {
            changes += event->type() == QEvent::Resize;
            return false;
        }
        int changes = 0;
    } watch;
    program.window().installEventFilter(&watch);
    const QPointer<QMenuBar> old = &bar();
    const QPointer<QAction> oldItem = item(0, 0);
    for (const int segment : {1, 0}) {
        switchTo(segment);
        for (int i = 0; i < 10; ++i) QApplication::processEvents();
    }
    EXPECT_EQ(watch.changes, 0);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(old.isNull() && oldItem.isNull());
    EXPECT_EQ(program.window().findChildren<QMenuBar*>().size(), 1);
}

TEST_F(MenuTest, ItsTitlesHaveNoMnemonics) {
    program.interface->setMainMenu({{"A & B", {{"C && D", MenuAction::copy, 'c'}}}});
    EXPECT_EQ(bar().actions().at(0)->text(), QStringLiteral("A && B"));
    EXPECT_EQ(item(0, 0)->text(), QStringLiteral("C &&&& D"));
}

TEST_F(MenuTest, CopyAndSelectAllNeedTheLogToHaveTheKeyboard) {
    const auto enabled = [this] {
        return std::pair{item(1, 0)->isEnabled(), item(1, 1)->isEnabled()};
    };
    constexpr std::pair neither{false, false}, both{true, true};
    EXPECT_EQ(enabled(), neither);
    widgets().logView->setFocus();
    EXPECT_EQ(enabled(), std::pair(false, true)) << "nothing is selected";
    widgets().logView->selectEverything();
    EXPECT_EQ(enabled(), both);
    widgets().checkButton->setFocus();
    EXPECT_EQ(enabled(), neither);
    widgets().logView->setFocus();
    bar().setFocus(Qt::MenuBarFocusReason);
    EXPECT_EQ(enabled(), both) << "a menu opened by keyboard has the focus itself";
    switchTo(1);
    EXPECT_EQ(enabled(), neither) << "the segment that was clicked has it now";
    EXPECT_TRUE(item(0, 0)->isEnabled());
}

TEST_F(MenuTest, CopyAndSelectAllActOnTheLogThroughAnOpenMenu) {
    widgets().logView->setFocus();
    bar().setFocus(Qt::MenuBarFocusReason);
    item(1, 1)->trigger();
    item(1, 0)->trigger();
    EXPECT_EQ(QApplication::clipboard()->text(), widgets().logView->string());
}

TEST_F(MenuTest, WithoutLatinLettersOnTheKeyboardItsKeysWorkByTheirPlace) {
    const auto press = [this](quint32 place, Qt::KeyboardModifiers modifiers, int key = 0x424) {
        QKeyEvent event{QEvent::KeyPress, key, modifiers, place, 0, 0};
        QCoreApplication::sendEvent(program.window().windowHandle(), &event);
    };
    constexpr quint32 a = 38, c = 54, q = 24;
    widgets().logView->setFocus();
    QApplication::clipboard()->setText(QStringLiteral("before"));
    press(a, Qt::NoModifier);
    press(a, Qt::ControlModifier | Qt::ShiftModifier);
    press(a, Qt::ControlModifier, Qt::Key_Apostrophe); // as on a Latin keyboard of another order
    press(c, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("before"));
    press(a, Qt::ControlModifier);
    press(c, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), widgets().logView->string());
    QTimer::singleShot(0, [&] { press(q, Qt::ControlModifier); });
    QTimer::singleShot(30'000, &content(), [] { QCoreApplication::exit(1); });
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

} // namespace
} // namespace oxlade::test
