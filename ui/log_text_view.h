// The log: text that is only ever added at the end, and can be selected and copied
// exactly as it was added.
//
// Adding is cheap however often it happens: the text is taken at once, but a flood
// goes into the view in slices that leave the event loop time to paint and to take
// clicks. Nothing is ever dropped.
#pragma once

#include "app/controls.h"
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
    /// Brings everything into the view at once, however long that takes.
    void flush();
    /// Whether some of the text is still on its way into the view.
    bool isBehind() const { return log_.pending() > 0; }

    // What the edit menu calls.
    void copySelection();
    void selectEverything();

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    QMimeData* createMimeDataFromSelection() const override;

  private:
    void takeSlice(int milliseconds);
    void insert(const QString& piece);
    void scrollToEnd();

    LogText log_;
    QTimer nextSlice_; ///< runs only while the view is behind
    QElapsedTimer sinceSlice_;
};

} // namespace oxlade
