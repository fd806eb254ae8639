// Puts the pieces together and runs the event loop.
#include "app/app_delegate.h"
#include "app/build_facts.h"
#include "i18n/string_table.h"
#include "platform/bundle.h"
#include "platform/desktop_settings.h"
#include "platform/file_system.h"
#include "platform/helper_process.h"
#include "platform/login_manager.h"
#include "platform/main_queue.h"
#include "platform/preferred_languages.h"
#include "platform/user_defaults.h"
#include "platform/workspace.h"
#include "ui/alerts.h"
#include "ui/font_cache.h"
#include "ui/qt_user_interface.h"

#include <QApplication>
#include <QTimer>

using namespace oxlade;

int main(int argc, char* argv[]) {
    readFontsAhead();
    StoredUserDefaults userDefaults;
    CurrentLanguage =
        languageAtStart(userDefaults.string(interfaceLanguageKey), preferredLanguages());
    argc = 1; // there are no options, not even those that the toolkit would take
    QApplication application{argc, argv};

    ApplicationBundle bundle{executableDirectory()};
    PosixFileSystem fileSystem;
    LoginManagerSleepLock sleepLock;
    PosixHelperProcesses helperProcesses{executableDirectory() + "/oxlade-keeper", &sleepLock};
    DesktopWorkspace workspace;
    DesktopSettings desktop;
    const auto mainQueue = std::make_shared<PosixMainQueue>();
    const MainQueuePump pump{mainQueue};

    QtUserInterface userInterface{
        {bundle.version(), websiteLabel, [&desktop] { return desktop.shouldReduceMotion(); }}};
    desktop.setChangeHandler([&] { userInterface.setColorScheme(desktop.colorScheme()); });
    QtDialogs dialogs{[&userInterface] { return userInterface.window(); }};

    const auto delegate = std::make_shared<AppDelegate>(
        System{mainQueue, helperProcesses, bundle, fileSystem, userDefaults, dialogs, workspace},
        userInterface, websiteAddress);
    delegate->installMainMenu();
    // Not by Qt, which posts an event to quit: an alert that opens next would remove it.
    QApplication::setQuitOnLastWindowClosed(false);
    if (delegate->applicationShouldTerminateAfterLastWindowClosed())
        QObject::connect(&application, &QGuiApplication::lastWindowClosed,
                         [] { QApplication::exit(); });
    // In the event loop: exec() ignores an exit() before it, as during an alert at the start.
    QTimer::singleShot(0, [&delegate] { delegate->applicationDidFinishLaunching(); });
    QApplication::exec();
    return 0;
}
