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

/// The window's widgets, found by their object names.
struct Widgets {
    const QWidget& window_;
    LabelView* titleLabel = find("titleLabel");
    QtLabel* subtitleLabel = find("subtitleLabel");
    QtSegmentedControl* languageControl = find("languageControl");
    WaitGirlView* girlView = find("girlView");
    CardView* deviceCard = find("deviceCard");
    QtLabel* deviceCaptionLabel = find("deviceCaptionLabel");
    QtStatusDot* deviceStatusDot = find("deviceStatusDot");
    QtLabel* deviceStatusLabel = find("deviceStatusLabel");
    QtLabel* deviceDetailLabel = find("deviceDetailLabel");
    QtButton* checkButton = find("checkButton");
    CardView* firmwareCard = find("firmwareCard");
    QtLabel* firmwareCaptionLabel = find("firmwareCaptionLabel");
    QtFileLabel* firmwareLabel = find("firmwareLabel");
    QtButton* builtinButton = find("builtinButton");
    QtButton* chooseButton = find("chooseButton");
    CardView* progressCard = find("progressCard");
    QtLabel* operationLabel = find("operationLabel");
    QtLabel* percentLabel = find("percentLabel");
    QtProgressIndicator* progress = find("progress");
    QtButton* installButton = find("installButton");
    QtLabel* logCaptionLabel = find("logCaptionLabel");
    LogScrollView* logScrollView = find("logScrollView");
    QtLogView* logView = find("logView");
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

struct Program {
    explicit Program(std::int64_t language = 0, std::string version = "1.0.0",
                     std::string website = "oxlade.example") {
        CurrentLanguage = language;
        interface = std::make_unique<QtUserInterface>(
            WindowContext{std::move(version), std::move(website), [this] { return reduceMotion; }});
        files.files[bundledHelper] = {"", true};
        files.files[bundledImage] = {validImage(3'145'728), false};
        delegate = std::make_shared<AppDelegate>(
            System{queue, processes, files, files, defaults, dialogs, dialogs, session}, *interface,
            "https://oxlade.example/");
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
    /// Output of the running helper.
    void print(std::string_view bytes) {
        processes.last.lock()->print(bytes);
        queue->run();
    }
    void exit(std::int32_t status) {
        processes.last.lock()->exit(status);
        queue->run();
    }

    Trace trace;
    FakeFiles files;
    std::shared_ptr<FakeQueue> queue = std::make_shared<FakeQueue>();
    FakeProcesses processes{trace};
    FakeDefaults defaults{trace};
    FakeDialogs dialogs{trace};
    FakeSession session;
    bool reduceMotion = false;
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
