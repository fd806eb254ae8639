#include "ui/log_text_view.h"

#include "ui/fonts.h"
#include "ui/slim_scroll_bar.h"
#include "ui/text.h"

#include <QAbstractTextDocumentLayout>
#include <QAccessible>
#include <QContextMenuEvent>
#include <QSignalBlocker>
#include <QTextBlock>
#include <QTextLayout>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace oxlade {
namespace {

constexpr int inset = 10;
/// The part of the inset that the document has all around. The scroll range counts
/// it twice at the end, so it must stay below half the foot.
constexpr int margin = 4;
constexpr int frameMilliseconds = 16;
constexpr int sliceMilliseconds = 10;
constexpr qsizetype flood = 8 * qsizetype{1024};
constexpr qsizetype shortestPiece = 2 * qsizetype{1024}, longestPiece = 64 * qsizetype{1024};

/// What the font's metrics say, rounded as the layout rounds it.
double rowHeight(const QFont& font) {
    QTextLayout layout{QStringLiteral("x"), font};
    layout.beginLayout();
    QTextLine line = layout.createLine();
    line.setLeadingIncluded(true);
    layout.endLayout();
    return line.height();
}

} // namespace

LogTextView::LogTextView(QWidget* parent) : QPlainTextEdit{parent}, pieceLength_{flood} {
    setVerticalScrollBar(new SlimScrollBar{this});
    // Always there, if empty: were it to appear, all lines would be wrapped anew.
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFont(monospacedFont(11));
    setReadOnly(true);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setUndoRedoEnabled(false);
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    setFrameShape(QFrame::NoFrame);
    viewport()->setAutoFillBackground(false);
    document()->setDocumentMargin(margin);
    setTabChangesFocus(true);
    nextSlice_.setSingleShot(true);
    connect(&nextSlice_, &QTimer::timeout, this, [this] { takeSlice(sliceMilliseconds); });
}

void LogTextView::append(std::string_view text) {
    if (text.empty()) return;
    log_.append(toQString(text));
    if (nextSlice_.isActive()) return;
    // What comes before the first frame is in it.
    if (!painted_ || !sinceSlice_.isValid() || sinceSlice_.hasExpired(frameMilliseconds))
        takeSlice(sliceMilliseconds);
    else
        nextSlice_.start(frameMilliseconds);
}

void LogTextView::flush() {
    while (isBehind()) takeSlice(1000);
}

void LogTextView::takeSlice(int milliseconds) {
    const auto lines = log_.pending() > flood ? LogText::Lines::packed : LogText::Lines::each;
    QElapsedTimer spent;
    spent.start();
    do {
        insert(lines);
    } while (isBehind() && !spent.hasExpired(milliseconds));
    scrollToEnd();
    announce();
    sinceSlice_.start();
    if (isBehind())
        nextSlice_.start(1);
    else
        nextSlice_.stop();
}

void LogTextView::insert(LogText::Lines lines) {
    QElapsedTimer spent;
    spent.start();
    const bool everything = selectsEverything();
    const QTextCursor selected = textCursor();
    const int anchor = selected.anchor(), caret = selected.position();
    QTextCursor end{document()};
    end.movePosition(QTextCursor::End);
    const int firstBlock = end.blockNumber();
    const bool touched = std::max(anchor, caret) >= end.position();
    {
        // The view is brought up to date once for many pieces, and screen readers
        // are told of the text as it was given instead of as it is cut up here.
        const QSignalBlocker quietDocument{document()};
        const QSignalBlocker quietLayout{document()->documentLayout()};
        end.insertText(log_.take(pieceLength_, lines));
        if (lines == LogText::Lines::packed)
            estimateRows(document()->findBlockByNumber(firstBlock));
    }
    if (everything)
        setSelection(0, log_.toView(std::min(everything_, log_.taken())));
    else if (touched) // What was selected up to the end must not grow by what is added.
        setSelection(anchor, caret);
    if (spent.elapsed() > 5)
        pieceLength_ = std::max(pieceLength_ / 2, shortestPiece);
    else if (spent.elapsed() < 2)
        pieceLength_ = std::min(pieceLength_ * 2, longestPiece);
}

/// Tells the scroll range how high blocks are that nobody has looked at yet: a guess
/// that is mended when they are.
void LogTextView::estimateRows(QTextBlock block) {
    const double width = viewport()->width() - 2 * margin;
    const auto columns = qsizetype(width / std::max(1.0, QFontMetricsF{font()}.averageCharWidth()));
    for (; block.isValid(); block = block.next()) {
        int rows = 0;
        const QString text = block.text();
        for (const QStringView line : QStringView{text}.split(QChar{QChar::LineSeparator}))
            rows +=
                1 + int(std::max<qsizetype>(line.size() - 1, 0) / std::max<qsizetype>(columns, 1));
        block.setLineCount(rows);
    }
}

void LogTextView::scrollToEnd() {
    QAbstractTextDocumentLayout* layout = document()->documentLayout();
    Q_EMIT layout->documentSizeChanged(layout->documentSize());
    // The first step lays the last lines out, which may add rows to the second.
    for (int step = 0; step < 2; ++step) {
        verticalScrollBar()->setValue(verticalScrollBar()->maximum());
        blockBoundingGeometry(document()->lastBlock());
    }
    viewport()->update();
}

void LogTextView::announce() {
    if (QAccessible::isActive() && announced_ < log_.text().size()) {
        QAccessibleTextInsertEvent event{this, int(announced_),
                                         withVisibleNuls(log_.text().mid(announced_))};
        QAccessible::updateAccessibility(&event);
    }
    announced_ = log_.text().size();
}

void LogTextView::paintEvent(QPaintEvent* event) {
    painted_ = true;
    QPlainTextEdit::paintEvent(event);
}

/// The toolkit's own menu would speak another language than the window.
void LogTextView::contextMenuEvent(QContextMenuEvent* event) { event->accept(); }

/// With Ctrl the toolkit would change the size of the text.
void LogTextView::wheelEvent(QWheelEvent* event) {
    if (event->modifiers().testFlag(Qt::ControlModifier)) return event->ignore();
    QPlainTextEdit::wheelEvent(event);
}

void LogTextView::resizeEvent(QResizeEvent* event) {
    QPlainTextEdit::resizeEvent(event);
    fitRows();
}

/// Text scrolls by whole rows, counted from the top. The room above the first row and
/// below the last is shared so that the end comes out with whole rows, too.
void LogTextView::fitRows() {
    const double row = rowHeight(font());
    constexpr int leastFoot = 2 * margin + 1;
    const int height = this->height() + margin;
    const int rows = std::max(1, int((height - 2 * leastFoot + 1) / row));
    const int spare = int(std::floor(height - rows * row));
    const int foot = std::max(leastFoot, spare / 2);
    setViewportMargins(inset - margin, std::max(0, spare - foot - margin), 0, 0);
}

} // namespace oxlade
