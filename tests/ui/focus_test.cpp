// The keyboard focus: it can be seen, and is not lost.
#include "tests/ui/program.h"
#include "ui/palette.h"

#include <QDialog>
#include <QPushButton>

#include <string>
#include <vector>

namespace oxlade::test {
namespace {

class FocusTest : public ProgramTest {
  protected:
    FocusTest() { makeReady(); }
    static int count(const QImage& picture, const QColor& wanted) {
        int found = 0;
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x) found += picture.pixelColor(x, y) == wanted;
        return found;
    }
    /// Another window of the program, as an alert is.
    static void activate(QWidget& window) {
        window.show();
        window.activateWindow();
        QApplication::processEvents();
    }
};

TEST_F(FocusTest, EveryControlShowsItByARing) {
    const QColor ring = markColor(program.window().palette());
    for (const char* name : {"checkButton", "builtinButton", "chooseButton", "installButton",
                             "logView", "websiteLink", "languageControl"}) {
        QWidget* control = widgets().find(name);
        if (control == widgets().languageControl) control = control->childAt(25, 12);
        const QRect around = frame(control).adjusted(-4, -4, 4, 4);
        program.window().setFocus();
        const int before = count(picture().copy(around), ring);
        control->setFocus(Qt::TabFocusReason);
        EXPECT_GT(count(picture().copy(around), ring) - before, control->width()) << name;
    }
}

TEST_F(FocusTest, AButtonThatIsDisabledGivesItToNobodyElse) {
    widgets().checkButton->setFocus(Qt::TabFocusReason);
    std::vector<std::string> holders;
    const auto watching =
        QObject::connect(qApp, &QApplication::focusChanged, [&](QWidget*, const QWidget* now) {
            holders.push_back(now == nullptr ? "none" : now->objectName().toStdString());
        });
    widgets().checkButton->setEnabled(false);
    QObject::disconnect(watching);
    EXPECT_EQ(holders, std::vector<std::string>{"window"});
}

TEST_F(FocusTest, AClickShowsNoRing) {
    EXPECT_EQ(QApplication::focusWidget(), &program.window()) << "on no control at first";
    const QImage before = picture();
    const QColor ring = markColor(program.window().palette());
    QTest::mouseClick(widgets().logView->viewport(), Qt::LeftButton, {}, {300, 100});
    QApplication::processEvents();
    ASSERT_TRUE(widgets().logView->hasFocus());
    EXPECT_EQ(count(picture(), ring), count(before, ring));
}

TEST_F(FocusTest, ADialogThatIsShownCountsAsNoKey) {
    QTest::mouseClick(widgets().logView->viewport(), Qt::LeftButton, {}, {300, 100});
    const QImage before = picture();
    QDialog dialog;
    QPushButton button{&dialog};
    button.setFocus();
    dialog.show();
    dialog.hide();
    widgets().checkButton->setFocus(Qt::OtherFocusReason);
    const QColor ring = markColor(program.window().palette());
    EXPECT_EQ(count(picture(), ring), count(before, ring));
}

TEST_F(FocusTest, ComesBackToAButtonThatWasDisabledWhileAnAlertWasActive) {
    QtButton& flash = *widgets().installButton;
    flash.setFocus(Qt::TabFocusReason);
    QWidget alert;
    activate(alert);
    flash.setEnabled(false);
    activate(program.window());
    EXPECT_FALSE(widgets().logView->hasFocus()) << "moved on to the next control";
    activate(alert);
    flash.setEnabled(true);
    activate(program.window());
    EXPECT_TRUE(flash.hasFocus());
    activate(alert);
    flash.setEnabled(false);
    flash.setEnabled(true);
    activate(program.window());
    EXPECT_TRUE(flash.hasFocus()) << "disabled and enabled behind one alert";
}

TEST_F(FocusTest, IsNotTakenFromAControlThatTheUserMovedItTo) {
    widgets().checkButton->setFocus(Qt::TabFocusReason);
    widgets().checkButton->setEnabled(false);
    widgets().logView->setFocus(Qt::TabFocusReason);
    widgets().checkButton->setEnabled(true);
    EXPECT_TRUE(widgets().logView->hasFocus());
}

} // namespace
} // namespace oxlade::test
