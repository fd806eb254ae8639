#include "ui/text_field.h"

#include "ui/fonts.h"
#include "ui/palette.h"
#include "ui/text.h"
#include "ui/text_drawing.h"

#include <QAccessible>
#include <QPainter>
#include <QTextLayout>

#include <algorithm>
#include <cmath>

namespace oxlade {

TextField::TextField(const TextStyle& style, QWidget* parent) : QWidget{parent}, style_{style} {
    setFont(interfaceFont(style.pixels, style.weight));
}

bool TextField::setText(std::string_view text) {
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

void TextField::setColor(SemanticColor color) {
    if (color == style_.color) return;
    style_.color = color;
    update();
}

QSize TextField::sizeHint() const {
    const double width = std::ceil(QFontMetricsF{font()}.horizontalAdvance(text_));
    return {int(width), fontMetrics().height()};
}

QStringList TextField::displayedLines() const {
    if (style_.truncation == Truncation::twoLines) return wrappedLines();
    return {fontMetrics().elidedText(inOneLine(), elideMode(), width())};
}

QString TextField::inOneLine() const {
    QString line = text_;
    for (QChar& c : line)
        if (c == u'\n' || c == QChar::LineSeparator || c == QChar::ParagraphSeparator) c = u' ';
    return line;
}

Qt::TextElideMode TextField::elideMode() const {
    return style_.truncation == Truncation::middle ? Qt::ElideMiddle : Qt::ElideRight;
}

QStringList TextField::wrappedLines() const {
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

/// Some fonts want more height for two lines than the frame has: it is shared.
QRectF TextField::rowFrame(qsizetype row) const {
    const double pitch = height() / (style_.truncation == Truncation::twoLines ? 2.0 : 1.0);
    return {0, pitch * double(row), double(width()), pitch};
}

int TextField::baselineOfRow(int row) const {
    return centredBaseline(rowFrame(row), fontMetrics());
}

void TextField::paintEvent(QPaintEvent*) {
    QPainter painter{this};
    painter.setPen(color(style_.color, palette()));
    if (style_.monospacedDigits)
        return drawSteadyLine(painter, rowFrame(0), displayedLines().first(), style_.alignment);
    if (style_.truncation != Truncation::twoLines)
        return drawLine(painter, rowFrame(0), inOneLine(), style_.alignment, elideMode());
    const QStringList lines = wrappedLines();
    for (qsizetype row = 0; row < lines.size(); ++row)
        drawLine(painter, rowFrame(row), lines[row], style_.alignment);
}

} // namespace oxlade
