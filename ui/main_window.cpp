#include "ui/main_window.h"

#include "ui/alert_sheet.h"

#include <QApplication>
#include <QCloseEvent>
#include <QIcon>
#include <QKeyEvent>
#include <QLayout>
#include <QPushButton>
#include <QScreen>
#include <QTimer>
#include <QWindow>

#include <algorithm>

namespace oxlade {
namespace {

constexpr Qt::WindowFlags frameFlags = Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                                       Qt::WindowSystemMenuHint | Qt::WindowMinimizeButtonHint |
                                       Qt::WindowCloseButtonHint;

/// The sizes that window managers ask for. An icon of a size that is not there is scaled.
QIcon applicationIcon() {
    QIcon icon;
    for (const int size : {16, 24, 32, 48, 64, 128}) {
        const QString file = QStringLiteral(":/icon/%1-%2.png");
        // The format is named: else Qt loads the plugins of all image formats.
        icon.addPixmap(QPixmap{file.arg(QGuiApplication::desktopFileName()).arg(size), "png"});
    }
    return icon;
}

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
    // No control has the focus at first: Tab moves it to the first one.
    setFocus();
    menu_.install(menu);
    adjustSize();
    move(startingPlace(screen()->availableGeometry(), size()));
}

void MainWindow::makeKeyAndOrderFront() {
    show();
    windowHandle()->installEventFilter(this);
}

bool MainWindow::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Expose && watched == windowHandle()) {
        watched->removeEventFilter(this);
        centreFrame();
        // Qt paints within this event. The icon can wait until the frame is on the screen.
        constexpr int afterTheFirstFrame = 100; // milliseconds
        QTimer::singleShot(afterTheFirstFrame, this,
                           [] { QApplication::setWindowIcon(applicationIcon()); });
    }
    return QMainWindow::eventFilter(watched, event);
}

void MainWindow::centreFrame() {
    const QRect frame = windowHandle()->frameGeometry();
    // Wayland has no places, and a window manager may have chosen another one.
    if (QGuiApplication::platformName().startsWith(QLatin1String{"wayland"}) ||
        frame.topLeft() != startingPlace(screen()->availableGeometry(), size()))
        return;
    move(startingPlace(screen()->availableGeometry(), frame.size()));
}

void MainWindow::keyPressEvent(QKeyEvent* event) {
    const bool isDefaultKey = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isDefaultKey && (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier)
        findChild<QPushButton*>(QStringLiteral("installButton"))->click();
    else if (!menu_.press(*event))
        QMainWindow::keyPressEvent(event);
}

void MainWindow::changeEvent(QEvent* event) {
    // GNOME has no server-side decoration for Wayland clients, and the one that Qt draws there has
    // a button for it, whatever the window's flags are.
    if (event->type() == QEvent::WindowStateChange && isMaximized())
        setWindowState(windowState() & ~Qt::WindowMaximized);
    QMainWindow::changeEvent(event);
}

void MainWindow::closeEvent(QCloseEvent* event) {
    auto* alert = dynamic_cast<AlertSheet*>(
        findChild<QWidget*>(AlertSheet::name, Qt::FindDirectChildrenOnly));
    if (alert == nullptr) return QMainWindow::closeEvent(event);
    event->ignore();
    setWindowState(windowState() & ~Qt::WindowMinimized);
    alert->pointOut();
}

Controls MainWindow::controls() {
    Controls result = content_->controls();
    result.window = this;
    return result;
}

} // namespace oxlade
