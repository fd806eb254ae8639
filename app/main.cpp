// Puts the pieces together and runs the event loop.
#include "app/app_delegate.h"
#include "app/build_facts.h"
#include "i18n/string_table.h"
#include "platform/bundle.h"
#include "platform/descriptor.h"
#include "platform/desktop_session.h"
#include "platform/desktop_settings.h"
#include "platform/file_system.h"
#include "platform/helper_process.h"
#include "platform/main_queue.h"
#include "platform/sleep_lock.h"
#include "platform/user_environment.h"
#include "ui/qt_dialogs.h"
#include "ui/qt_user_interface.h"
#include "ui/text.h"

#include <QApplication>
#include <QTimer>

using namespace oxlade;

int main(int argc, char* argv[]) {
    openClosedStandardStreams();
    const auto mainQueue = PosixMainQueue::make();
    if (!mainQueue) return qErrnoWarning("Oxlade cannot make a pipe"), 1;
    readFontsAhead();
    QtUserDefaults userDefaults;
    CurrentLanguage =
        languageAtStart(userDefaults.string(interfaceLanguageKey), preferredLanguages());
    const auto application = makeApplication(argc > 0 ? argv[0] : "", desktopId);
    QtBundle bundle{executableDirectory()};
    PosixFileSystem fileSystem;
    const AppDelegate* controller = nullptr;
    PosixSleepLock sleepLock{[&] { return std::string{L(controller->operationKey())}; }};
    PosixHelperProcesses helperProcesses{executableDirectory() + "/oxlade-keeper", &sleepLock};
    QtWorkspace workspace;
    QtDesktopSession desktopSession{desktopId};
    DesktopSettings desktop;
    const MainQueuePump pump{mainQueue};
    QtUserInterface userInterface{
        {bundle.version(), websiteLabel, [&desktop] { return desktop.shouldReduceMotion(); }}};
    desktop.setChangeHandler([&] { userInterface.setColorScheme(desktop.colorScheme()); });
    QtDialogs dialogs{[&userInterface] { return userInterface.window(); }};

    const auto delegate =
        std::make_shared<AppDelegate>(System{mainQueue, helperProcesses, bundle, fileSystem,
                                             userDefaults, dialogs, workspace, desktopSession},
                                      userInterface, websiteAddress);
    controller = delegate.get();
    delegate->installMainMenu();
    desktop.awaitColorScheme(50); // else the frame of a dark window begins light
    userInterface.run([&delegate] { delegate->applicationDidFinishLaunching(); },
                      delegate->applicationShouldTerminateAfterLastWindowClosed());
    return 0;
}
