// What keys, the mouse and closing do in the window. Keys in a real display: tests/e2e.
#include "tests/testing/eventually.h"
#include "tests/ui/program.h"
#include "ui/qt_dialogs.h"
#include "ui/text.h"

#include <QRadioButton>
#include <QTimer>

namespace oxlade::test {
namespace {

class WindowTest : public ProgramTest {
  protected:
    int flashesAsked() {
        return static_cast<int>(toQString(program.trace.take()).count(u"critical alert"));
    }
    void runEventLoop(const std::function<void()>& start) {
        QTimer watch;
        watch.callOnTimeout([] {
            ADD_FAILURE() << "the program goes on";
            QCoreApplication::exit();
        });
        watch.start(deadline);
        program.interface->run(start, true);
    }
};

TEST_F(WindowTest, EveryButtonCallsItsAction) {
    program.dialogs.answerFirst = false;
    makeReady();
    program.delegate->setFirmwarePath({});
    widgets().builtinButton->click();
    EXPECT_EQ(program.delegate->firmwarePath(), bundledImage);
    const std::pair<QPushButton*, const char*> effects[] = {
        {widgets().chooseButton, "open panel"},
        {widgets().installButton, "critical alert"},
        {widgets().websiteLink, "open https://oxlade.example/\n"},
        {widgets().checkButton, "process /apps/Oxlade.app/Contents/MacOS/oxlade [--info]\n"}};
    for (const auto& [button, effect] : effects) {
        button->click();
        EXPECT_EQ(program.trace.take().find(effect), 0U) << effect;
    }
}

// A shortcut ignores repetitions that are marked as such; on X11 the mark may be missing, and
// only the time stamps tell.
TEST_F(WindowTest, AHeldReturnFlashesOnce) {
    program.dialogs.answerFirst = false;
    makeReady();
    press(Qt::Key_Enter, Qt::KeypadModifier);
    EXPECT_EQ(flashesAsked(), 1) << "Enter, too";
    press(Qt::Key_Return);
    for (int i = 0; i < 20; ++i) press(Qt::Key_Return, {}, true);
    for (quint64 time = 1000; time < 1600; time += 30) {
        sendKey(QEvent::KeyRelease, time);
        sendKey(QEvent::KeyPress, time);
    }
    release(Qt::Key_Return);
    EXPECT_EQ(flashesAsked(), 1);
    sendKey(QEvent::KeyPress, 5000);
    EXPECT_EQ(flashesAsked(), 1) << "another press";
}

TEST_F(WindowTest, ReturnFlashesFromAnywhereUnlessFlashOsIsDisabledOrAMenuIsOpen) {
    program.trace.take();
    widgets().checkButton->setFocus();
    press(Qt::Key_Return);
    EXPECT_EQ(program.trace.take(), "");
    makeReady();
    program.dialogs.answerFirst = false;
    press(Qt::Key_F10);
    ASSERT_NE(QApplication::activePopupWidget(), nullptr);
    QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Return);
    QApplication::activePopupWidget()->close();
    EXPECT_EQ(flashesAsked(), 0);
    for (auto* control : std::initializer_list<QWidget*>{
             &program.window(), widgets().logView, widgets().websiteLink, widgets().checkButton,
             widgets().languageControl->childAt(25, 12)}) {
        control->setFocus();
        press(Qt::Key_Return);
        EXPECT_EQ(flashesAsked(), 1) << control->objectName().toStdString();
    }
}

TEST_F(WindowTest, AClickOrAnArrowKeyOnAnySegmentStoresItsLanguage) {
    EXPECT_TRUE(program.defaults.values.empty());
    switchTo(0);
    EXPECT_EQ(program.defaults.values.at("InterfaceLanguage"), "en") << "chosen before";
    const QString log = widgets().logView->string();
    switchTo(1);
    EXPECT_EQ(program.defaults.values.at("InterfaceLanguage"), "ru");
    EXPECT_EQ(widgets().checkButton->text(), QStringLiteral("Проверить"));
    EXPECT_EQ(widgets().logView->string(), log);
    press(Qt::Key_Left); // in the clicked segment
    EXPECT_EQ(CurrentLanguage, 0);
    press(Qt::Key_Right);
    EXPECT_EQ(CurrentLanguage, 1);
}

TEST_F(WindowTest, ClosesWithoutAQuestion) {
    program.delegate->checkDevice();
    program.trace.take();
    EXPECT_TRUE(program.window().close());
    EXPECT_EQ(program.trace.take(), "");
}

TEST_F(WindowTest, ItsCloseEndsTheProgramBeforeAnAlertCanOpen) {
    QtDialogs dialogs{[this] { return &program.window(); }};
    runEventLoop([&] {
        program.window().close();
        EXPECT_FALSE(dialogs.runAlert({AlertStyle::informational, "DONE", {}, {}}));
    });
}

TEST_F(WindowTest, AnExitDuringTheStartEndsTheProgram) {
    runEventLoop([] { QCoreApplication::exit(); });
}

TEST_F(WindowTest, ActivatingTheProgramGivesItTheKeyboard) {
    QWidget other;
    other.show();
    other.activateWindow();
    QApplication::processEvents();
    ASSERT_FALSE(program.window().isActiveWindow());
    program.interface->activateIgnoringOtherApps();
    QApplication::processEvents();
    EXPECT_TRUE(program.window().isActiveWindow());
}

TEST(Window, IsBuiltHiddenInItsPlaceAndWithoutTexts) {
    Program program;
    program.interface->activateIgnoringOtherApps();
    const auto nothing = [] {};
    const Controls controls =
        program.interface->buildWindow({nothing, nothing, nothing, nothing, nothing, nothing});
#define OXLADE_CONTROL(Interface, name) EXPECT_NE(controls.name, nullptr) << #name;
    OXLADE_FOR_EACH_CONTROL(OXLADE_CONTROL)
#undef OXLADE_CONTROL
    MainWindow& window = program.window();
    EXPECT_FALSE(window.isVisible());
    const QSize size = window.size();
    const QRect screen = window.screen()->availableGeometry();
    EXPECT_EQ(window.pos(), startingPlace(screen, window.size()));
    EXPECT_TRUE(program.widgets().subtitleLabel->text().isEmpty());
    EXPECT_TRUE(program.widgets().checkButton->text().isEmpty());
    EXPECT_TRUE(program.widgets().logView->string().isEmpty());
    controls.window->makeKeyAndOrderFront();
    QApplication::processEvents();
    EXPECT_TRUE(window.isVisible());
    ASSERT_NE(window.frameGeometry().size(), size) << "a frame of this platform's own";
    EXPECT_EQ(window.pos(), startingPlace(screen, window.frameGeometry().size()));
    EXPECT_EQ(window.size(), size);
}

} // namespace
} // namespace oxlade::test
