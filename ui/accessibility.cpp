#include "ui/accessibility.h"

#include "ui/alert_sheet.h"
#include "ui/card_view.h"
#include "ui/qt_label.h"
#include "ui/qt_log_view.h"
#include "ui/qt_segmented_control.h"
#include "ui/sprites/wait_girl_view.h"
#include "ui/status_views.h"
#include "ui/text.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QDialog>
#include <QLabel>
#include <QRadioButton>
#include <QTextBoundaryFinder>
#include <QTextCursor>
#include <QTextDocumentFragment>

#include <algorithm>

namespace oxlade {
namespace {

/// Its name is its text, not truncated.
class LabelAccess final : public QAccessibleWidget {
  public:
    explicit LabelAccess(LabelView& label)
        : QAccessibleWidget{&label, QAccessible::StaticText}, label_{label} {}

    QString text(QAccessible::Text kind) const override {
        if (kind == QAccessible::Name) return label_.text();
        const auto* file = dynamic_cast<const QtFileLabel*>(&label_);
        if (kind == QAccessible::Description && file != nullptr) return file->plainToolTip();
        return QAccessibleWidget::text(kind);
    }

  private:
    LabelView& label_;
};

/// A tool tip: its text without the break opportunities that toolTipMarkup puts in.
class ToolTipAccess final : public QAccessibleWidget {
  public:
    explicit ToolTipAccess(QLabel& tip)
        : QAccessibleWidget{&tip, QAccessible::ToolTip}, tip_{tip} {}

    QString text(QAccessible::Text kind) const override {
        if (kind != QAccessible::Name) return QAccessibleWidget::text(kind);
        QString plain = QTextDocumentFragment::fromHtml(tip_.text()).toPlainText();
        return plain.remove(QChar{0x200B});
    }

  private:
    QLabel& tip_;
};

class ProgressAccess final : public QAccessibleWidget, public QAccessibleValueInterface {
  public:
    explicit ProgressAccess(QtProgressIndicator& bar)
        : QAccessibleWidget{&bar, QAccessible::ProgressBar}, bar_{bar} {}

    void* interface_cast(QAccessible::InterfaceType type) override {
        if (type == QAccessible::ValueInterface)
            return static_cast<QAccessibleValueInterface*>(this);
        return QAccessibleWidget::interface_cast(type);
    }
    QAccessible::State state() const override {
        QAccessible::State result = QAccessibleWidget::state();
        result.readOnly = true;
        return result;
    }
    QVariant currentValue() const override { return bar_.doubleValue(); }
    void setCurrentValue(const QVariant&) override {}
    QVariant maximumValue() const override { return QtProgressIndicator::maximum; }
    QVariant minimumValue() const override { return QtProgressIndicator::minimum; }
    QVariant minimumStepSize() const override { return 0.0; }

  private:
    QtProgressIndicator& bar_;
};

/// A segment. Pressing it over the bus is a click; Qt's own would check it without one.
class SegmentAccess final : public QAccessibleWidget {
  public:
    explicit SegmentAccess(QRadioButton& segment)
        : QAccessibleWidget{&segment, QAccessible::RadioButton}, segment_{segment} {}

    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Name ? segment_.text() : QAccessibleWidget::text(kind);
    }
    QAccessible::State state() const override {
        QAccessible::State result = QAccessibleWidget::state();
        result.checkable = true;
        result.checked = segment_.isChecked();
        return result;
    }
    QStringList actionNames() const override {
        return QStringList{toggleAction(), pressAction()} + QAccessibleWidget::actionNames();
    }
    void doAction(const QString& action) override {
        if (action == toggleAction() || action == pressAction())
            segment_.click();
        else
            QAccessibleWidget::doAction(action);
    }

  private:
    QRadioButton& segment_;
};

/// A part of the text, from `from` up to, not including, `to`.
struct Span {
    qsizetype from = 0, to = 0;
};

/// The line around the position, with its line ending. Of a very long one only the part
/// around the position.
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
    explicit LogAccess(QtLogView& log)
        // The bus calls this role "text"; the state says that it is read-only.
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

    int characterCount() const override { return static_cast<int>(log_.string().size()); }
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

    int cursorPosition() const override { return static_cast<int>(log_.selection().caret); }
    void setCursorPosition(int position) override { log_.select({position, position}); }
    int selectionCount() const override {
        return log_.selection().anchor == log_.selection().caret ? 0 : 1;
    }
    void selection(int index, int* from, int* to) const override {
        const auto selected = log_.selection();
        const bool none = index != 0;
        *from = none ? 0 : static_cast<int>(std::min(selected.anchor, selected.caret));
        *to = none ? 0 : static_cast<int>(std::max(selected.anchor, selected.caret));
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
        return static_cast<int>(log_.content().toText(log_.cursorForPosition(at).position()));
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
        cursor.setPosition(
            static_cast<int>(text.toView(std::clamp<qsizetype>(offset, 0, text.taken()))));
        return cursor;
    }
    QString give(const Span& span, int* from, int* to) const {
        *from = static_cast<int>(span.from);
        *to = static_cast<int>(span.to);
        return withVisibleNuls(log_.string().mid(span.from, span.to - span.from));
    }

    QtLogView& log_;
};

/// An alert or the chooser. Qt does not tell that a dialog is modal.
class DialogAccess final : public QAccessibleWidget {
  public:
    DialogAccess(QWidget& dialog, QAccessible::Role role)
        : QAccessibleWidget{&dialog, role}, dialog_{dialog} {}

    QAccessible::State state() const override {
        QAccessible::State result = QAccessibleWidget::state();
        result.modal = true;
        result.active = dialog_.isActiveWindow();
        return result;
    }

  private:
    QWidget& dialog_;
};

/// The role of a widget that shows nothing by itself.
QAccessible::Role plainRoleOf(const QObject& object) {
    if (dynamic_cast<const CardView*>(&object) != nullptr ||
        dynamic_cast<const QtSegmentedControl*>(&object) != nullptr)
        return QAccessible::Grouping;
    // Decoration. Screen readers skip a filler without a word.
    if (dynamic_cast<const WaitGirlView*>(&object) != nullptr ||
        dynamic_cast<const QtStatusDot*>(&object) != nullptr)
        return QAccessible::Whitespace;
    return QAccessible::NoRole;
}

/// For QAccessible, which takes ownership. Null: Qt makes its own.
QAccessibleInterface* interfaceFor(const QString& className, QObject* object) {
    if (auto* label = dynamic_cast<LabelView*>(object)) return new LabelAccess{*label};
    if (auto* bar = dynamic_cast<QtProgressIndicator*>(object)) return new ProgressAccess{*bar};
    if (auto* log = dynamic_cast<QtLogView*>(object)) return new LogAccess{*log};
    if (auto* segment = qobject_cast<QRadioButton*>(object)) return new SegmentAccess{*segment};
    if (auto* alert = dynamic_cast<AlertSheet*>(object))
        return new DialogAccess{*alert, QAccessible::AlertMessage};
    if (auto* dialog = qobject_cast<QDialog*>(object))
        return new DialogAccess{*dialog, QAccessible::Dialog};
    if (className == QLatin1String{"QTipLabel"})
        return new ToolTipAccess{*static_cast<QLabel*>(object)};
    auto* widget = qobject_cast<QWidget*>(object);
    if (widget == nullptr) return nullptr;
    const QAccessible::Role role = plainRoleOf(*object);
    return role == QAccessible::NoRole ? nullptr : new QAccessibleWidget{widget, role};
}

} // namespace

void installAccessibility() { QAccessible::installFactory(interfaceFor); }

} // namespace oxlade
