// The text of the log, and how much of it has been handed to the view (a plain value), and the
// layout of its rows in the view (main thread).
//
// The text is kept as it was appended. Only in the view are very long lines broken: a position
// in the view is ahead of that in the text by one for each such break before it. Lengths and
// positions are in UTF-16 units; positions outside the text are clamped.
#pragma once

#include <QPlainTextDocumentLayout>
#include <QString>

#include <vector>

namespace oxlade {

class LogText final {
  public:
    /// A block longer than this is broken in the view, also within a line.
    static constexpr qsizetype longestBlock = 4000;
    /// A block this long takes no further line when lines are packed.
    static constexpr qsizetype fullBlock = 1000;

    /// What a line ending becomes in the view: the end of a block, or, when very many lines
    /// come at once, a line separator within a block of many lines.
    enum class Lines { each, packed };

    void append(const QString& text) { text_ += text; }
    const QString& text() const { return text_; }
    /// How much of it the view has.
    qsizetype taken() const { return taken_; }
    /// How much of it can go to the view. A line ending at the very end cannot: it would add
    /// an empty line. It goes with the text that follows it.
    qsizetype pending() const;
    /// The next piece for the view: at most `limit` units of the text (one more where that
    /// would cut a surrogate pair), with the breaks, and with boxes for control characters.
    QString take(qsizetype limit, Lines lines = Lines::each);

    /// From a position in the view to that in the text, and back for what the view has.
    qsizetype toText(qsizetype viewPosition) const;
    qsizetype toView(qsizetype textPosition) const;

  private:
    QString text_;
    qsizetype taken_ = 0;
    qsizetype column_ = 0;          ///< the length of the view's last block
    std::vector<qsizetype> breaks_; ///< view positions of the breaks put in, ascending
};

/// From one row to the next, in points.
inline constexpr int rowPitch = 17;

/// Rows of one height, whatever fonts their characters come from: lines lie on one grid: the
/// letters of the document's font end where their row ends.
class RowLayout final : public QPlainTextDocumentLayout {
  public:
    using QPlainTextDocumentLayout::QPlainTextDocumentLayout;

    QRectF blockBoundingRect(const QTextBlock& block) const override;
};

} // namespace oxlade
