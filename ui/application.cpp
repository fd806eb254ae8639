#include "ui/application.h"

#include "ui/text.h"

#include <QIcon>
#include <QLoggingCategory>
#include <QTimer>

#include <array>
#include <string>

namespace oxlade {
namespace {

/// The sizes that window managers ask for. An icon of a size that is not there is scaled.
QIcon windowIcon(const QString& desktopId) {
    QIcon icon;
    for (const int size : {16, 24, 32, 48, 64, 128})
        icon.addFile(QStringLiteral(":/icon/%1-%2.png").arg(desktopId).arg(size));
    return icon;
}

} // namespace

std::unique_ptr<QApplication> makeApplication(const char* programPath, std::string_view desktopId) {
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
    // Decoding it would delay the first frame by some milliseconds.
    constexpr int afterTheFirstFrame = 200; // milliseconds
    QTimer::singleShot(afterTheFirstFrame, application.get(), [id = toQString(desktopId)] {
        QApplication::setWindowIcon(windowIcon(id));
    });
    return application;
}

} // namespace oxlade
