// The real window and the real controller, among fakes of the system.
#pragma once

#include "app/app_delegate.h"
#include "i18n/string_table.h"
#include "tests/testing/fake_system.h"
#include "ui/main_window.h"
#include "ui/qt_user_interface.h"

#include <memory>
#include <string>

namespace oxlade::test {

struct Program {
    explicit Program(std::int64_t language = 0, std::string version = "1.0.0",
                     std::string website = "oxlade.example") {
        CurrentLanguage = language;
        interface = std::make_unique<QtUserInterface>(
            WindowContext{std::move(version), std::move(website), [this] { return reduceMotion; }});
        files.files[bundledHelper] = {"", true};
        files.files[bundledImage] = {validImage(3'145'728), false};
        delegate = std::make_shared<AppDelegate>(
            System{queue, processes, files, files, defaults, dialogs, dialogs}, *interface,
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
    WindowContent& content() const { return window().content(); }
    /// What the helper that runs prints.
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
    bool reduceMotion = false;
    std::unique_ptr<QtUserInterface> interface;
    std::shared_ptr<AppDelegate> delegate;
};

} // namespace oxlade::test
