// The colours of the window, by meaning and appearance, and the application's palette, which
// follows the desktop's appearance. The functions are pure; the class belongs to the main thread.
//
// Nothing is cached: widgets ask at each paint, with their own palette, and so follow every
// change of the desktop's appearance.
#pragma once

#include "interfaces/types.h"

#include <QColor>
#include <QObject>
#include <QPalette>

#include <optional>

namespace oxlade {

/// Dark when the palette's window is darker than the text on it.
ColorScheme schemeOf(const QPalette& palette);

/// Mostly translucent: to be painted over what lies below.
QColor color(SemanticColor role, ColorScheme scheme);
QColor color(SemanticColor role, const QPalette& palette);

/// The opaque ground under the whole window.
QColor groundColor(ColorScheme scheme);
/// The fill of a card, and of the log, over the ground.
QColor cardColor(ColorScheme scheme);
QColor logColor(ColorScheme scheme);

/// The accent where the desktop has none.
QColor accentColor(ColorScheme scheme);
/// The desktop's highlight colour; accentColor where that is only Fusion's default or does
/// not stand out from the ground.
QColor accentOf(const QPalette& desktop, ColorScheme scheme);

/// The application's palette. Window is the ground, Button the fill of a card.
QPalette interfacePalette(ColorScheme scheme, const QColor& accent);

/// `top` painted on the opaque `below`.
QColor over(const QColor& top, const QColor& below);
/// The contrast of two opaque colours, 1 to 21.
double contrast(const QColor& a, const QColor& b);
/// The accent for a line or a bar on the opaque ground, made darker or lighter until it
/// stands out.
QColor seenOn(const QColor& ground, QColor accent);
/// White if it is readable on the opaque fill, else the better of black and white.
QColor textOn(const QColor& fill);

struct ButtonState {
    bool enabled = true;
    bool hovered = false;
    bool pressed = false;
    bool filled = false; ///< the window's or the alert's default button
};
struct ButtonColors {
    QColor fill, edge, text; ///< to be painted over what lies below
};
ButtonColors buttonColors(const QPalette& palette, const ButtonState& state);

struct SegmentColors {
    QColor groove, thumb, thumbEdge, chosenText, otherText;
    QColor liftedThumb; ///< of another segment under the pointer; opaque
};
SegmentColors segmentColors(const QPalette& palette);

/// The opaque shadow that a button under the pointer casts on this ground.
QColor shadowColor(const QColor& ground);

/// The accent as a focus ring or a progress bar on a card.
QColor markColor(const QPalette& palette);
/// The part of a progress bar that is not done; translucent.
QColor progressGrooveColor(const QPalette& palette, bool failed = false);
/// The opaque edge of a menu or a tool tip with this fill.
QColor popupEdgeColor(const QColor& fill, const QPalette& palette);

/// Keeps the application's palette in the desktop's appearance. One per application.
class Appearance final : public QObject {
  public:
    /// Replaces the application's palette at once.
    Appearance();
    /// Restores the desktop's palette.
    ~Appearance() override;

    /// What the user chose for the desktop; nullopt: that of the desktop's palette.
    void setPreference(std::optional<ColorScheme> preference);

    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void readDesktop();
    void apply();

    QPalette desktop_;
    std::optional<ColorScheme> preference_;
    bool applying_ = false;
};

} // namespace oxlade
