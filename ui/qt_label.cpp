#include "ui/qt_label.h"

#include "ui/palette.h"
#include "ui/text.h"

#include <QAccessible>
#include <QPainter>
#include <QTextLayout>
#include <QToolTip>

#include <algorithm>
#include <cmath>

namespace oxlade {

LabelView::LabelView(const TextStyle& style, QWidget* parent) : QWidget{parent}, style_{style} {
    setFont(interfaceFont(style.pixels, style.weight));
}

bool LabelView::setText(std::string_view text) {
    if (text == utf8_) return false;
    utf8_ = text;
    text_ = toQString(text);
    update();
    if (!style_.quiet) {
        QAccessibleEvent event{this, QAccessible::NameChanged};
        QAccessible::updateAccessibility(&event);
    }
    return true;
}

void LabelView::setColor(SemanticColor color) {
    if (color == style_.color) return;
    style_.color = color;
    update();
}

QSize LabelView::sizeHint() const {
    const double width = std::ceil(QFontMetricsF{font()}.horizontalAdvance(text_));
    return {static_cast<int>(width), fontMetrics().height()};
}

QStringList LabelView::displayedLines() const {
    if (style_.truncation == Truncation::twoLines) return wrappedLines();
    return {fontMetrics().elidedText(inOneLine(), elideMode(), width())};
}

QString LabelView::inOneLine() const {
    QString line = text_;
    for (QChar& c : line)
        if (c == u'\n' || c == QChar::LineSeparator || c == QChar::ParagraphSeparator) c = u' ';
    return line;
}

Qt::TextElideMode LabelView::elideMode() const {
    return style_.truncation == Truncation::middle ? Qt::ElideMiddle : Qt::ElideRight;
}

QStringList LabelView::wrappedLines() const {
    QString source = text_;
    source.replace(u'\n', QChar::LineSeparator);
    QTextLayout layout{source, font()};
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    QStringList lines;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid() && lines.size() < 2;
         line = layout.createLine()) {
        line.setLineWidth(width());
        lines << source.mid(line.textStart(), line.textLength()).trimmed();
    }
    layout.endLayout();
    return lines;
}

/// Some fonts need more height for two lines than the frame has: each gets half of it.
QRectF LabelView::rowFrame(qsizetype row) const {
    // The frame whose middle line is that of the capitals when the ascent begins at the top.
    if (style_.alignment & Qt::AlignTop)
        return {0, 0, static_cast<double>(width()),
                2.0 * fontMetrics().ascent() - fontMetrics().capHeight()};
    const double pitch = height() / (style_.truncation == Truncation::twoLines ? 2.0 : 1.0);
    return {0, pitch * static_cast<double>(row), static_cast<double>(width()), pitch};
}

int LabelView::baselineOfRow(int row) const {
    return centredBaseline(rowFrame(row), fontMetrics());
}

void LabelView::paintEvent(QPaintEvent*) {
    QPainter painter{this};
    painter.setPen(color(style_.color, palette()));
    if (style_.tabularDigits)
        return drawTabularDigits(painter, rowFrame(0), displayedLines().first(), style_.alignment);
    if (style_.truncation != Truncation::twoLines)
        return drawLine(painter, rowFrame(0), inOneLine(), style_.alignment, elideMode());
    const QStringList lines = wrappedLines();
    for (qsizetype row = 0; row < lines.size(); ++row)
        drawLine(painter, rowFrame(row), lines[row], style_.alignment);
}

void QtLabel::setStringValue(std::string_view text) {
    if (setText(text) && named_ != nullptr) named_->setAccessibleName(this->text());
}

void QtFileLabel::setToolTip(std::string_view text) {
    if (text == toolTipUtf8_) return;
    toolTipUtf8_ = text;
    plainToolTip_ = toQString(text);
    QWidget::setToolTip(toolTipMarkup(plainToolTip_));
    QAccessibleEvent event{this, QAccessible::DescriptionChanged};
    QAccessible::updateAccessibility(&event);
}

QString toolTipMarkup(const QString& plain) {
    if (plain.isEmpty()) return {};
    constexpr int widestLine = 760;
    if (QFontMetrics{QToolTip::font()}.horizontalAdvance(plain) <= widestLine)
        return QStringLiteral("<p style=\"white-space:pre\">%1</p>").arg(plain.toHtmlEscaped());
    constexpr qsizetype longestPiece = 48;
    const QString breakHere = QStringLiteral("&#8203;");
    QString body;
    qsizetype start = 0;
    for (qsizetype i = 0; i < plain.size(); ++i) {
        const bool full = i + 1 - start >= longestPiece && !plain[i].isHighSurrogate();
        if (plain[i] != u'/' && !full && i + 1 < plain.size()) continue;
        body += plain.mid(start, i + 1 - start).toHtmlEscaped() + breakHere;
        start = i + 1;
    }
    return QStringLiteral("<p style=\"white-space:pre-wrap\">%1</p>").arg(body);
}

} // namespace oxlade
