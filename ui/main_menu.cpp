#include "ui/main_menu.h"

#include "ui/log_text_view.h"
#include "ui/palette.h"
#include "ui/text.h"

#include <QApplication>
#include <QMainWindow>
#include <QMenuBar>
#include <QPainter>
#include <QStyleOptionMenuItem>

#include <utility>

namespace oxlade {
namespace {

QString plainTitle(const std::string& title) {
    return toQString(title).replace(u'&', QStringLiteral("&&"));
}

QKeySequence commandKey(char letter) {
    const auto key = Qt::Key(Qt::Key_A + (letter - 'a'));
    return QKeySequence{QKeyCombination{Qt::ControlModifier, key}};
}

} // namespace

void MenuBar::paintEvent(QPaintEvent*) {
    QPainter painter{this};
    painter.fillRect(rect(), palette().window());
    painter.fillRect(0, height() - 1, width(), 1, color(SemanticColor::separatorColor, palette()));
    constexpr int text = Qt::AlignCenter | Qt::TextShowMnemonic | Qt::TextSingleLine;
    for (QAction* action : actions()) {
        QStyleOptionMenuItem item;
        initStyleOption(&item, action);
        const QRect place = actionGeometry(action);
        const bool chosen = item.state & QStyle::State_Selected;
        if (chosen) painter.fillRect(place.adjusted(0, 0, 0, -1), palette().highlight());
        style()->drawItemText(&painter, place, text, palette(), action->isEnabled(), item.text,
                              chosen ? QPalette::HighlightedText : QPalette::WindowText);
    }
}

MainMenu::MainMenu(QMainWindow& window) : window_{window} {
    connect(qApp, &QApplication::focusChanged, this,
            [this](QWidget*, QWidget* to) { focusMoved(to); });
}

void MainMenu::install(const MenuTree& tree) {
    editing_.clear();
    auto* bar = new MenuBar;
    for (const Menu& description : tree) {
        QMenu* menu = bar->addMenu(plainTitle(description.title));
        for (const MenuItem& item : description.items) addItem(*menu, item);
    }
    // The window deletes the bar that it had.
    window_.setMenuBar(bar);
    // At once: without a bar to be seen the window would shrink and grow again.
    if (window_.isVisible()) bar->show();
    bar_ = bar;
    enableEditing();
}

void MainMenu::addItem(QMenu& menu, const MenuItem& item) {
    QAction* action = menu.addAction(plainTitle(item.title));
    action->setShortcut(commandKey(item.keyEquivalent));
    const bool quits = item.action == MenuAction::terminate;
    // Said for each: a Mac would otherwise guess it from the title.
    action->setMenuRole(quits ? QAction::QuitRole : QAction::NoRole);
    connect(action, &QAction::triggered, this, [this, what = item.action] { perform(what); });
    if (!quits) editing_ << action;
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
    enableEditing();
}

void MainMenu::enableEditing() {
    for (QAction* action : std::as_const(editing_)) action->setEnabled(target() != nullptr);
}

LogTextView* MainMenu::target() const { return dynamic_cast<LogTextView*>(focused_.data()); }

} // namespace oxlade
