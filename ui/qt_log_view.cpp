#include "ui/qt_log_view.h"

#include "i18n/string_table.h"
#include "ui/interface_style.h"
#include "ui/palette.h"
#include "ui/qt_button.h"
#include "ui/text.h"

#include <QAbstractTextDocumentLayout>
#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
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
/// A letter is lower than its row and ends where the row ends: rows begin this much below the
/// grid of the layout, so that the letters are in their middle.
constexpr int rowShift = 2;
constexpr int frameMilliseconds = 16;
constexpr int sliceMilliseconds = 4;
constexpr qsizetype flood = 8 * qsizetype{1024};
constexpr qsizetype pieceLength = 16 * qsizetype{1024};

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

QtLogView::QtLogView(QWidget* parent) : QPlainTextEdit{parent} {
    auto* rows = new QTextDocument{this};
    rows->setDocumentLayout(new RowLayout{rows});
    rows->setDocumentMargin(0);
    setDocument(rows);
    setCursorWidth(0); // no caret where nothing can be typed
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
    const bool toEnd = selectsToEnd();
    const QTextCursor selected = textCursor();
    const int anchor = selected.anchor(), caret = selected.position();
    QTextCursor end{document()};
    end.beginEditBlock(); // outside one, each step of the cursor lays out its block
    end.movePosition(QTextCursor::End);
    const int firstBlock = end.blockNumber();
    const bool touched = std::max(anchor, caret) >= end.position();
    {
        // The view is updated once for many pieces, and screen readers are told of the text
        // as it was appended, without the breaks put in here.
        const QSignalBlocker quietDocument{document()};
        const QSignalBlocker quietLayout{document()->documentLayout()};
        end.insertText(log_.take(pieceLength, lines));
        end.endEditBlock();
        if (lines == LogText::Lines::packed)
            estimateRows(document()->findBlockByNumber(firstBlock));
    }
    if (toEnd)
        setSelection(toEnd_->viewAnchor, viewEnd());
    else if (touched) // A selection up to the end does not grow.
        setSelection(anchor, caret);
}

/// Estimates the height of blocks that have not been laid out yet, for the scroll range. The
/// layout corrects it when they become visible.
void QtLogView::estimateRows(QTextBlock block) {
    const auto columns = static_cast<qsizetype>(
        viewport()->width() / std::max(1.0, QFontMetricsF{font()}.averageCharWidth()));
    for (; block.isValid(); block = block.next()) {
        int rows = 0;
        const QString text = block.text();
        for (const QStringView line : QStringView{text}.tokenize(QChar{QChar::LineSeparator}))
            rows += 1 + static_cast<int>(std::max<qsizetype>(line.size() - 1, 0) /
                                         std::max<qsizetype>(columns, 1));
        block.setLineCount(rows);
    }
}

void QtLogView::scrollToEnd() {
    QAbstractTextDocumentLayout* layout = document()->documentLayout();
    Q_EMIT layout->documentSizeChanged(layout->documentSize());
    // With updates enabled, Qt would lay out all that is scrolled over, to move its pixels.
    viewport()->setUpdatesEnabled(false);
    // The first step lays out the last lines, which may add rows for the second.
    for (int step = 0; step < 2; ++step) {
        verticalScrollBar()->setValue(verticalScrollBar()->maximum());
        blockBoundingGeometry(document()->lastBlock());
    }
    viewport()->setUpdatesEnabled(true); // and paints
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
    paintSelection();
    QPlainTextEdit::paintEvent(event);
}

/// Fills the rows of the selection: Qt paints it no higher than letters are.
void QtLogView::paintSelection() {
    const QTextCursor cursor = textCursor();
    if (!cursor.hasSelection()) return;
    QPainter painter{viewport()};
    const QBrush& fill = palette().highlight();
    double top = contentOffset().y() + rowShift;
    for (QTextBlock block = firstVisibleBlock(); block.isValid() && top < viewport()->height();
         block = block.next()) {
        const double height = blockBoundingRect(block).height(); // lays the block out
        for (int row = 0; row < block.layout()->lineCount(); ++row) {
            const QTextLine line = block.layout()->lineAt(row);
            const int from = std::max(cursor.selectionStart() - block.position(), line.textStart());
            const int to = std::min(cursor.selectionEnd() - block.position(),
                                    line.textStart() + line.textLength());
            if (from >= to) continue;
            const QPointF start{line.cursorToX(from), top + rowPitch * row};
            const QSizeF size{line.cursorToX(to) - start.x(), rowPitch};
            painter.fillRect(QRectF{start, size}.normalized(), fill);
        }
        top += height;
    }
}

/// A place between two rows counts as one in the letters of the nearer.
bool QtLogView::viewportEvent(QEvent* event) {
    const auto* mouse = event->isPointerEvent() ? dynamic_cast<QMouseEvent*>(event) : nullptr;
    if (mouse == nullptr || !viewport()->rect().contains(mouse->position().toPoint()))
        return QPlainTextEdit::viewportEvent(event);
    QPointF at = mouse->position();
    const double row = std::max(0.0, std::floor((at.y() - rowShift) / rowPitch));
    at.setY(rowPitch * row + rowPitch * 0.7);
    QMouseEvent inRow{mouse->type(),          at,
                      mouse->scenePosition(), mouse->globalPosition(),
                      mouse->button(),        mouse->buttons(),
                      mouse->modifiers(),     mouse->pointingDevice()};
    const bool handled = QPlainTextEdit::viewportEvent(&inRow);
    event->setAccepted(inRow.isAccepted());
    return handled;
}

void QtLogView::contextMenuEvent(QContextMenuEvent* event) {
    auto* menu = new QMenu{this};
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const auto add = [&](const char* key, auto action) {
        return menu->addAction(withoutMnemonic(toQString(L(key))), this, action);
    };
    add("menu.copy", &QtLogView::copySelection)->setEnabled(hasSelection());
    add("menu.selectAll", &QtLogView::selectEverything);
    menu->popup(event->globalPos());
}

/// With Ctrl, Qt would zoom the text.
void QtLogView::wheelEvent(QWheelEvent* event) {
    if (event->modifiers().testFlag(Qt::ControlModifier)) return event->ignore();
    QPlainTextEdit::wheelEvent(event);
}

void QtLogView::resizeEvent(QResizeEvent* event) {
    QPlainTextEdit::resizeEvent(event);
    fitRows();
}

/// Text scrolls by whole rows: the viewport has room for as many as are wholly seen.
void QtLogView::fitRows() {
    const int rows = std::max(1, (height() - 2 * inset) / rowPitch);
    const int top = inset - rowShift, content = rowShift + rows * rowPitch;
    setViewportMargins(inset, top, 0, std::max(0, height() - top - content));
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

bool QtLogView::hasSelection() const {
    const Selection selected = selection();
    return selected.anchor != selected.caret;
}

void QtLogView::copySelection() {
    if (hasSelection()) QApplication::clipboard()->setMimeData(createMimeDataFromSelection());
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
    if (textCursor().hasSelection() || viewport()->rect().contains(cursorRect().topLeft())) return;
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
