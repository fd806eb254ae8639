// The log: text that is only ever added at the end, and can be selected and copied
// exactly as it was added.
//
// Adding is cheap however often it happens: the text is taken at once, but a flood
// goes into the view in slices that leave the event loop time to paint and to take
// clicks. Nothing is ever dropped, and nothing ever waits for the rest.
// Main thread.
#pragma once

#include "interfaces/controls.h"
#include "ui/focus_ring.h"
#include "ui/log_text.h"

#include <QElapsedTimer>
#include <QPlainTextEdit>
#include <QTimer>

namespace oxlade {

class LogTextView final : public QPlainTextEdit, public LogView {
  public:
    explicit LogTextView(QWidget* parent);

    void append(std::string_view text) override;

    /// All that was appended, also what is not in the view yet.
    const QString& string() const { return log_.text(); }
    const LogText& content() const { return log_; }
    /// Brings everything into the view at once, however long that takes.
    void flush();
    /// Whether some of the text is still on its way into the view.
    bool isBehind() const { return log_.pending() > 0; }
    /// Whether it is to be seen that the log has the keyboard.
    bool showsFocus() const { return focusRing_.isShownOn(*this); }

    /// A selection in positions of string(), from its fixed end to the caret. One
    /// outside of the text counts as its nearer end.
    struct Selection {
        qsizetype anchor, caret;
    };
    Selection selection() const;
    /// Of what is in the view already.
    void select(const Selection& selection);

    // What the edit menu calls.
    void copySelection();
    /// All the text of this moment, also what the view shows only later.
    void selectEverything();

  protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    QMimeData* createMimeDataFromSelection() const override;

  private:
    void takeSlice(int milliseconds);
    void insert(LogText::Lines lines);
    void estimateRows(QTextBlock block);
    void scrollToEnd();
    void announce();
    bool selectsEverything() const;
    void setSelection(qsizetype viewAnchor, qsizetype viewCaret);
    void selectFromWhatIsSeen();
    void selectLineAt(const QPoint& at);
    void fitRows();

    LogText log_;
    qsizetype pieceLength_;
    qsizetype announced_ = 0;   ///< how much of the text screen readers were told of
    qsizetype everything_ = -1; ///< how much of it Select All took last
    QTimer nextSlice_;          ///< runs only while the view is behind
    bool painted_ = false;
    QElapsedTimer sinceSlice_;
    QElapsedTimer sinceDoubleClick_;
    QPoint doubleClickedAt_;
    FocusRing focusRing_;
};

} // namespace oxlade
