// The labels: plain text in a fixed frame. Main thread.
#pragma once

#include "interfaces/user_interface.h"

#include <QFont>
#include <QStringList>
#include <QWidget>

#include <string>
#include <string_view>
#include <utility>

namespace oxlade {

enum class Truncation {
    tail,     ///< one line, elided at the end
    middle,   ///< one line, elided in the middle
    twoLines, ///< wrapped at words, or anywhere in a word longer than a line; cut after the
              ///< second line
};

struct TextStyle {
    int pixels = 13;
    QFont::Weight weight = QFont::Normal;
    SemanticColor color = SemanticColor::labelColor;
    Truncation truncation = Truncation::tail;
    /// AlignTop: the letters stand at the top of the frame, else in its middle.
    Qt::Alignment alignment = Qt::AlignLeft;
    bool tabularDigits = false; ///< every digit as wide as the widest
    bool quiet = false;         ///< screen readers are not told of each new text
};

/// What both labels share. The text is never edited, selected, clicked or read as markup, and
/// never changes the frame.
class LabelView : public QWidget {
  public:
    LabelView(const TextStyle& style, QWidget* parent);

    const TextStyle& style() const { return style_; }
    const QString& text() const { return text_; }
    /// The lines as they are drawn, truncated.
    QStringList displayedLines() const;
    /// From the top to the baseline of a line of displayedLines, in points.
    int baselineOfRow(int row) const;
    /// As wide as the text, one line high.
    QSize sizeHint() const override;

  protected:
    /// Returns false, and does nothing, if that text is shown already.
    bool setText(std::string_view text);
    void setColor(SemanticColor color);
    void paintEvent(QPaintEvent* event) override;

  private:
    QString inOneLine() const;
    Qt::TextElideMode elideMode() const;
    QStringList wrappedLines() const;
    QRectF rowFrame(qsizetype row) const;

    TextStyle style_;
    std::string utf8_; ///< the text as it was given: cheap to compare
    QString text_;
};

class QtLabel final : public LabelView, public Label {
  public:
    using LabelView::LabelView;
    void setStringValue(std::string_view text) override;
    /// Makes this label's text, now and later, the accessible name of the widget, which must
    /// outlive the label's last text.
    void nameWidget(QWidget& widget) { named_ = &widget; }

  private:
    QWidget* named_ = nullptr;
};

class QtFileLabel final : public LabelView, public FileLabel {
  public:
    using LabelView::LabelView;
    void setStringValue(std::string_view text) override { setText(text); }
    void setToolTip(std::string_view text) override;
    void setTextColor(SemanticColor color) override { setColor(color); }

    const QString& plainToolTip() const { return plainToolTip_; }

  private:
    std::string toolTipUtf8_;
    QString plainToolTip_;
};

/// The rich text that shows this plain text: one line if that is narrower than the window,
/// which a path of about 100 characters is; else it can break after each slash and within long
/// names, at zero width spaces.
QString toolTipMarkup(const QString& plain);

} // namespace oxlade
