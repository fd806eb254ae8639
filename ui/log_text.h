// What the log holds, and how much of it is cut up for the view. Plain value.
//
// The text stays as it was given. Only the view breaks very long lines, so its
// positions run ahead of the text's by one for each such break before them.
#pragma once

#include <QString>

#include <vector>

namespace oxlade {

class LogText final {
  public:
    /// A line longer than this is broken in the view.
    static constexpr qsizetype longestBlock = 4000;

    void append(const QString& text) { text_ += text; }
    const QString& text() const { return text_; }
    /// What has not gone to the view yet, in characters.
    qsizetype pending() const { return text_.size() - taken_; }
    /// The next piece for the view, at most `limit` characters of the text (one
    /// more where that would cut a surrogate pair), with breaks put in.
    QString take(qsizetype limit);
    /// The text between two positions of the view.
    QString between(qsizetype viewFrom, qsizetype viewTo) const;

  private:
    qsizetype toText(qsizetype viewPosition) const;

    QString text_;
    qsizetype taken_ = 0;           ///< how much of it the view has
    qsizetype column_ = 0;          ///< the length of the view's last line
    std::vector<qsizetype> breaks_; ///< view positions of the breaks put in, ascending
};

} // namespace oxlade
