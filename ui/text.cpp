#include "ui/text.h"

#include <QPainter>
#include <QTextLayout>

#include <algorithm>
#include <cmath>

namespace oxlade {
namespace {

int widestDigit(const QFontMetrics& metrics) {
    int widest = 0;
    for (char16_t digit = u'0'; digit <= u'9'; ++digit)
        widest = std::max(widest, metrics.horizontalAdvance(QChar{digit}));
    return widest;
}

double startOf(const QRectF& frame, double width, Qt::Alignment alignment) {
    if (alignment & Qt::AlignRight) return frame.right() - width;
    if (alignment & Qt::AlignHCenter) return std::floor(frame.center().x() - width / 2.0);
    return frame.left();
}

} // namespace

int centredBaseline(const QRectF& frame, const QFontMetrics& metrics) {
    return static_cast<int>(std::lround(frame.center().y() + metrics.capHeight() / 2.0));
}

void drawLine(QPainter& painter, const QRectF& frame, const QString& text, Qt::Alignment alignment,
              Qt::TextElideMode mode) {
    if (text.isEmpty()) return;
    const QFontMetrics metrics = painter.fontMetrics();
    // One layout for measuring and drawing: shaping is the expensive part.
    QTextLayout layout{text, painter.font(), painter.device()};
    QTextOption option;
    option.setWrapMode(QTextOption::ManualWrap);
    option.setFlags(QTextOption::IncludeTrailingSpaces);
    // The window's direction, not the text's: a file name in any script precedes its size.
    option.setTextDirection(painter.layoutDirection());
    layout.setTextOption(option);
    layout.beginLayout();
    QTextLine line = layout.createLine();
    layout.endLayout();
    const double width = line.horizontalAdvance();
    if (mode != Qt::ElideNone && width > frame.width()) {
        const int room = static_cast<int>(frame.width());
        drawLine(painter, frame, metrics.elidedText(text, mode, room), alignment, Qt::ElideNone);
        return;
    }
    const double x = startOf(frame, std::round(width), alignment);
    line.draw(&painter, {x, centredBaseline(frame, metrics) - line.ascent()});
}

int tabularWidth(const QString& text, const QFontMetrics& metrics) {
    int width = 0;
    for (const QChar c : text)
        width += c.isDigit() ? widestDigit(metrics) : metrics.horizontalAdvance(c);
    return width;
}

void drawTabularDigits(QPainter& painter, const QRectF& frame, const QString& text,
                       Qt::Alignment alignment) {
    const QFontMetrics metrics = painter.fontMetrics();
    const int cell = widestDigit(metrics);
    double x = startOf(frame, tabularWidth(text, metrics), alignment);
    const double y = centredBaseline(frame, metrics);
    for (const QChar c : text) {
        const int advance = metrics.horizontalAdvance(c);
        const int room = c.isDigit() ? cell : advance;
        painter.drawText(QPointF{x + (room - advance) / 2.0, y}, c);
        x += room;
    }
}

} // namespace oxlade
