// The usual way, to compare with: QProcess on the main thread; each line goes to a text view
// and a bar as it arrives.
//
// usage: bench_usual_way HELPER [ARGUMENT...]
#include "benchmarks/flood/main_thread_watch.h"
#include "benchmarks/flood/report.h"
#include "benchmarks/windows/stock_window.h"

#include <QApplication>
#include <QProcess>
#include <QTimer>

#include <cstdio>
#include <optional>
#include <unistd.h>

using namespace oxlade::benchmarks;

namespace {

class UsualProgram final {
  public:
    UsualProgram() {
        window_.show();
        process_.setProcessChannelMode(QProcess::MergedChannels);
        QObject::connect(&process_, &QProcess::readyReadStandardOutput, &process_,
                         [this] { takeOutput(); });
        QObject::connect(&process_, &QProcess::finished, &process_, [this] { finish(); });
    }

    void begin(const QString& helper, const QStringList& arguments) {
        report_.before = memory();
        mainSecondsBefore_ = threadSeconds();
        time_.start();
        watch_.emplace([] {});
        process_.start(helper, arguments);
    }

  private:
    void takeOutput() {
        rest_ += process_.readAllStandardOutput();
        rest_.replace('\r', '\n');
        qsizetype from = 0;
        for (qsizetype end = 0; (end = rest_.indexOf('\n', from)) >= 0; from = end + 1)
            takeLine(rest_.mid(from, end - from));
        rest_.remove(0, from);
    }
    void takeLine(const QByteArray& line) {
        window_.log->appendPlainText(QString::fromUtf8(line));
        unsigned percent = 0;
        if (std::sscanf(line.constData(), "Erase %u%%", &percent) == 1)
            window_.bar->setValue(static_cast<int>(percent / 2));
        else if (std::sscanf(line.constData(), "Write %u%%", &percent) == 1)
            window_.bar->setValue(static_cast<int>(50 + percent / 2));
    }
    void finish() {
        takeOutput();
        report_.mainSeconds = threadSeconds() - mainSecondsBefore_;
        report_.totalMilliseconds = static_cast<double>(time_.nsecsElapsed()) / 1e6;
        report_.helperMilliseconds = report_.totalMilliseconds;
        // The tick after this, so that the last gap counts.
        QTimer::singleShot(5, [this] {
            report_.characters = window_.log->document()->characterCount();
            report_.after = memory();
            report_.gaps = watch_->gaps();
            print(report_);
            _exit(0);
        });
    }

    StockWindow window_{{760, 642}};
    QProcess process_;
    QByteArray rest_;
    FloodReport report_;
    double mainSecondsBefore_ = 0;
    QElapsedTimer time_;
    std::optional<MainThreadWatch> watch_;
};

} // namespace

int main(int argc, char* argv[]) {
    QApplication application{argc, argv};
    const QStringList arguments = QApplication::arguments();
    if (argc < 2) return 2;
    UsualProgram program;
    QTimer::singleShot(500, [&] { program.begin(arguments[1], arguments.mid(2)); });
    return QApplication::exec();
}
