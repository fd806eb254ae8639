#include "ui/row_layout.h"

#include <QFontMetricsF>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextLayout>

namespace oxlade {

QRectF RowLayout::blockBoundingRect(const QTextBlock& block) const {
    QRectF bounds = QPlainTextDocumentLayout::blockBoundingRect(block);
    if (!block.isValid()) return bounds;
    const QTextLayout& layout = *block.layout();
    const double descent = QFontMetricsF{document()->defaultFont()}.descent();
    for (int row = 0; row < layout.lineCount(); ++row) {
        QTextLine line = layout.lineAt(row);
        line.setPosition({line.x(), rowPitch * (row + 1) - descent - line.ascent()});
    }
    bounds.setHeight(rowPitch * layout.lineCount());
    return bounds;
}

} // namespace oxlade
