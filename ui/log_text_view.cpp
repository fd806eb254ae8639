#include "ui/log_text_view.h"

#include "platform/text.h"
#include "ui/fonts.h"
#include "ui/slim_scroll_bar.h"

#include <QKeyEvent>
#include <QMimeData>
#include <QTextBlock>

namespace oxlade {
namespace {

constexpr int inset = 10;
constexpr int frameMilliseconds = 16;
constexpr int sliceMilliseconds = 10;
constexpr qsizetype pieceLength = 32 * 1024;

} // namespace

LogTextView::LogTextView(QWidget* parent) : QPlainTextEdit{parent} {
    setFont(monospacedFont(11));
    setReadOnly(true);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setUndoRedoEnabled(false);
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    setFrameShape(QFrame::NoFrame);
    viewport()->setAutoFillBackground(false);
    document()->setDocumentMargin(0);
    setViewportMargins(inset, inset, inset, inset);
    setVerticalScrollBar(new SlimScrollBar{this});
    setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setTabChangesFocus(true);
    nextSlice_.setSingleShot(true);
    connect(&nextSlice_, &QTimer::timeout, this, [this] { takeSlice(sliceMilliseconds); });
}

void LogTextView::append(std::string_view text) {
    if (text.empty()) return;
    log_.append(toQString(text));
    if (nextSlice_.isActive()) return;
    if (!sinceSlice_.isValid() || sinceSlice_.hasExpired(frameMilliseconds))
        takeSlice(sliceMilliseconds);
    else
        nextSlice_.start(frameMilliseconds);
}

void LogTextView::flush() {
    while (isBehind()) takeSlice(1000);
}

void LogTextView::takeSlice(int milliseconds) {
    QElapsedTimer spent;
    spent.start();
    do {
        insert(log_.take(pieceLength));
    } while (isBehind() && !spent.hasExpired(milliseconds));
    scrollToEnd();
    sinceSlice_.start();
    if (isBehind())
        nextSlice_.start(1);
    else
        nextSlice_.stop();
}

void LogTextView::insert(const QString& piece) {
    const QTextCursor selection = textCursor();
    QTextCursor end{document()};
    end.movePosition(QTextCursor::End);
    const bool touched = std::max(selection.anchor(), selection.position()) >= end.position();
    const int anchor = selection.anchor(), position = selection.position();
    end.insertText(piece);
    if (!touched) return;
    // What was selected up to the end must not grow by what is added there.
    QTextCursor restored = textCursor();
    restored.setPosition(anchor);
    restored.setPosition(position, QTextCursor::KeepAnchor);
    setTextCursor(restored);
}

void LogTextView::scrollToEnd() {
    // The first step lays the last lines out, which may add rows to the second.
    for (int step = 0; step < 2; ++step) {
        verticalScrollBar()->setValue(verticalScrollBar()->maximum());
        blockBoundingGeometry(document()->lastBlock());
    }
}

void LogTextView::copySelection() { copy(); }

void LogTextView::selectEverything() {
    flush();
    selectAll();
}

void LogTextView::keyPressEvent(QKeyEvent* event) {
    flush();
    QPlainTextEdit::keyPressEvent(event);
}

/// The toolkit's own menu would speak another language than the window.
void LogTextView::contextMenuEvent(QContextMenuEvent* event) { event->accept(); }

QMimeData* LogTextView::createMimeDataFromSelection() const {
    auto* copied = new QMimeData;
    const QTextCursor cursor = textCursor();
    copied->setText(log_.between(cursor.selectionStart(), cursor.selectionEnd()));
    return copied;
}

} // namespace oxlade
