#include "ui/main_window.h"

#include <QApplication>
#include <QLayout>
#include <QMouseEvent>
#include <QScreen>
#include <QShortcut>
#include <QWindow>

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

MainWindow::MainWindow(const WindowContext& context, const WindowActions& actions)
    : QMainWindow{nullptr, frameFlags}, menu_{*this}, content_{new WindowContent{context, actions,
                                                                                 this}} {
    setObjectName(QStringLiteral("window"));
    setWindowTitle(QStringLiteral("Oxlade"));
    setContextMenuPolicy(Qt::NoContextMenu);
    setCentralWidget(content_);
    layout()->setSizeConstraint(QLayout::SetFixedSize);
    addDefaultKey(Qt::Key_Return);
    addDefaultKey(Qt::Key_Enter);
    startMove = [this] { windowHandle()->startSystemMove(); };
    // No control has the keyboard at first; Tab begins with the first one.
    setFocus();
}

void MainWindow::addDefaultKey(int key) {
    auto* shortcut = new QShortcut{QKeySequence{key}, this};
    shortcut->setAutoRepeat(false);
    connect(shortcut, &QShortcut::activated, content_->installButton, &QPushButton::click);
}

void MainWindow::makeKeyAndOrderFront() {
    adjustSize();
    move(startingPlace(screen()->availableGeometry(), size()));
    // A window that comes to the screen comes in front; asking for it once more would
    // be answered, and the answers would delay the first frame.
    if (isVisible()) raise();
    show();
    activateWindow();
}

Controls MainWindow::controls() {
    WindowContent& c = *content_;
    return {*this,
            *c.subtitleLabel,
            *c.languageControl,
            *c.girlView,
            *c.deviceCaptionLabel,
            *c.deviceStatusDot,
            *c.deviceStatusLabel,
            *c.deviceDetailLabel,
            *c.firmwareCaptionLabel,
            *c.firmwareLabel,
            *c.operationLabel,
            *c.percentLabel,
            *c.logCaptionLabel,
            *c.checkButton,
            *c.chooseButton,
            *c.builtinButton,
            *c.installButton,
            *c.progress,
            *c.logView};
}

void MainWindow::mousePressEvent(QMouseEvent* event) {
    const QPoint at = content_->mapFrom(this, event->position().toPoint());
    const bool draggable = event->button() == Qt::LeftButton && content_->rect().contains(at) &&
                           content_->isBackground(at);
    if (draggable) pressedAt_ = event->globalPosition().toPoint();
}

void MainWindow::mouseMoveEvent(QMouseEvent* event) {
    if (!pressedAt_) return;
    const QPoint moved = event->globalPosition().toPoint() - *pressedAt_;
    if (moved.manhattanLength() < QApplication::startDragDistance() / 2) return;
    pressedAt_.reset();
    startMove();
}

void MainWindow::mouseReleaseEvent(QMouseEvent*) { pressedAt_.reset(); }

} // namespace oxlade
