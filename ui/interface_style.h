// The look of every control, in the window, alerts, menus, tool tips and Qt's own file
// chooser. Main thread.
#pragma once

#include <QColor>
#include <QRectF>

class QPainter;
class QPalette;
class QWidget;

namespace oxlade {

/// Sets the application's style. Calling it again has no effect.
///
/// Push buttons are drawn a few points inside their widget, so that the focus ring has room;
/// a flat push button is a link, drawn as mere text; a radio button is a segment of a
/// segmented control. Everything else is drawn by Fusion.
void useInterfaceStyle();

/// The corner radius of cards and of the log, in points.
inline constexpr double panelRadius = 12;

/// A filled rounded rectangle with an edge of one point inside it; no edge if that colour is
/// invalid. The colours are opaque: for large translucent shapes Qt starts threads.
void drawPanel(QPainter& painter, const QRectF& frame, double radius, const QColor& fill,
               const QColor& edge = {});
/// A ring of two points, one point outside the shape: marks the control with the keyboard
/// focus.
void drawFocusRing(QPainter& painter, const QRectF& shape, double radius, const QPalette& palette);
/// Whether the widget has the keyboard focus and got it by a key, not by a click.
bool showsKeyboardFocus(const QWidget& widget);

} // namespace oxlade
