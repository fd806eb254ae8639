// The colours of the window, by meaning and appearance. Pure.
//
// Nothing here is remembered: a widget asks at each paint, with its own palette,
// and so follows every change of the desktop's appearance.
#pragma once

#include "platform/desktop_settings.h"
#include "ui/semantic_color.h"

#include <QColor>
#include <QPalette>

namespace oxlade {

using Scheme = ColorScheme;

/// Dark when the palette's window is darker than the text on it.
Scheme schemeOf(const QPalette& palette);

/// Mostly translucent: meant to be painted over what lies below.
QColor color(SemanticColor role, Scheme scheme);
QColor color(SemanticColor role, const QPalette& palette);

/// The opaque ground under the whole window.
QColor groundColor(Scheme scheme);
/// The fill of a card, and of the log, over the ground.
QColor cardColor(Scheme scheme);
QColor logColor(Scheme scheme);

/// The accent where the desktop names none.
QColor accentColor(Scheme scheme);
/// The desktop's highlight colour, or ours where that is only the style's own or
/// could not be told from the ground.
QColor accentOf(const QPalette& desktop, Scheme scheme);

/// A whole palette for the application, so that menus, alerts and tool tips match
/// the window.
QPalette interfacePalette(Scheme scheme, const QColor& accent);

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
