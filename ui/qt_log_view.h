// The log: read-only text that is appended to, and can be selected and copied exactly as it
// was appended. Main thread.
//
// The text is stored at once. A flood goes into the view in slices of some milliseconds, between
// which the event loop paints and handles input. Nothing is dropped.
#pragma once

#include "interfaces/user_interface.h"
#include "ui/log_text.h"

#include <QElapsedTimer>
#include <QPlainTextEdit>
#include <QTimer>

#include <optional>

namespace oxlade {

class QtLogView final : public QPlainTextEdit, public LogView {
  public:
    explicit QtLogView(QWidget* parent);

    void append(std::string_view text) override;

    /// All that was appended, also what is not in the view yet.
    const QString& string() const { return log_.text(); }
    const LogText& content() const { return log_; }
    /// Brings everything into the view before it returns, however long that takes.
    void flush();
    /// Whether some of the text is not in the view yet.
    bool isBehind() const { return log_.pending() > 0; }

    /// A selection in positions of string(), from its fixed end to the caret. Positions outside
    /// the text are clamped.
    struct Selection {
        qsizetype anchor, caret;
    };
    Selection selection() const;
    /// Selects within what is in the view already.
    void select(const Selection& selection);

    /// Whether Copy has anything to copy. copyAvailable is emitted when it changes.
    bool hasSelection() const;
    /// Copies nothing if nothing is selected.
    void copySelection();
    /// Selects all the text of this moment, also what is not in the view yet.
    void selectEverything();

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    /// Copy and Select All, in the window's language.
    void contextMenuEvent(QContextMenuEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    QMimeData* createMimeDataFromSelection() const override;

  private:
    void takeSlice(int milliseconds);
    void insert(LogText::Lines lines);
    void estimateRows(QTextBlock block);
    void scrollToEnd();
    void announce();
    bool selectsToEnd() const;
    void selectToEnd(qsizetype viewAnchor);
    void setSelection(qsizetype viewAnchor, qsizetype viewCaret);
    void selectFromFirstVisible();
    void selectLineAt(const QPoint& at);
    void fitRows();
    void paintSelection();
    qsizetype viewEnd() const;

    /// A selection from a position of the view to the end that the text had then.
    struct ToEnd {
        qsizetype viewAnchor, textEnd;
    };

    LogText log_;
    qsizetype announced_ = 0;    ///< how much of the text screen readers were told of
    std::optional<ToEnd> toEnd_; ///< valid while the view still has that selection
    QTimer nextSlice_;           ///< runs only while the view is behind
    bool painted_ = false;
    QElapsedTimer sinceSlice_;
    QElapsedTimer sinceDoubleClick_;
    QPoint doubleClickedAt_;
};

/// The rounded ground under the log.
class LogScrollView final : public QWidget {
  public:
    using QWidget::QWidget;

  protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace oxlade
