#include "ui/palette.h"

#include <QApplication>
#include <QEvent>
#include <QScopedValueRollback>
#include <QStyle>
#include <QStyleFactory>

#include <cmath>
#include <memory>

namespace oxlade {
namespace {

constexpr double readable = 4.5;
constexpr double visible = 3;

QColor faded(QColor base, double alpha) {
    base.setAlphaF(static_cast<float>(alpha));
    return base;
}

QColor lightColor(SemanticColor role) {
    switch (role) {
    case SemanticColor::labelColor:
        return faded(Qt::black, 0.86);
    case SemanticColor::secondaryLabelColor:
        return faded(Qt::black, 0.58);
    case SemanticColor::tertiaryLabelColor:
        return faded(Qt::black, 0.28);
    case SemanticColor::systemGreenColor:
        return {0x28, 0xB4, 0x46};
    case SemanticColor::systemOrangeColor:
        return {0xF0, 0x8C, 0x00};
    case SemanticColor::systemRedColor:
        return {0xE5, 0x38, 0x2C};
    case SemanticColor::controlBackgroundColor:
        return {0xFF, 0xFF, 0xFF};
    case SemanticColor::separatorColor:
        return faded(Qt::black, 0.10);
    case SemanticColor::textBackgroundColor:
        return {0xFF, 0xFF, 0xFF};
    case SemanticColor::linkColor:
        return {0x00, 0x60, 0xC8};
    }
    return {};
}

QColor darkColor(SemanticColor role) {
    switch (role) {
    case SemanticColor::labelColor:
        return faded(Qt::white, 0.88);
    case SemanticColor::secondaryLabelColor:
        return faded(Qt::white, 0.60);
    case SemanticColor::tertiaryLabelColor:
        return faded(Qt::white, 0.30);
    case SemanticColor::systemGreenColor:
        return {0x30, 0xD1, 0x58};
    case SemanticColor::systemOrangeColor:
        return {0xFF, 0x9F, 0x0A};
    case SemanticColor::systemRedColor:
        return {0xFF, 0x5A, 0x50};
    case SemanticColor::controlBackgroundColor:
        return {0x3A, 0x3A, 0x3F};
    case SemanticColor::separatorColor:
        return faded(Qt::white, 0.10);
    case SemanticColor::textBackgroundColor:
        return {0x10, 0x10, 0x12};
    case SemanticColor::linkColor:
        return {0x5A, 0xA9, 0xFF};
    }
    return {};
}

double linear(double channel) {
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& c) {
    return 0.2126 * linear(c.redF()) + 0.7152 * linear(c.greenF()) + 0.0722 * linear(c.blueF());
}

/// Fusion's default highlight: what desktops without one of their own have.
QColor styleHighlight() {
    static const QColor own = [] {
        const std::unique_ptr<QStyle> fusion{QStyleFactory::create(QStringLiteral("fusion"))};
        return fusion ? fusion->standardPalette().color(QPalette::Highlight) : QColor{};
    }();
    return own;
}

QColor ink(ColorScheme scheme, double alpha) {
    return faded(scheme == ColorScheme::dark ? Qt::white : Qt::black, alpha);
}

QColor shade(const QColor& fill, double blackness) {
    return over(ink(ColorScheme::light, blackness), fill);
}

ButtonColors filledColors(const QPalette& palette, const ButtonState& state) {
    const ColorScheme scheme = schemeOf(palette);
    if (!state.enabled)
        return {ink(scheme, 0.07), ink(scheme, 0.03),
                color(SemanticColor::tertiaryLabelColor, scheme)};
    const QColor accent = palette.color(QPalette::Active, QPalette::Highlight);
    // Moves the fill away from the text, so that the text stays readable.
    const QColor text = textOn(accent);
    const double depth = state.pressed ? 0.16 : state.hovered ? 0.06 : 0;
    const QColor overlay = faded(text == QColor{Qt::white} ? Qt::black : Qt::white, depth);
    const QColor fill = over(overlay, accent);
    return {fill, shade(fill, 0.10), text};
}

ButtonColors plainColors(const QPalette& palette, const ButtonState& state) {
    const ColorScheme scheme = schemeOf(palette);
    const bool dark = scheme == ColorScheme::dark;
    if (!state.enabled)
        return {ink(scheme, dark ? 0.04 : 0.02), ink(scheme, 0.06),
                color(SemanticColor::tertiaryLabelColor, scheme)};
    const QColor text = color(SemanticColor::labelColor, scheme);
    const double lift = state.hovered && !state.pressed ? 0.10 : 0;
    const QColor edge = ink(scheme, (dark ? 0.12 : 0.15) + lift);
    if (dark) return {ink(scheme, state.pressed ? 0.22 : state.hovered ? 0.16 : 0.11), edge, text};
    return {state.pressed ? QColor{0xE2, 0xE2, 0xE6} : QColor{Qt::white}, edge, text};
}

} // namespace

ColorScheme schemeOf(const QPalette& palette) {
    const auto brightness = [&](QPalette::ColorRole role) {
        return luminance(palette.color(QPalette::Active, role));
    };
    return brightness(QPalette::Window) < brightness(QPalette::WindowText) ? ColorScheme::dark
                                                                           : ColorScheme::light;
}

QColor color(SemanticColor role, ColorScheme scheme) {
    return scheme == ColorScheme::dark ? darkColor(role) : lightColor(role);
}

QColor color(SemanticColor role, const QPalette& palette) { return color(role, schemeOf(palette)); }

QColor groundColor(ColorScheme scheme) {
    return scheme == ColorScheme::dark ? QColor{0x26, 0x26, 0x29} : QColor{0xEF, 0xEF, 0xF2};
}

QColor cardColor(ColorScheme scheme) {
    return over(faded(color(SemanticColor::controlBackgroundColor, scheme), 0.6),
                groundColor(scheme));
}

QColor logColor(ColorScheme scheme) {
    return over(faded(color(SemanticColor::textBackgroundColor, scheme), 0.55),
                groundColor(scheme));
}

QColor accentColor(ColorScheme scheme) {
    return scheme == ColorScheme::dark ? QColor{0x2B, 0x71, 0xE3} : QColor{0x0A, 0x68, 0xE8};
}

QColor accentOf(const QPalette& desktop, ColorScheme scheme) {
    QColor highlight = desktop.color(QPalette::Active, QPalette::Highlight);
    highlight.setAlpha(255);
    const bool stands = contrast(highlight, cardColor(scheme)) >= 1.8;
    return stands && highlight != styleHighlight() ? highlight : accentColor(scheme);
}

QPalette interfacePalette(ColorScheme scheme, const QColor& accent) {
    const QColor ground = groundColor(scheme);
    const QColor text = over(color(SemanticColor::labelColor, scheme), ground);
    QPalette result{cardColor(scheme), ground};
    result.setColor(QPalette::WindowText, text);
    result.setColor(QPalette::Text, text);
    result.setColor(QPalette::ButtonText, text);
    result.setColor(QPalette::Base, logColor(scheme));
    result.setColor(QPalette::AlternateBase, ground);
    result.setColor(QPalette::ToolTipBase, cardColor(scheme));
    result.setColor(QPalette::ToolTipText, text);
    result.setColor(QPalette::PlaceholderText, color(SemanticColor::secondaryLabelColor, scheme));
    result.setColor(QPalette::Highlight, accent);
    result.setColor(QPalette::HighlightedText, textOn(accent));
    result.setColor(QPalette::Link, color(SemanticColor::linkColor, scheme));
    const QColor disabled = over(color(SemanticColor::tertiaryLabelColor, scheme), ground);
    // Not Text: the log stays readable under an alert that refers to it.
    for (const auto role : {QPalette::WindowText, QPalette::ButtonText})
        result.setColor(QPalette::Disabled, role, disabled);
    return result;
}

QColor over(const QColor& top, const QColor& below) {
    const auto mix = [alpha = static_cast<double>(top.alphaF())](int a, int b) {
        return static_cast<int>(std::lround(a * alpha + b * (1 - alpha)));
    };
    return {mix(top.red(), below.red()), mix(top.green(), below.green()),
            mix(top.blue(), below.blue())};
}

double contrast(const QColor& a, const QColor& b) {
    const double first = luminance(a), second = luminance(b);
    return (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05);
}

QColor seenOn(const QColor& ground, QColor accent) {
    const QColor overlay = faded(luminance(ground) < 0.2 ? Qt::white : Qt::black, 0.1);
    for (int step = 0; step < 20 && contrast(accent, ground) < visible; ++step)
        accent = over(overlay, accent);
    return accent;
}

QColor textOn(const QColor& fill) {
    const QColor white{Qt::white}, black{Qt::black};
    if (contrast(white, fill) >= readable) return white;
    return contrast(white, fill) > contrast(black, fill) ? white : black;
}

ButtonColors buttonColors(const QPalette& palette, const ButtonState& state) {
    return state.filled ? filledColors(palette, state) : plainColors(palette, state);
}

SegmentColors segmentColors(const QPalette& palette) {
    const ColorScheme scheme = schemeOf(palette);
    const bool dark = scheme == ColorScheme::dark;
    const QColor groove = ink(scheme, dark ? 0.09 : 0.07);
    const QColor thumb = dark ? QColor{0x62, 0x62, 0x68} : QColor{Qt::white};
    return {groove,
            thumb,
            ink(ColorScheme::light, dark ? 0.20 : 0.10),
            color(SemanticColor::labelColor, scheme),
            color(SemanticColor::secondaryLabelColor, scheme),
            over(faded(thumb, 0.5), over(groove, groundColor(scheme)))};
}

QColor shadowColor(const QColor& ground) { return over(ink(ColorScheme::light, 0.16), ground); }

QColor markColor(const QPalette& palette) {
    return seenOn(cardColor(schemeOf(palette)),
                  palette.color(QPalette::Active, QPalette::Highlight));
}

QColor progressGrooveColor(const QPalette& palette, bool failed) {
    const ColorScheme scheme = schemeOf(palette);
    return failed ? faded(color(SemanticColor::systemRedColor, scheme), 0.30) : ink(scheme, 0.10);
}

QColor popupEdgeColor(const QColor& fill, const QPalette& palette) {
    return over(ink(schemeOf(palette), 0.18), fill);
}

Appearance::Appearance() : desktop_{QApplication::palette()} {
    apply();
    qApp->installEventFilter(this);
}

Appearance::~Appearance() {
    qApp->removeEventFilter(this);
    QApplication::setPalette(QPalette{});
}

void Appearance::setPreference(std::optional<ColorScheme> preference) {
    preference_ = preference;
    apply();
}

bool Appearance::eventFilter(QObject* watched, QEvent* event) {
    if (!applying_ && watched == qApp && event->type() == QEvent::ApplicationPaletteChange) {
        desktop_ = QApplication::palette();
        apply();
    } else if (!applying_ && watched->isWindowType() && event->type() == QEvent::ThemeChange) {
        readDesktop();
        apply();
    }
    return QObject::eventFilter(watched, event);
}

/// QApplication::palette() is the desktop's only while no other is set.
void Appearance::readDesktop() {
    const QScopedValueRollback guard{applying_, true};
    QApplication::setPalette(QPalette{});
    desktop_ = QApplication::palette();
}

void Appearance::apply() {
    const QScopedValueRollback guard{applying_, true};
    const ColorScheme scheme = preference_.value_or(schemeOf(desktop_));
    QApplication::setPalette(interfacePalette(scheme, accentOf(desktop_, scheme)));
}

} // namespace oxlade
