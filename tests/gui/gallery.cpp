// Takes pictures of the window in all its states, for people to look at.
//
//   oxlade_gallery FOLDER [FONT FAMILY]
#include "tests/gui/program.h"
#include "ui/alerts.h"

#include <QApplication>
#include <QDir>
#include <QMessageBox>
#include <QTimer>

#include <functional>
#include <vector>

using namespace oxlade;
using namespace oxlade::test;

namespace {

const std::string image = "/home/user/Music/MPC4000/mpc4000_os_v1.71_final_release.bin";

struct State {
    const char* name;
    std::function<void(Program&)> reach;
};

void check(Program& program) {
    program.delegate->checkDevice();
    program.print("MPC4000 found.\nFlash geometry: 64 blocks of 65536 bytes, 4 MB in all\n");
}

void ready(Program& program) {
    check(program);
    program.exit(0);
}

void flash(Program& program) {
    ready(program);
    program.delegate->installFirmware();
}

const std::vector<State> states{
    {"1_start", [](Program&) {}},
    {"2_checking", [](Program& p) { p.delegate->checkDevice(); }},
    {"3_ready", ready},
    {"4_erasing",
     [](Program& p) {
         flash(p);
         p.print("Erase 10%\rErase 31%\r");
         p.window().content().girlView->showFrame(2);
     }},
    {"5_writing",
     [](Program& p) {
         flash(p);
         p.print("Erase 50%\rErase 100%\rWrite 5%\rWrite 42%\r");
         p.window().content().girlView->showFrame(5);
     }},
    {"6_done",
     [](Program& p) {
         flash(p);
         p.print("Erase 100%\rWrite 100%\rOS upload complete.\n");
         p.exit(0);
     }},
    {"7_failed",
     [](Program& p) {
         p.delegate->checkDevice();
         p.print("No MPC4000 on the bus.\n");
         p.exit(3);
     }},
    {"8_no_image",
     [](Program& p) {
         p.files.files.erase(bundledImage);
         p.delegate->setFirmwarePath({});
         p.delegate->refreshTexts();
         p.delegate->updateButtons();
     }},
    {"10_log_focused",
     [](Program& p) {
         flash(p);
         for (int i = 0; i <= 100; ++i) p.print("Erase " + std::to_string(i) + "%\r");
         p.window().content().logView->setFocus(Qt::TabFocusReason);
     }},
    {"11_link_focused",
     [](Program& p) { p.window().content().websiteLink->setFocus(Qt::TabFocusReason); }},
    {"9_long_name",
     [](Program& p) {
         p.files.files[image] = {validImage(3'000'000), false};
         p.delegate->selectFirmwareAtPath(image);
         p.window().content().checkButton->setFocus(Qt::TabFocusReason);
     }},
};

void takeWindow(const State& state, std::int64_t language, Scheme scheme, const QString& file) {
    Program program{language};
    program.interface->setColorScheme(scheme);
    program.start();
    QApplication::processEvents();
    state.reach(program);
    program.window().content().logView->flush();
    QApplication::processEvents();
    program.window().grab().save(file);
}

void takeAlert(const Alert& alert, Scheme scheme, const QString& file) {
    Program program{0};
    program.interface->setColorScheme(scheme);
    program.start();
    QTimer::singleShot(100, [&] {
        QWidget* box = QApplication::activeModalWidget();
        box->grab().save(file);
        box->close();
    });
    QtDialogs{[&] { return program.interface->window(); }}.runAlert(alert);
}

Alert confirmation() {
    return {AlertStyle::critical,
            std::string{L("confirm.title")},
            std::string{L("confirm.text")},
            {std::string{L("confirm.ok")}, std::string{L("confirm.cancel")}}};
}

} // namespace

int main(int argc, char* argv[]) {
    QApplication application{argc, argv};
    const QDir folder{QString::fromLocal8Bit(argc > 1 ? argv[1] : ".")};
    folder.mkpath(QStringLiteral("."));
    if (argc > 2) QApplication::setFont(QFont{QString::fromLocal8Bit(argv[2])});
    for (const Scheme scheme : {Scheme::light, Scheme::dark}) {
        const QString look =
            scheme == Scheme::dark ? QStringLiteral("dark") : QStringLiteral("light");
        for (const std::int64_t language : {0, 1})
            for (const State& state : states)
                takeWindow(state, language, scheme,
                           folder.filePath(QStringLiteral("%1_%2_%3.png")
                                               .arg(look, QLatin1String{language ? "ru" : "en"},
                                                    QLatin1String{state.name})));
        CurrentLanguage = 0;
        takeAlert(confirmation(), scheme, folder.filePath(look + QStringLiteral("_en_alert.png")));
        takeAlert({AlertStyle::informational,
                   std::string{L("done.title")},
                   std::string{L("done.text")},
                   {}},
                  scheme, folder.filePath(look + QStringLiteral("_en_alert_done.png")));
    }
    return 0;
}
