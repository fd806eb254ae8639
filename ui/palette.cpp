#include "ui/palette.h"

#include <QStyle>
#include <QStyleFactory>

#include <cmath>
#include <memory>

namespace oxlade {
namespace {

constexpr double readable = 4.5;
constexpr double visible = 3;

QColor translucent(QRgb rgb, double alpha) {
    QColor result{rgb};
    result.setAlphaF(static_cast<float>(alpha));
    return result;
}

QColor lightColor(SemanticColor role) {
    switch (role) {
    case SemanticColor::labelColor:
        return translucent(0x000000, 0.86);
    case SemanticColor::secondaryLabelColor:
        return translucent(0x000000, 0.58);
    case SemanticColor::tertiaryLabelColor:
        return translucent(0x000000, 0.28);
    case SemanticColor::systemGreenColor:
        return {0x28, 0xB4, 0x46};
    case SemanticColor::systemOrangeColor:
        return {0xF0, 0x8C, 0x00};
    case SemanticColor::systemRedColor:
        return {0xE5, 0x38, 0x2C};
    case SemanticColor::controlBackgroundColor:
        return {0xFF, 0xFF, 0xFF};
    case SemanticColor::separatorColor:
        return translucent(0x000000, 0.10);
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
        return translucent(0xFFFFFF, 0.88);
    case SemanticColor::secondaryLabelColor:
        return translucent(0xFFFFFF, 0.60);
    case SemanticColor::tertiaryLabelColor:
        return translucent(0xFFFFFF, 0.30);
    case SemanticColor::systemGreenColor:
        return {0x30, 0xD1, 0x58};
    case SemanticColor::systemOrangeColor:
        return {0xFF, 0x9F, 0x0A};
    case SemanticColor::systemRedColor:
        return {0xFF, 0x5A, 0x50};
    case SemanticColor::controlBackgroundColor:
        return {0x3A, 0x3A, 0x3F};
    case SemanticColor::separatorColor:
        return translucent(0xFFFFFF, 0.10);
    case SemanticColor::textBackgroundColor:
        return {0x10, 0x10, 0x12};
    case SemanticColor::linkColor:
        return {0x5A, 0xA9, 0xFF};
    }
    return {};
}

QColor faded(QColor base, double alpha) {
    base.setAlphaF(static_cast<float>(alpha));
    return base;
}

double linear(double channel) {
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& c) {
    return 0.2126 * linear(c.redF()) + 0.7152 * linear(c.greenF()) + 0.0722 * linear(c.blueF());
}

/// The style's own highlight, which every desktop without one of its own gets.
QColor styleHighlight() {
    static const QColor own = [] {
        const std::unique_ptr<QStyle> fusion{QStyleFactory::create(QStringLiteral("fusion"))};
        return fusion ? fusion->standardPalette().color(QPalette::Highlight) : QColor{};
    }();
    return own;
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
    const QColor field =
        over(faded(color(SemanticColor::textBackgroundColor, scheme), 0.8), ground);
    QPalette result{cardColor(scheme), ground};
    result.setColor(QPalette::WindowText, text);
    result.setColor(QPalette::Text, text);
    result.setColor(QPalette::ButtonText, text);
    result.setColor(QPalette::Base, field);
    result.setColor(QPalette::AlternateBase, ground);
    result.setColor(QPalette::ToolTipBase, cardColor(scheme));
    result.setColor(QPalette::ToolTipText, text);
    result.setColor(QPalette::PlaceholderText, color(SemanticColor::secondaryLabelColor, scheme));
    result.setColor(QPalette::Highlight, accent);
    result.setColor(QPalette::HighlightedText, textOn(accent));
    result.setColor(QPalette::Link, color(SemanticColor::linkColor, scheme));
    const QColor disabled = over(color(SemanticColor::tertiaryLabelColor, scheme), ground);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        result.setColor(QPalette::Disabled, role, disabled);
    return result;
}

QColor over(const QColor& top, const QColor& below) {
    const auto mix = [alpha = double(top.alphaF())](int a, int b) {
        return int(std::lround(a * alpha + b * (1 - alpha)));
    };
    return {mix(top.red(), below.red()), mix(top.green(), below.green()),
            mix(top.blue(), below.blue())};
}

double contrast(const QColor& a, const QColor& b) {
    const double first = luminance(a), second = luminance(b);
    return (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05);
}

QColor seenOn(const QColor& ground, QColor accent) {
    QColor veil = luminance(ground) < 0.2 ? QColor{Qt::white} : QColor{Qt::black};
    veil.setAlphaF(0.1F);
    for (int step = 0; step < 20 && contrast(accent, ground) < visible; ++step)
        accent = over(veil, accent);
    return accent;
}

QColor textOn(const QColor& fill) {
    const QColor white{Qt::white}, black{Qt::black};
    if (contrast(white, fill) >= readable) return white;
    return contrast(white, fill) > contrast(black, fill) ? white : black;
}

} // namespace oxlade
