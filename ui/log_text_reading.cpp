// What the user does with the log's text: selecting, copying, scrolling by keys.
#include "ui/log_keys.h"
#include "ui/log_text_view.h"

#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QMimeData>
#include <QScrollBar>
#include <QTextBlock>

#include <algorithm>

namespace oxlade {

bool LogTextView::selectsEverything() const {
    const QTextCursor cursor = textCursor();
    return everything_ > 0 && cursor.anchor() == 0 &&
           cursor.position() == log_.toView(std::min(everything_, log_.taken()));
}

LogTextView::Selection LogTextView::selection() const {
    if (selectsEverything()) return {0, everything_};
    const QTextCursor cursor = textCursor();
    return {log_.toText(cursor.anchor()), log_.toText(cursor.position())};
}

void LogTextView::select(const Selection& selection) {
    const auto toView = [this](qsizetype position) {
        return log_.toView(std::clamp<qsizetype>(position, 0, log_.taken()));
    };
    everything_ = -1;
    setSelection(toView(selection.anchor), toView(selection.caret));
}

void LogTextView::setSelection(qsizetype viewAnchor, qsizetype viewCaret) {
    QTextCursor cursor = textCursor();
    cursor.setPosition(int(viewAnchor));
    cursor.setPosition(int(viewCaret), QTextCursor::KeepAnchor);
    setTextCursor(cursor);
}

void LogTextView::copySelection() {
    const Selection selected = selection();
    if (selected.anchor != selected.caret)
        QApplication::clipboard()->setMimeData(createMimeDataFromSelection());
}

void LogTextView::selectEverything() {
    everything_ = log_.text().size();
    selectAll();
}

QMimeData* LogTextView::createMimeDataFromSelection() const {
    const Selection selected = selection();
    const auto [from, to] = std::minmax(selected.anchor, selected.caret);
    auto* copied = new QMimeData;
    copied->setText(log_.text().mid(from, to - from));
    return copied;
}

bool LogTextView::event(QEvent* event) {
    focusRing_.follow(*event);
    return QPlainTextEdit::event(event);
}

void LogTextView::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::SelectAll)) return selectEverything();
    if (event->matches(QKeySequence::Copy)) return copySelection();
    if (scrollByKey(*verticalScrollBar(), *event)) return;
    if (extendsSelection(*event)) selectFromWhatIsSeen();
    QPlainTextEdit::keyPressEvent(event);
}

/// A selection that is begun by keys begins where the user looks.
void LogTextView::selectFromWhatIsSeen() {
    if (textCursor().hasSelection() || viewport()->rect().intersects(cursorRect())) return;
    setTextCursor(cursorForPosition({0, 0}));
}

void LogTextView::mouseDoubleClickEvent(QMouseEvent* event) {
    QPlainTextEdit::mouseDoubleClickEvent(event);
    sinceDoubleClick_.start();
    doubleClickedAt_ = event->pos();
}

void LogTextView::mousePressEvent(QMouseEvent* event) {
    QPlainTextEdit::mousePressEvent(event);
    const bool third =
        event->button() == Qt::LeftButton && sinceDoubleClick_.isValid() &&
        !sinceDoubleClick_.hasExpired(QApplication::doubleClickInterval()) &&
        (event->pos() - doubleClickedAt_).manhattanLength() < QApplication::startDragDistance();
    sinceDoubleClick_.invalidate();
    if (third) selectLineAt(event->pos());
}

/// The toolkit takes the whole block, which may be many lines.
void LogTextView::selectLineAt(const QPoint& at) {
    const QTextCursor clicked = cursorForPosition(at);
    const QString text = clicked.block().text();
    if (!text.contains(QChar{QChar::LineSeparator})) return;
    const qsizetype column = clicked.positionInBlock();
    const qsizetype before =
        column == 0 ? -1 : text.lastIndexOf(QChar{QChar::LineSeparator}, column - 1);
    const qsizetype after = text.indexOf(QChar{QChar::LineSeparator}, column);
    const int start = clicked.block().position();
    setSelection(start + before + 1, start + (after < 0 ? text.size() : after + 1));
}

} // namespace oxlade
