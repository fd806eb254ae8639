// Prints how fast the log takes text, and how long the main thread is held at most.
#include "ui/log_text_view.h"

#include <QApplication>
#include <QElapsedTimer>

#include <cstdio>
#include <string>

using namespace oxlade;

namespace {

struct Result {
    double seconds = 0;      ///< until everything is in the view
    double takenSeconds = 0; ///< until everything was taken
    qint64 worst = 0;        ///< ms
};

/// Appends `piece` `count` times, as many in a row as ten milliseconds hold, with
/// a turn of the event loop in between, as the main queue's pump does.
Result feed(LogTextView& log, const std::string& piece, int count) {
    Result result;
    QElapsedTimer total, turn;
    total.start();
    int done = 0;
    while (done < count || log.isBehind()) {
        if (result.takenSeconds == 0 && done == count)
            result.takenSeconds = double(total.elapsed()) / 1000;
        turn.start();
        for (; done < count && !turn.hasExpired(10); ++done) log.append(piece);
        QApplication::processEvents();
        result.worst = std::max(result.worst, turn.elapsed());
    }
    result.seconds = double(total.elapsed()) / 1000;
    return result;
}

void report(const char* what, const std::string& piece, int count) {
    QWidget window;
    window.resize(712, 156);
    LogTextView log{&window};
    log.resize(window.size());
    window.show();
    QApplication::processEvents();
    const Result result = feed(log, piece, count);
    std::printf(
        "%-34s taken in %6.2f s, in the view after %6.2f s (%.0f pieces/s), longest turn %lld ms\n",
        what, result.takenSeconds, result.seconds, count / result.seconds,
        static_cast<long long>(result.worst));
    std::fflush(stdout);
}

} // namespace

int main(int argc, char* argv[]) {
    QApplication application{argc, argv};
    const std::string line(59, 'x');
    std::string chunk;
    for (int i = 0; i < 1000; ++i) chunk += line + '\n';
    report("300000 lines, one by one", line + '\n', 300'000);
    report("1000000 lines, 1000 at a time", chunk, 1000);
    report("50 MB without a line end", std::string(65'536, 'x'), 800);
    report("10 MB without end, 100 at a time", std::string(100, 'x'), 100'000);
    report("20000 lines of spaced words",
           "alpha beta gamma delta epsilon zeta eta theta iota kappa lambda mu nu xi omicron pi "
           "rho sigma tau upsilon phi chi psi omega\n",
           20'000);
    return 0;
}
