#include "ui/qt_log_view.h"

#include "ui/fonts.h"
#include "ui/interface_style.h"
#include "ui/palette.h"
#include "ui/text.h"

#include <QAbstractTextDocumentLayout>
#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QPainter>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QTextBlock>
#include <QTextLayout>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace oxlade {
namespace {

constexpr int inset = 10;
/// The part of the inset that is the document's own margin. The scroll range counts it twice
/// at the end: it must be less than half of the space below the text.
constexpr int margin = 4;
constexpr int frameMilliseconds = 16;
constexpr int sliceMilliseconds = 10;
constexpr qsizetype flood = 8 * qsizetype{1024};
constexpr qsizetype shortestPiece = 2 * qsizetype{1024}, longestPiece = 64 * qsizetype{1024};

/// The height of a line, rounded as the layout rounds it.
double rowHeight(const QFont& font) {
    QTextLayout layout{QStringLiteral("x"), font};
    layout.beginLayout();
    QTextLine line = layout.createLine();
    line.setLeadingIncluded(true);
    layout.endLayout();
    return line.height();
}

std::optional<QAbstractSlider::SliderAction> actionOf(int key) {
    switch (key) {
    case Qt::Key_Up:
        return QAbstractSlider::SliderSingleStepSub;
    case Qt::Key_Down:
        return QAbstractSlider::SliderSingleStepAdd;
    case Qt::Key_PageUp:
        return QAbstractSlider::SliderPageStepSub;
    case Qt::Key_PageDown:
        return QAbstractSlider::SliderPageStepAdd;
    case Qt::Key_Home:
        return QAbstractSlider::SliderToMinimum;
    case Qt::Key_End:
        return QAbstractSlider::SliderToMaximum;
    default:
        return std::nullopt;
    }
}

/// Scrolls as a viewer does, without moving a caret. Returns false for any other key and for
/// those that select.
bool scrollByKey(QScrollBar& bar, const QKeyEvent& event) {
    const auto others = Qt::ShiftModifier | Qt::AltModifier | Qt::MetaModifier;
    const auto action = actionOf(event.key());
    if (!action || (event.modifiers() & others)) return false;
    bar.triggerAction(*action);
    return true;
}

/// Whether the key makes a selection longer or shorter.
bool extendsSelection(const QKeyEvent& event) {
    const bool sideways = event.key() == Qt::Key_Left || event.key() == Qt::Key_Right;
    return (event.modifiers() & Qt::ShiftModifier) && (sideways || actionOf(event.key()));
}

} // namespace

QtLogView::QtLogView(QWidget* parent) : QPlainTextEdit{parent}, pieceLength_{flood} {
    // Qt's own menu would not be in the window's language.
    verticalScrollBar()->setContextMenuPolicy(Qt::PreventContextMenu);
    // Always there: all lines would be wrapped again when it appears.
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

void QtLogView::append(std::string_view text) {
    log_.append(toQString(text));
    if (nextSlice_.isActive()) return;
    // The first frame shows everything appended before it.
    if (!painted_ || !sinceSlice_.isValid() || sinceSlice_.hasExpired(frameMilliseconds))
        takeSlice(sliceMilliseconds);
    else
        nextSlice_.start(frameMilliseconds);
}

void QtLogView::flush() {
    while (isBehind()) takeSlice(1000);
}

void QtLogView::takeSlice(int milliseconds) {
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

void QtLogView::insert(LogText::Lines lines) {
    QElapsedTimer spent;
    spent.start();
    const bool toEnd = selectsToEnd();
    const QTextCursor selected = textCursor();
    const int anchor = selected.anchor(), caret = selected.position();
    QTextCursor end{document()};
    end.movePosition(QTextCursor::End);
    const int firstBlock = end.blockNumber();
    const bool touched = std::max(anchor, caret) >= end.position();
    {
        // The view is updated once for many pieces, and screen readers are told of the text
        // as it was appended, without the breaks put in here.
        const QSignalBlocker quietDocument{document()};
        const QSignalBlocker quietLayout{document()->documentLayout()};
        end.insertText(log_.take(pieceLength_, lines));
        if (lines == LogText::Lines::packed)
            estimateRows(document()->findBlockByNumber(firstBlock));
    }
    if (toEnd)
        setSelection(toEnd_->viewAnchor, viewEnd());
    else if (touched) // A selection up to the end does not grow.
        setSelection(anchor, caret);
    if (spent.elapsed() > 5)
        pieceLength_ = std::max(pieceLength_ / 2, shortestPiece);
    else if (spent.elapsed() < 2)
        pieceLength_ = std::min(pieceLength_ * 2, longestPiece);
}

/// Estimates the height of blocks that have not been laid out yet, for the scroll range. The
/// layout corrects it when they become visible.
void QtLogView::estimateRows(QTextBlock block) {
    const double width = viewport()->width() - 2 * margin;
    const auto columns =
        static_cast<qsizetype>(width / std::max(1.0, QFontMetricsF{font()}.averageCharWidth()));
    for (; block.isValid(); block = block.next()) {
        int rows = 0;
        const QString text = block.text();
        for (const QStringView line : QStringView{text}.split(QChar{QChar::LineSeparator}))
            rows += 1 + static_cast<int>(std::max<qsizetype>(line.size() - 1, 0) /
                                         std::max<qsizetype>(columns, 1));
        block.setLineCount(rows);
    }
}

void QtLogView::scrollToEnd() {
    QAbstractTextDocumentLayout* layout = document()->documentLayout();
    Q_EMIT layout->documentSizeChanged(layout->documentSize());
    // The first step lays out the last lines, which may add rows for the second.
    for (int step = 0; step < 2; ++step) {
        verticalScrollBar()->setValue(verticalScrollBar()->maximum());
        blockBoundingGeometry(document()->lastBlock());
    }
    viewport()->update();
}

void QtLogView::announce() {
    if (QAccessible::isActive() && announced_ < log_.text().size()) {
        QAccessibleTextInsertEvent event{this, static_cast<int>(announced_),
                                         withVisibleNuls(log_.text().mid(announced_))};
        QAccessible::updateAccessibility(&event);
    }
    announced_ = log_.text().size();
}

void QtLogView::paintEvent(QPaintEvent* event) {
    painted_ = true;
    QPlainTextEdit::paintEvent(event);
}

/// Qt's own menu would not be in the window's language.
void QtLogView::contextMenuEvent(QContextMenuEvent* event) { event->accept(); }

/// With Ctrl, Qt would zoom the text.
void QtLogView::wheelEvent(QWheelEvent* event) {
    if (event->modifiers().testFlag(Qt::ControlModifier)) return event->ignore();
    QPlainTextEdit::wheelEvent(event);
}

void QtLogView::resizeEvent(QResizeEvent* event) {
    QPlainTextEdit::resizeEvent(event);
    fitRows();
}

/// Text scrolls by whole rows, counted from the top. The space that is left is shared between
/// the top and the bottom, so that the last rows are whole, too.
void QtLogView::fitRows() {
    const double row = rowHeight(font());
    constexpr int leastFoot = 2 * margin + 1;
    const int height = this->height() + margin;
    const int rows = std::max(1, static_cast<int>((height - 2 * leastFoot + 1) / row));
    const int spare = static_cast<int>(std::floor(height - rows * row));
    const int foot = std::max(leastFoot, spare / 2);
    setViewportMargins(inset - margin, std::max(0, spare - foot - margin), 0, 0);
}

/// Where the view's caret is for toEnd_.
qsizetype QtLogView::viewEnd() const {
    return log_.toView(std::min(toEnd_->textEnd, log_.taken()));
}

bool QtLogView::selectsToEnd() const {
    const QTextCursor cursor = textCursor();
    return toEnd_ && cursor.anchor() == toEnd_->viewAnchor && cursor.position() == viewEnd();
}

void QtLogView::selectToEnd(qsizetype viewAnchor) {
    toEnd_ = ToEnd{viewAnchor, log_.text().size()};
    setSelection(viewAnchor, viewEnd());
}

QtLogView::Selection QtLogView::selection() const {
    const QTextCursor cursor = textCursor();
    const qsizetype anchor = log_.toText(cursor.anchor());
    return {anchor, selectsToEnd() ? toEnd_->textEnd : log_.toText(cursor.position())};
}

void QtLogView::select(const Selection& selection) {
    const auto toView = [this](qsizetype position) {
        return log_.toView(std::clamp<qsizetype>(position, 0, log_.taken()));
    };
    toEnd_.reset();
    setSelection(toView(selection.anchor), toView(selection.caret));
}

void QtLogView::setSelection(qsizetype viewAnchor, qsizetype viewCaret) {
    QTextCursor cursor = textCursor();
    cursor.setPosition(static_cast<int>(viewAnchor));
    cursor.setPosition(static_cast<int>(viewCaret), QTextCursor::KeepAnchor);
    setTextCursor(cursor);
}

void QtLogView::copySelection() {
    const Selection selected = selection();
    if (selected.anchor != selected.caret)
        QApplication::clipboard()->setMimeData(createMimeDataFromSelection());
}

void QtLogView::selectEverything() {
    toEnd_ = ToEnd{0, log_.text().size()};
    selectAll(); // does not scroll
}

QMimeData* QtLogView::createMimeDataFromSelection() const {
    const Selection selected = selection();
    const auto [from, to] = std::minmax(selected.anchor, selected.caret);
    auto* copied = new QMimeData;
    copied->setText(log_.text().mid(from, to - from));
    return copied;
}

void QtLogView::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::SelectAll)) return selectEverything();
    if (event->matches(QKeySequence::Copy)) return copySelection();
    if (scrollByKey(*verticalScrollBar(), *event)) return;
    if (extendsSelection(*event)) selectFromFirstVisible();
    if (event->matches(QKeySequence::SelectEndOfDocument))
        return selectToEnd(textCursor().anchor());
    QPlainTextEdit::keyPressEvent(event);
}

/// A selection begun by a key begins with the first visible line.
void QtLogView::selectFromFirstVisible() {
    if (textCursor().hasSelection() || viewport()->rect().intersects(cursorRect())) return;
    setTextCursor(cursorForPosition({0, 0}));
}

void QtLogView::mouseDoubleClickEvent(QMouseEvent* event) {
    QPlainTextEdit::mouseDoubleClickEvent(event);
    sinceDoubleClick_.start();
    doubleClickedAt_ = event->pos();
}

void QtLogView::mousePressEvent(QMouseEvent* event) {
    QPlainTextEdit::mousePressEvent(event);
    const bool third =
        event->button() == Qt::LeftButton && sinceDoubleClick_.isValid() &&
        !sinceDoubleClick_.hasExpired(QApplication::doubleClickInterval()) &&
        (event->pos() - doubleClickedAt_).manhattanLength() < QApplication::startDragDistance();
    sinceDoubleClick_.invalidate();
    if (third) selectLineAt(event->pos());
}

/// Qt would select the whole block, which can be many lines.
void QtLogView::selectLineAt(const QPoint& at) {
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

void LogScrollView::paintEvent(QPaintEvent*) {
    QPainter painter{this};
    drawPanel(painter, rect(), panelRadius, logColor(schemeOf(palette())));
}

} // namespace oxlade
