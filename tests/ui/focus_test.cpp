// Where the keyboard is: seen, and not lost.
#include "tests/ui/program.h"
#include "ui/control_drawing.h"

#include <QApplication>
#include <QImage>
#include <QTest>

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace oxlade::test {
namespace {

class FocusTest : public ::testing::Test {
  protected:
    FocusTest() {
        program.start();
        program.delegate->setDeviceState(DeviceState::ready);
        program.delegate->updateButtons();
        QApplication::processEvents();
    }
    QImage picture() { return program.window().content().grab().toImage(); }
    WindowContent& content() { return program.content(); }
    /// The pixels around the widget, a few beyond its frame.
    static QImage around(const QImage& picture, const QWidget& widget, const QWidget& content) {
        return picture.copy(
            QRect{widget.mapTo(&content, QPoint{}), widget.size()}.adjusted(-4, -4, 4, 4));
    }
    static int count(const QImage& picture, const QColor& wanted) {
        int found = 0;
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x) found += picture.pixelColor(x, y) == wanted;
        return found;
    }
    Program program;
};

TEST_F(FocusTest, EveryControlShowsItWithARing) {
    const QColor ring = markColor(program.window().palette());
    for (QWidget* control :
         {static_cast<QWidget*>(content().checkButton),
          static_cast<QWidget*>(content().builtinButton),
          static_cast<QWidget*>(content().chooseButton),
          static_cast<QWidget*>(content().installButton), static_cast<QWidget*>(content().logView),
          static_cast<QWidget*>(content().websiteLink),
          static_cast<QWidget*>(content().languageControl->childAt(25, 12))}) {
        program.window().setFocus();
        QApplication::processEvents();
        const QImage without = around(picture(), *control, content());
        control->setFocus(Qt::TabFocusReason);
        QApplication::processEvents();
        const QImage with = around(picture(), *control, content());
        const int added = count(with, ring) - count(without, ring);
        EXPECT_GT(added, control->width()) << control->objectName().toStdString();
    }
}

TEST_F(FocusTest, AButtonThatIsDisabledGivesItToNobodyElse) {
    content().checkButton->setFocus(Qt::TabFocusReason);
    std::vector<std::string> holders;
    const auto watching =
        QObject::connect(qApp, &QApplication::focusChanged, [&](QWidget*, const QWidget* now) {
            holders.push_back(now == nullptr ? "none" : now->objectName().toStdString());
        });
    content().checkButton->setEnabled(false);
    QObject::disconnect(watching);
    EXPECT_EQ(holders, std::vector<std::string>{"window"});
}

TEST_F(FocusTest, AClickShowsNoRing) {
    const QImage before = picture();
    const QColor ring = markColor(program.window().palette());
    QTest::mouseClick(content().logView->viewport(), Qt::LeftButton, {}, {300, 100});
    QApplication::processEvents();
    ASSERT_TRUE(content().logView->hasFocus());
    EXPECT_EQ(count(picture(), ring), count(before, ring));
}

TEST_F(FocusTest, ComesBackToAButtonThatWasDisabledWhileAnAlertWasActive) {
    content().installButton->setFocus(Qt::TabFocusReason);
    QWidget alert;
    const auto raise = [](QWidget& window) {
        window.show();
        window.activateWindow();
        QApplication::processEvents();
    };
    raise(alert);
    ASSERT_FALSE(program.window().isActiveWindow());
    content().installButton->setEnabled(false);
    raise(program.window());
    EXPECT_FALSE(content().logView->hasFocus()) << "it does not wander on";
    raise(alert);
    content().installButton->setEnabled(true);
    raise(program.window());
    EXPECT_TRUE(content().installButton->hasFocus());
}

TEST_F(FocusTest, ComesBackAlsoWhenTheWindowWasActiveOnlyMeanwhile) {
    content().installButton->setFocus(Qt::TabFocusReason);
    QWidget alert;
    alert.show();
    alert.activateWindow();
    QApplication::processEvents();
    content().installButton->setEnabled(false);
    content().installButton->setEnabled(true);
    program.window().activateWindow();
    QApplication::processEvents();
    EXPECT_EQ(QApplication::focusWidget(), content().installButton);
}

} // namespace
} // namespace oxlade::test
