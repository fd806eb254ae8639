// The layout of the log's text: rows of one height, whatever fonts their characters come from.
// Main thread.
#pragma once

#include <QPlainTextDocumentLayout>

namespace oxlade {

/// From one row to the next, in points.
inline constexpr int rowPitch = 17;

/// Lines lie on one grid: the letters of the document's font end where their row ends.
class RowLayout final : public QPlainTextDocumentLayout {
  public:
    using QPlainTextDocumentLayout::QPlainTextDocumentLayout;

    QRectF blockBoundingRect(const QTextBlock& block) const override;
};

} // namespace oxlade
