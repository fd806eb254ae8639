// Text put on a line the way the window wants it. Main thread.
#pragma once

#include <QFontMetrics>
#include <QRectF>
#include <QString>

class QPainter;

namespace oxlade {

/// The baseline, a whole number of points, that centres capital letters in the
/// rectangle. Fonts differ in the room that they leave above and below a line, and
/// centring that room makes texts in some of them sit too low.
int centredBaseline(const QRectF& frame, const QFontMetrics& metrics);

/// Draws one line, aligned within the frame. One that is wider than the frame is
/// shortened as `mode` says; the text has no line ends.
void drawLine(QPainter& painter, const QRectF& frame, const QString& text, Qt::Alignment alignment,
              Qt::TextElideMode mode = Qt::ElideNone);

/// The same with all digits as wide as the widest one, so that a number that
/// counts does not tremble.
void drawSteadyLine(QPainter& painter, const QRectF& frame, const QString& text,
                    Qt::Alignment alignment);
/// The width that drawSteadyLine takes, in points.
int steadyWidth(const QString& text, const QFontMetrics& metrics);

} // namespace oxlade
