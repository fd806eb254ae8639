// What the log holds, and how much of it is cut up for the view. Plain value.
//
// The text stays as it was given. Only the view breaks very long lines, so its
// positions run ahead of the text's by one for each such break before them.
// Lengths and positions are counted in UTF-16 units; one outside of the text counts
// as its nearer end.
#pragma once

#include <QString>

#include <vector>

namespace oxlade {

class LogText final {
  public:
    /// A block longer than this is broken in the view, within a line if need be.
    static constexpr qsizetype longestBlock = 4000;
    /// A block this long takes no further line when lines are packed.
    static constexpr qsizetype fullBlock = 2000;

    /// What a line ending becomes in the view: a block's end each, or, where very
    /// many lines come at once, a mere line separator within a block of many lines.
    enum class Lines { each, packed };

    void append(const QString& text) { text_ += text; }
    const QString& text() const { return text_; }
    /// What the view has of it.
    qsizetype taken() const { return taken_; }
    /// What could go to the view, in characters. A line ending at the very end could
    /// not: it would only add an empty line there. It goes with what follows it.
    qsizetype pending() const;
    /// The next piece for the view, at most `limit` characters of the text (one
    /// more where that would cut a surrogate pair), with breaks put in.
    QString take(qsizetype limit, Lines lines = Lines::each);

    /// The text's position at a position of the view, and the other way round for
    /// what the view has.
    qsizetype toText(qsizetype viewPosition) const;
    qsizetype toView(qsizetype textPosition) const;

  private:
    QString text_;
    qsizetype taken_ = 0;
    qsizetype column_ = 0;          ///< the length of the view's last block
    std::vector<qsizetype> breaks_; ///< view positions of the breaks put in, ascending
};

} // namespace oxlade
