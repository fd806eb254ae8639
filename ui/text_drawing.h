// Draws single lines of text. Main thread.
#pragma once

#include <QFontMetrics>
#include <QRectF>
#include <QString>

class QPainter;

namespace oxlade {

/// The baseline, in whole points, that centres capital letters in the rectangle. Fonts differ
/// in the space above and below a line; centring that space places some of them too low.
int centredBaseline(const QRectF& frame, const QFontMetrics& metrics);

/// Draws one line, aligned in the frame, in the painter's font and pen. A line wider than the
/// frame is elided as `mode` says. `text` has no line ends.
void drawLine(QPainter& painter, const QRectF& frame, const QString& text, Qt::Alignment alignment,
              Qt::TextElideMode mode = Qt::ElideNone);

/// The same with tabular digits: each as wide as the widest one, so that a number that counts
/// does not move.
void drawTabularDigits(QPainter& painter, const QRectF& frame, const QString& text,
                       Qt::Alignment alignment);
/// The width that drawTabularDigits needs, in points.
int tabularWidth(const QString& text, const QFontMetrics& metrics);

} // namespace oxlade
