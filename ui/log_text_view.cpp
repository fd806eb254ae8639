#include "ui/log_text_view.h"

#include "platform/text.h"
#include "ui/fonts.h"
#include "ui/log_keys.h"
#include "ui/slim_scroll_bar.h"

#include <QAbstractTextDocumentLayout>
#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QMimeData>
#include <QSignalBlocker>
#include <QTextBlock>
#include <QTextLayout>

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
constexpr qsizetype flood = 8 * 1024;
constexpr qsizetype shortestPiece = 2 * 1024, longestPiece = 64 * 1024;

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
    if (!sinceSlice_.isValid() || sinceSlice_.hasExpired(frameMilliseconds))
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
        QAccessibleTextInsertEvent event{this, int(announced_), log_.text().mid(announced_)};
        QAccessible::updateAccessibility(&event);
    }
    announced_ = log_.text().size();
}

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

/// The toolkit's own menu would speak another language than the window.
void LogTextView::contextMenuEvent(QContextMenuEvent* event) { event->accept(); }

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
