// usage: bench_stock_window WIDTH HEIGHT
#include "benchmarks/windows/stock_window.h"

#include <QApplication>

#include <cstdlib>

int main(int argc, char* argv[]) {
    QApplication application{argc, argv};
    if (argc != 3) return 2;
    oxlade::benchmarks::StockWindow window{{std::atoi(argv[1]), std::atoi(argv[2])}};
    window.show();
    return QApplication::exec();
}
