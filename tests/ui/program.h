// The real window and the real controller, with fakes of the system.
#pragma once

#include "app/app_delegate.h"
#include "i18n/string_table.h"
#include "tests/testing/fake_system.h"
#include "ui/card_view.h"
#include "ui/main_window.h"
#include "ui/qt_button.h"
#include "ui/qt_label.h"
#include "ui/qt_log_view.h"
#include "ui/qt_segmented_control.h"
#include "ui/qt_user_interface.h"
#include "ui/sprites/wait_girl_view.h"
#include "ui/status_views.h"

#include <QApplication>
#include <QImage>
#include <QMenuBar>
#include <QTest>

#include <gtest/gtest.h>
#include <memory>
#include <string>

namespace oxlade::test {

using QtWaitingFigure = WaitGirlView;
using QtWindow = MainWindow;

/// The window's widgets, found by their object names.
struct Widgets {
    const QWidget& window_;
// NOLINTNEXTLINE(bugprone-macro-parentheses): a name takes none
#define OXLADE_CONTROL(Interface, name) Qt##Interface* name = find(#name);
    OXLADE_FOR_EACH_CONTROL(OXLADE_CONTROL)
#undef OXLADE_CONTROL
    LabelView* titleLabel = find("titleLabel");
    CardView* deviceCard = find("deviceCard");
    CardView* firmwareCard = find("firmwareCard");
    CardView* progressCard = find("progressCard");
    LogScrollView* logScrollView = find("logScrollView");
    QtLabel* creditLabel = find("creditLabel");
    QPushButton* websiteLink = find("websiteLink");

    struct Found {
        QWidget* widget;
        template <class Widget>
        operator Widget*() const { // NOLINT: as the type of the member asks
            return dynamic_cast<Widget*>(widget);
        }
    };
    Found find(const char* name) const {
        return {window_.findChild<QWidget*>(QLatin1String{name})};
    }
};

struct Program : FakeSystem {
    explicit Program(std::int64_t language = 0, std::string version = "1.0.0",
                     std::string website = "oxlade.example") {
        CurrentLanguage = language;
        interface = std::make_unique<QtUserInterface>(
            WindowContext{std::move(version), std::move(website), {}});
        delegate = std::make_shared<AppDelegate>(system(), *interface, "https://oxlade.example/");
        delegate->installMainMenu();
    }
    ~Program() {
        delegate.reset();
        interface.reset();
        CurrentLanguage = 0;
    }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    void start() { delegate->applicationDidFinishLaunching(); }
    MainWindow& window() const { return static_cast<MainWindow&>(*interface->window()); }
    Widgets widgets() const { return Widgets{window()}; }
    QWidget& content() const { return *window().centralWidget(); }
    QMenuBar& menuBar() const { return *window().findChild<QMenuBar*>(); }

    std::unique_ptr<QtUserInterface> interface;
    std::shared_ptr<AppDelegate> delegate;
};

/// A started program whose window is shown.
class ProgramTest : public ::testing::Test {
  protected:
    ProgramTest() {
        program.start();
        QApplication::processEvents();
    }
    void makeReady() {
        program.delegate->setDeviceState(DeviceState::ready);
        program.delegate->updateButtons();
        program.trace.take();
    }
    /// A key as the window system sends it to the window.
    void press(int key, Qt::KeyboardModifiers modifiers = {}, bool autoRepeat = false) {
        QTest::simulateEvent(program.window().windowHandle(), true, key, modifiers, QString{},
                             autoRepeat);
        QApplication::processEvents();
    }
    void release(int key) {
        QTest::simulateEvent(program.window().windowHandle(), false, key, {}, QString{}, false);
        QApplication::processEvents();
    }
    /// A key event at a time in ms, without those that it causes later. A press may be a shortcut.
    void sendKey(QEvent::Type type, quint64 time, int key = Qt::Key_Return,
                 Qt::KeyboardModifiers modifiers = {}) {
        QWindow* window = program.window().windowHandle();
        const auto stamp = static_cast<ulong>(time);
        if (type == QEvent::KeyPress && qt_sendShortcutOverrideEvent(window, stamp, key, modifiers))
            return;
        QKeyEvent event{type, key, modifiers};
        event.setTimestamp(time);
        QCoreApplication::sendEvent(window, &event);
    }
    /// Clicks the segment of that index.
    void switchTo(int segment) {
        QTest::mouseClick(widgets().languageControl->childAt(25 + 50 * segment, 12),
                          Qt::LeftButton);
    }
    /// The content as it is painted.
    QImage picture() { return program.content().grab().toImage(); }
    QRect frame(const QWidget* widget) {
        return {widget->mapTo(&program.content(), QPoint{}), widget->size()};
    }
    QWidget& content() { return program.content(); }
    Widgets widgets() { return program.widgets(); }
    Program program;
};

/// The widget rendered with `ratio` device pixels to a point, on magenta.
inline QImage pictureOf(QWidget& widget, double ratio = 1,
                        QWidget::RenderFlags flags = QWidget::DrawWindowBackground |
                                                     QWidget::DrawChildren) {
    QImage image{(QSizeF{widget.size()} * ratio).toSize(), QImage::Format_RGB32};
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::magenta);
    widget.render(&image, {}, {}, flags);
    return image;
}

} // namespace oxlade::test
