#include "ui/log_access.h"

#include "ui/log_text_view.h"
#include "ui/text.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QTextBoundaryFinder>
#include <QTextCursor>

#include <algorithm>

namespace oxlade {
namespace {

/// A part of the text, from `from` up to, not including, `to`.
struct Span {
    qsizetype from = 0, to = 0;
};

/// The line around the position, with its ending. Of a very long one only so much
/// as a reader can want at a time.
Span lineAround(const QString& text, qsizetype position) {
    constexpr qsizetype most = 4000;
    const qsizetype before =
        position == 0 ? -1 : text.lastIndexOf(u'\n', std::min(position, text.size()) - 1);
    const qsizetype after = text.indexOf(u'\n', position);
    const qsizetype end = after < 0 ? text.size() : after + 1;
    return {std::max(before + 1, position - most), std::min(end, position + most)};
}

Span wordAround(const QString& text, qsizetype position, QTextBoundaryFinder::BoundaryType type) {
    const Span line = lineAround(text, position);
    QTextBoundaryFinder finder{type, text.mid(line.from, line.to - line.from)};
    finder.setPosition(position - line.from);
    const qsizetype from = finder.isAtBoundary()
                               ? finder.position()
                               : std::max<qsizetype>(finder.toPreviousBoundary(), 0);
    finder.setPosition(position - line.from);
    const qsizetype next = finder.toNextBoundary();
    return {line.from + from, next < 0 ? line.to : line.from + next};
}

Span around(const QString& text, qsizetype position, QAccessible::TextBoundaryType type) {
    if (position < 0 || position > text.size()) return {};
    switch (type) {
    case QAccessible::CharBoundary:
        return wordAround(text, position, QTextBoundaryFinder::Grapheme);
    case QAccessible::WordBoundary:
        return wordAround(text, position, QTextBoundaryFinder::Word);
    case QAccessible::SentenceBoundary:
        return wordAround(text, position, QTextBoundaryFinder::Sentence);
    case QAccessible::LineBoundary:
    case QAccessible::ParagraphBoundary:
        return lineAround(text, position);
    case QAccessible::NoBoundary:
        return {0, text.size()};
    }
    return {};
}

class LogAccess final : public QAccessibleWidget, public QAccessibleTextInterface {
  public:
    explicit LogAccess(LogTextView& log)
        // This role is the bus's plain text; the state says that it is only read.
        : QAccessibleWidget{&log, QAccessible::EditableText}, log_{log} {}

    void* interface_cast(QAccessible::InterfaceType type) override {
        if (type == QAccessible::TextInterface) return static_cast<QAccessibleTextInterface*>(this);
        if (type == QAccessible::EditableTextInterface) return nullptr;
        return QAccessibleWidget::interface_cast(type);
    }
    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Value ? withVisibleNuls(log_.string())
                                          : QAccessibleWidget::text(kind);
    }
    QAccessible::State state() const override {
        QAccessible::State result = QAccessibleWidget::state();
        result.readOnly = true;
        result.multiLine = true;
        result.selectableText = true;
        return result;
    }

    int characterCount() const override { return int(log_.string().size()); }
    QString text(int from, int to) const override {
        return withVisibleNuls(log_.string().mid(from, to - from));
    }
    QString textAtOffset(int offset, QAccessible::TextBoundaryType type, int* from,
                         int* to) const override {
        return give(around(log_.string(), offset, type), from, to);
    }
    QString textBeforeOffset(int offset, QAccessible::TextBoundaryType type, int* from,
                             int* to) const override {
        const Span here = around(log_.string(), offset, type);
        const Span none{here.from, here.from};
        return give(here.from == 0 ? none : around(log_.string(), here.from - 1, type), from, to);
    }
    QString textAfterOffset(int offset, QAccessible::TextBoundaryType type, int* from,
                            int* to) const override {
        const Span here = around(log_.string(), offset, type);
        const bool last = here.to >= log_.string().size();
        return give(last ? Span{here.to, here.to} : around(log_.string(), here.to, type), from, to);
    }

    int cursorPosition() const override { return int(log_.selection().caret); }
    void setCursorPosition(int position) override { log_.select({position, position}); }
    int selectionCount() const override {
        return log_.selection().anchor == log_.selection().caret ? 0 : 1;
    }
    void selection(int index, int* from, int* to) const override {
        const auto selected = log_.selection();
        const bool none = index != 0;
        *from = none ? 0 : int(std::min(selected.anchor, selected.caret));
        *to = none ? 0 : int(std::max(selected.anchor, selected.caret));
    }
    void addSelection(int from, int to) override { log_.select({from, to}); }
    void setSelection(int index, int from, int to) override {
        if (index == 0) log_.select({from, to});
    }
    void removeSelection(int index) override {
        if (index == 0) setCursorPosition(cursorPosition());
    }

    QRect characterRect(int offset) const override {
        const QTextCursor cursor = cursorAt(offset);
        QTextCursor next = cursor;
        next.movePosition(QTextCursor::NextCharacter);
        const QRect here = log_.cursorRect(cursor), there = log_.cursorRect(next);
        const bool sameRow = there.top() == here.top() && there.left() > here.left();
        const int width =
            sameRow ? there.left() - here.left() : log_.fontMetrics().averageCharWidth();
        return {log_.viewport()->mapToGlobal(here.topLeft()), QSize{width, here.height()}};
    }
    int offsetAtPoint(const QPoint& point) const override {
        const QPoint at = log_.viewport()->mapFromGlobal(point);
        if (!log_.viewport()->rect().contains(at)) return -1;
        return int(log_.content().toText(log_.cursorForPosition(at).position()));
    }
    void scrollToSubstring(int from, int) override {
        const auto selected = log_.selection();
        setCursorPosition(from); // which brings it into sight
        log_.select(selected);
    }
    QString attributes(int, int* from, int* to) const override {
        *from = 0;
        *to = characterCount();
        return {};
    }

  private:
    QTextCursor cursorAt(int offset) const {
        const LogText& text = log_.content();
        QTextCursor cursor{log_.document()};
        cursor.setPosition(int(text.toView(std::clamp<qsizetype>(offset, 0, text.taken()))));
        return cursor;
    }
    QString give(const Span& span, int* from, int* to) const {
        *from = int(span.from);
        *to = int(span.to);
        return withVisibleNuls(log_.string().mid(span.from, span.to - span.from));
    }

    LogTextView& log_;
};

} // namespace

QAccessibleInterface* makeLogAccess(LogTextView& log) { return new LogAccess{log}; }

} // namespace oxlade
