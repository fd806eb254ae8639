#include "ui/main_menu.h"

#include "ui/qt_button.h"
#include "ui/qt_log_view.h"
#include "ui/text.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMainWindow>
#include <QMenuBar>

#include <string_view>
#include <utility>

namespace oxlade {
namespace {

QString plainTitle(const std::string& title) { return withoutMnemonic(toQString(title)); }

QKeySequence commandKey(char letter) {
    const auto key = static_cast<Qt::Key>(Qt::Key_A + (letter - 'a'));
    return QKeySequence{QKeyCombination{Qt::ControlModifier, key}};
}

/// By the key codes of X11, which Qt gives on Wayland, too.
char letterAt(quint32 scanCode) {
    struct Row {
        quint32 first;
        std::string_view letters;
    };
    for (const Row& row : {Row{24, "qwertyuiop"}, Row{38, "asdfghjkl"}, Row{52, "zxcvbnm"}})
        if (scanCode >= row.first && scanCode - row.first < row.letters.size())
            return row.letters[scanCode - row.first];
    return 0;
}

} // namespace

char commandLetter(const QKeyEvent& event) {
    if (event.modifiers() != Qt::ControlModifier) return 0;
    const int key = event.key();
    if (key >= Qt::Key_A && key <= Qt::Key_Z) return static_cast<char>('a' + (key - Qt::Key_A));
    constexpr int lastLatin = 0xFF;
    return key > lastLatin && key < Qt::Key_Escape ? letterAt(event.nativeScanCode()) : '\0';
}

MainMenu::MainMenu(QMainWindow& window) : window_{window} {
    connect(qApp, &QApplication::focusChanged, this,
            [this](QWidget*, QWidget* to) { focusMoved(to); });
}

void MainMenu::install(const MenuTree& tree) {
    editing_.clear();
    auto* bar = new QMenuBar;
    for (const Menu& description : tree) {
        QMenu* menu = bar->addMenu(plainTitle(description.title));
        for (const MenuItem& item : description.items) addItem(*menu, item);
    }
    // The window deletes the bar that it had before.
    window_.setMenuBar(bar);
    // At once: without a visible bar the window would shrink and grow again.
    if (window_.isVisible()) bar->show();
    bar_ = bar;
    enableEditing();
}

void MainMenu::addItem(QMenu& menu, const MenuItem& item) {
    QAction* action = menu.addAction(plainTitle(item.title));
    action->setShortcut(commandKey(item.keyEquivalent));
    const bool quits = item.action == MenuAction::terminate;
    // Always set: macOS would otherwise guess the role from the title.
    action->setMenuRole(quits ? QAction::QuitRole : QAction::NoRole);
    connect(action, &QAction::triggered, this, [this, what = item.action] { perform(what); });
    if (!quits) editing_ << action;
    if (item.action == MenuAction::copy) copy_ = action;
}

bool MainMenu::press(const QKeyEvent& key) {
    if (key.key() == Qt::Key_F10 && bar_->isEnabled()) {
        bar_->setActiveAction(bar_->actions().first());
        return true;
    }
    const char letter = commandLetter(key);
    if (letter == 0) return false;
    for (const QAction* menu : bar_->actions())
        for (QAction* item : menu->menu()->actions())
            if (item->shortcut() == commandKey(letter) && item->isEnabled())
                return item->trigger(), true;
    return false;
}

void MainMenu::perform(MenuAction action) {
    switch (action) {
    case MenuAction::terminate:
        QCoreApplication::exit();
        return;
    case MenuAction::copy:
        if (auto* log = target()) log->copySelection();
        return;
    case MenuAction::selectAll:
        if (auto* log = target()) log->selectEverything();
        return;
    }
}

void MainMenu::focusMoved(QWidget* to) {
    const bool menu = qobject_cast<QMenuBar*>(to) != nullptr || qobject_cast<QMenu*>(to) != nullptr;
    if (to == nullptr || menu) return;
    focused_ = to;
    disconnect(selecting_);
    if (const auto* log = target())
        selecting_ =
            connect(log, &QPlainTextEdit::copyAvailable, this, [this] { enableEditing(); });
    enableEditing();
}

void MainMenu::enableEditing() {
    const auto* log = target();
    for (QAction* action : std::as_const(editing_))
        action->setEnabled(log != nullptr && (action != copy_ || log->hasSelection()));
}

QtLogView* MainMenu::target() const { return dynamic_cast<QtLogView*>(focused_.data()); }

} // namespace oxlade
