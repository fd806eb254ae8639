// A window with as many widgets as ours has, of the kinds that Qt has:
// what a program like ours would look like without any drawing of its own.
#pragma once

#include <QLabel>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QWidget>

namespace oxlade::benchmarks {

class StockWindow final : public QWidget {
  public:
    explicit StockWindow(QSize size) {
        setWindowTitle(QStringLiteral("Stock"));
        setFixedSize(size);
        for (int i = 0; i < 11; ++i) addLabel(i);
        for (int i = 0; i < 7; ++i) addButton(i);
        bar = new QProgressBar{this};
        bar->setGeometry(40, 350, 520, 20);
        log = new QPlainTextEdit{this};
        log->setReadOnly(true);
        log->setGeometry(24, size.height() - 200, 712, 156);
        log->appendPlainText(QStringLiteral("Oxlade is ready."));
    }

    QProgressBar* bar = nullptr;
    QPlainTextEdit* log = nullptr;

  private:
    void addLabel(int number) {
        auto* label = new QLabel{QStringLiteral("A label, number %1").arg(number), this};
        label->setGeometry(24 + number % 2 * 280, 20 + number / 2 * 24, 270, 20);
    }
    void addButton(int number) {
        auto* button = new QPushButton{QStringLiteral("Button %1").arg(number), this};
        button->setGeometry(24 + number % 4 * 120, 200 + number / 4 * 48, 104, 32);
    }
};

} // namespace oxlade::benchmarks
