// The colours of the window, by meaning and appearance. Pure.
//
// Nothing here is remembered: a widget asks at each paint, with its own palette,
// and so follows every change of the desktop's appearance.
#pragma once

#include "interfaces/colors.h"

#include <QColor>
#include <QPalette>

namespace oxlade {

/// Dark when the palette's window is darker than the text on it.
ColorScheme schemeOf(const QPalette& palette);

/// Mostly translucent: meant to be painted over what lies below.
QColor color(SemanticColor role, ColorScheme scheme);
QColor color(SemanticColor role, const QPalette& palette);

/// The opaque ground under the whole window.
QColor groundColor(ColorScheme scheme);
/// The fill of a card, and of the log, over the ground.
QColor cardColor(ColorScheme scheme);
QColor logColor(ColorScheme scheme);

/// The accent where the desktop names none.
QColor accentColor(ColorScheme scheme);
/// The desktop's highlight colour, or ours where that is only the style's own or
/// could not be told from the ground.
QColor accentOf(const QPalette& desktop, ColorScheme scheme);

/// A whole palette for the application, so that menus, alerts and tool tips match
/// the window.
QPalette interfacePalette(ColorScheme scheme, const QColor& accent);

/// `top` painted on the opaque `below`.
QColor over(const QColor& top, const QColor& below);
/// The contrast of two opaque colours, 1 to 21.
double contrast(const QColor& a, const QColor& b);
/// The accent for a line or a bar on the opaque ground: moved away from it where it
/// would not stand out.
QColor seenOn(const QColor& ground, QColor accent);
/// Black or white, whichever reads better on the opaque fill; white when it reads
/// well enough.
QColor textOn(const QColor& fill);

} // namespace oxlade
