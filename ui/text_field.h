// One plain text of the window, drawn into a fixed frame: what a label shows.
//
// Never edited, selected, clicked or read as markup. A text that is too long is
// shortened as its style says; it never changes the frame. Main thread.
#pragma once

#include "interfaces/colors.h"

#include <QFont>
#include <QStringList>
#include <QWidget>

#include <string>
#include <string_view>

namespace oxlade {

enum class Truncation {
    tail,     ///< one line, an ellipsis at the end
    middle,   ///< one line, an ellipsis in the middle: start and end stay
    twoLines, ///< wrapped at words, or anywhere in a word too long for a line; cut
              ///< after the second line
};

struct TextStyle {
    int pixels = 13;
    QFont::Weight weight = QFont::Normal;
    SemanticColor color = SemanticColor::labelColor;
    Truncation truncation = Truncation::tail;
    Qt::Alignment alignment = Qt::AlignLeft;
    bool monospacedDigits = false; ///< every digit as wide as the widest
    bool quiet = false;            ///< screen readers are not told of each new text
};

class TextField : public QWidget {
  public:
    TextField(const TextStyle& style, QWidget* parent);

    const TextStyle& style() const { return style_; }
    const QString& text() const { return text_; }
    /// The lines as they are drawn, shortened.
    QStringList displayedLines() const;
    /// From the top to the baseline of the line, in points; `row` is one of
    /// displayedLines.
    int baselineOfRow(int row) const;
    /// As wide as the text, one line high.
    QSize sizeHint() const override;

  protected:
    /// False, and nothing done, when the field shows that text already.
    bool setText(std::string_view text);
    void setColor(SemanticColor color);
    void paintEvent(QPaintEvent* event) override;

  private:
    QString inOneLine() const;
    Qt::TextElideMode elideMode() const;
    QStringList wrappedLines() const;
    QRectF rowFrame(qsizetype row) const;

    TextStyle style_;
    std::string utf8_; ///< what is shown, as it was given: cheap to compare
    QString text_;
};

} // namespace oxlade
