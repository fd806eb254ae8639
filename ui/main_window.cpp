#include "ui/main_window.h"

#include <QLayout>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>

#include <algorithm>

namespace oxlade {
namespace {

constexpr Qt::WindowFlags frameFlags = Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                                       Qt::WindowSystemMenuHint | Qt::WindowMinimizeButtonHint |
                                       Qt::WindowCloseButtonHint;

} // namespace

QPoint startingPlace(const QRect& available, const QSize& window) {
    const QPoint centred = available.center() - QRect{{}, window}.center();
    return {std::max(centred.x(), available.left()), std::max(centred.y(), available.top())};
}

MainWindow::MainWindow(const WindowContext& context, const WindowActions& actions,
                       const MenuTree& menu)
    : QMainWindow{nullptr, frameFlags}, menu_{*this}, content_{new WindowContent{context, actions,
                                                                                 this}} {
    setObjectName(QStringLiteral("window"));
    setWindowTitle(QStringLiteral("Oxlade"));
    setContextMenuPolicy(Qt::NoContextMenu);
    setCentralWidget(content_);
    layout()->setSizeConstraint(QLayout::SetFixedSize);
    addDefaultKey(Qt::Key_Return);
    addDefaultKey(Qt::Key_Enter);
    // No control has the focus at first: Tab moves it to the first one.
    setFocus();
    menu_.install(menu);
    adjustSize();
    move(startingPlace(screen()->availableGeometry(), size()));
}

void MainWindow::addDefaultKey(int key) {
    auto* shortcut = new QShortcut{QKeySequence{key}, this};
    shortcut->setAutoRepeat(false);
    auto* install = findChild<QPushButton*>(QStringLiteral("installButton"));
    connect(shortcut, &QShortcut::activated, install, &QPushButton::click);
}

Controls MainWindow::controls() {
    Controls result = content_->controls();
    result.window = this;
    return result;
}

} // namespace oxlade
