// A window with nothing in it: the cost of Qt itself.
// usage: bench_empty_window WIDTH HEIGHT
#include <QApplication>
#include <QWidget>

#include <cstdlib>

int main(int argc, char* argv[]) {
    QApplication application{argc, argv};
    if (argc != 3) return 2;
    QWidget window;
    window.setFixedSize(std::atoi(argv[1]), std::atoi(argv[2]));
    window.show();
    return QApplication::exec();
}
