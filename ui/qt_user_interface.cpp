#include "ui/qt_user_interface.h"

#include "ui/accessibility.h"
#include "ui/interface_style.h"
#include "ui/main_window.h"
#include "ui/palette.h"
#include "ui/text.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLoggingCategory>
#include <QTimer>
#include <QWindow>

#include <algorithm>
#include <array>
#include <string>
#include <utility>

namespace oxlade {
namespace {

bool isKeyEvent(const QEvent& event) {
    return event.type() == QEvent::KeyPress || event.type() == QEvent::ShortcutOverride ||
           event.type() == QEvent::KeyRelease;
}

/// Lets a key that presses buttons (Return, Enter, Space) act once while it is held down: one
/// long press must not open an alert and answer it. Sees the keys of every window.
///
/// QKeyEvent::isAutoRepeat is not enough: on X11 it is false when other events come between
/// the two halves of a repetition, as when a window opens. But both halves, a release and a
/// press, have the same time stamp.
class KeyRepeatFilter final : public QObject {
  public:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (!isKeyEvent(*event)) return QObject::eventFilter(watched, event);
        const auto& key = static_cast<const QKeyEvent&>(*event);
        const auto keys = {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space};
        if (std::find(keys.begin(), keys.end(), key.key()) == keys.end()) return false;
        if (event->type() == QEvent::KeyRelease) {
            lastRelease_ = key.timestamp();
            return false;
        }
        if (!isRepetition(key)) return false;
        // Accepting an override keeps the key from shortcuts, too.
        event->accept();
        return true;
    }

  private:
    bool isRepetition(const QKeyEvent& press) const {
        return press.isAutoRepeat() || (lastRelease_ != 0 && press.timestamp() == lastRelease_);
    }

    quint64 lastRelease_ = 0; ///< ms, the window system's clock; 0: none yet
};

/// Ends the program when the window system says so, at the end of the session. Qt would close
/// the windows first, which an alert refuses.
class QuitFilter final : public QObject {
  public:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (watched != qApp || event->type() != QEvent::Quit) return false;
        QCoreApplication::exit();
        return true;
    }
};

/// Where Qt itself draws the window's frame, has it drawn in the application's present colours.
/// Qt's frame takes its colours when it is made, and is made anew when the window gets one again.
void renewFrame(QWidget& widget) {
    QWindow* window = widget.windowHandle();
    if (window == nullptr || QGuiApplication::platformName() != QLatin1String{"wayland"}) return;
    if (window->frameMargins().isNull()) return; // the compositor draws it
    window->setFlag(Qt::FramelessWindowHint, true);
    window->setFlag(Qt::FramelessWindowHint, false);
}

} // namespace

std::unique_ptr<QApplication> makeApplication(std::string_view programPath,
                                              std::string_view desktopId) {
    // QApplication refers to them. Qt takes the name as WM_CLASS on X11.
    static std::string program, option = "-name", name;
    static std::array<char*, 4> arguments;
    static int count = 3;
    program = programPath;
    name = desktopId;
    arguments = {program.data(), option.data(), name.data(), nullptr};

    QCoreApplication::setApplicationName(QStringLiteral("Oxlade"));
    QGuiApplication::setDesktopFileName(toQString(desktopId));
    // In a Wayland session Qt looks for its Wayland plugin first and warns where it is not
    // installed or finds no compositor; X11 follows. That no plugin can be loaded at all is told
    // nevertheless.
    QLoggingCategory::setFilterRules(QStringLiteral("qt.qpa.plugin=false"));
    auto application = std::make_unique<QApplication>(count, arguments.data());
    QLoggingCategory::setFilterRules({});
    // Qt would post an event to quit: an alert that opens next would remove it.
    QApplication::setQuitOnLastWindowClosed(false);
    return application;
}

QtUserInterface::QtUserInterface(WindowContext context)
    : context_{std::move(context)}, appearance_{std::make_unique<Appearance>()},
      keyRepeatFilter_{std::make_unique<KeyRepeatFilter>()}, quitFilter_{
                                                                 std::make_unique<QuitFilter>()} {
    useInterfaceStyle();
    chooseInterfaceFont();
    installAccessibility();
    for (const auto* filter : {&keyRepeatFilter_, &quitFilter_})
        qApp->installEventFilter(filter->get());
}

QtUserInterface::~QtUserInterface() = default;

Controls QtUserInterface::buildWindow(WindowActions actions) {
    window_ = std::make_unique<MainWindow>(context_, actions, menu_);
    return window_->controls();
}

void QtUserInterface::setMainMenu(const MenuTree& menu) {
    menu_ = menu;
    if (window_) window_->setMenu(menu_);
}

void QtUserInterface::activateIgnoringOtherApps() {
    if (window_) window_->activateWindow();
}

void QtUserInterface::setColorScheme(std::optional<ColorScheme> preference) {
    appearance_->setPreference(preference);
    if (window_) renewFrame(*window_);
}

void QtUserInterface::run(const std::function<void()>& didFinishLaunching,
                          bool terminateAfterLastWindowClosed) {
    if (terminateAfterLastWindowClosed)
        QObject::connect(qApp, &QGuiApplication::lastWindowClosed, quitFilter_.get(),
                         [] { QCoreApplication::exit(); });
    // Not before exec(), which ignores an earlier exit().
    QTimer::singleShot(0, quitFilter_.get(), didFinishLaunching);
    QApplication::exec();
}

QWidget* QtUserInterface::window() const { return window_.get(); }

} // namespace oxlade
