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
#include "ui/fonts.h"
#include "ui/qt_dialogs.h"
#include "ui/qt_user_interface.h"

#include <QApplication>
#include <QTimer>

using namespace oxlade;

int main(int argc, char* argv[]) {
    readFontsAhead();
    argc = 1; // there are no options, not even those that Qt would take
    QApplication application{argc, argv};

    StoredUserDefaults userDefaults;
    CurrentLanguage =
        languageAtStart(userDefaults.string(interfaceLanguageKey), preferredLanguages());

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
    // Not by Qt: an alert that opens at that time would cancel the quit that it posts.
    QApplication::setQuitOnLastWindowClosed(false);
    if (delegate->applicationShouldTerminateAfterLastWindowClosed())
        QObject::connect(&application, &QGuiApplication::lastWindowClosed,
                         [] { QApplication::exit(); });
    QTimer::singleShot(0, [&delegate] { delegate->applicationDidFinishLaunching(); });
    QApplication::exec();
    return 0;
}
