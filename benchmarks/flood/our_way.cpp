// The program's own way from the helper to the window. Everything is real but the alerts,
// which are answered at once.
//
// usage: bench_our_way MACOS-FOLDER check|flash|rest [until-exit]
//
// `rest` measures two seconds in which nothing runs; `until-exit` does not wait for
// the log. OXLADE_SIM tells the simulated sampler what to do.
#include "app/app_delegate.h"
#include "benchmarks/flood/main_thread_watch.h"
#include "benchmarks/flood/report.h"
#include "benchmarks/flood/timed_processes.h"
#include "platform/bundle.h"
#include "platform/desktop_session.h"
#include "platform/desktop_settings.h"
#include "platform/file_system.h"
#include "platform/helper_process.h"
#include "platform/main_queue.h"
#include "platform/sleep_lock.h"
#include "platform/user_environment.h"
#include "ui/main_window.h"
#include "ui/qt_log_view.h"
#include "ui/qt_user_interface.h"

#include <QApplication>
#include <QTimer>

#include <cstring>
#include <optional>
#include <unistd.h>

using namespace oxlade;
using namespace oxlade::benchmarks;

namespace {

class YesDialogs final : public Dialogs {
  public:
    bool runAlert(const Alert&) override { return true; }
    std::optional<std::string> runOpenPanel(const OpenPanel&) override { return std::nullopt; }
};

enum class What { check, flash, rest };

What whatOf(const char* word) {
    if (std::strcmp(word, "rest") == 0) return What::rest;
    return std::strcmp(word, "flash") == 0 ? What::flash : What::check;
}

class Measurement final {
  public:
    Measurement(AppDelegate& delegate, TimedProcesses& processes, QtLogView& log, bool untilExit)
        : delegate_{delegate}, processes_{processes}, log_{log}, untilExit_{untilExit} {}

    void begin(What what) {
        report_.before = memory();
        mainSecondsBefore_ = threadSeconds();
        time_.start();
        watch_.emplace([this, what] { look(what); });
        if (what == What::check) delegate_.checkDevice();
        if (what == What::flash) delegate_.installFirmware();
    }

  private:
    void look(What what) {
        if (what == What::rest ? time_.elapsed() < 2000 : !isDone()) return;
        report_.mainSeconds = threadSeconds() - mainSecondsBefore_;
        report_.readerSeconds = processes_.readerSeconds();
        report_.totalMilliseconds = static_cast<double>(time_.nsecsElapsed()) / 1e6;
        report_.helperMilliseconds = processes_.milliseconds();
        report_.characters = log_.string().size();
        report_.after = memory();
        report_.gaps = watch_->gaps();
        print(report_);
        _exit(0); // a log of a gigabyte takes a while to destroy
    }
    bool isDone() const {
        if (untilExit_) return processes_.milliseconds() > 0;
        return delegate_.currentTask() == nullptr && !log_.isBehind();
    }

    AppDelegate& delegate_;
    TimedProcesses& processes_;
    QtLogView& log_;
    bool untilExit_;
    FloodReport report_;
    double mainSecondsBefore_ = 0;
    QElapsedTimer time_;
    std::optional<MainThreadWatch> watch_;
};

} // namespace

int main(int argc, char* argv[]) {
    QApplication application{argc, argv};
    if (argc < 3) return 2;
    const std::string folder = argv[1];

    QtUserDefaults userDefaults;
    QtBundle bundle{folder};
    PosixFileSystem fileSystem;
    PosixSleepLock sleepLock{[] { return std::string{"benchmark"}; }};
    PosixHelperProcesses helperProcesses{folder + "/oxlade-keeper", &sleepLock};
    TimedProcesses timedProcesses{helperProcesses};
    QtWorkspace workspace;
    QtDesktopSession desktopSession{"io.oxlade.Benchmark"};
    DesktopSettings desktop;
    YesDialogs dialogs;
    const auto mainQueue = PosixMainQueue::make();
    const MainQueuePump pump{mainQueue};
    QtUserInterface userInterface{
        {bundle.version(), "oxlade.example", [&desktop] { return desktop.shouldReduceMotion(); }}};
    const auto delegate =
        std::make_shared<AppDelegate>(System{mainQueue, timedProcesses, bundle, fileSystem,
                                             userDefaults, dialogs, workspace, desktopSession},
                                      userInterface, "https://oxlade.example/");
    delegate->installMainMenu();
    delegate->applicationDidFinishLaunching();

    auto& window = static_cast<MainWindow&>(*userInterface.window());
    auto& log = dynamic_cast<QtLogView&>(*window.controls().logView);
    Measurement measurement{*delegate, timedProcesses, log, argc > 3};
    // Once the window is painted.
    QTimer::singleShot(500, [&] { measurement.begin(whatOf(argv[2])); });
    return QApplication::exec();
}
