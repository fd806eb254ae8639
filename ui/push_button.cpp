#include "ui/push_button.h"

#include "ui/control_drawing.h"
#include "ui/fonts.h"
#include "ui/palette.h"
#include "ui/status_views.h"
#include "ui/text.h"
#include "ui/text_drawing.h"

#include <QEvent>
#include <QPainter>

#include <algorithm>

namespace oxlade {
namespace {

constexpr double corner = 6;

/// A button's text with an ampersand is no mnemonic here.
QString withoutMnemonic(QString text) { return text.replace(u'&', QStringLiteral("&&")); }
QString shownText(QString text) { return text.replace(QStringLiteral("&&"), QStringLiteral("&")); }

/// What a button lies on.
QColor groundOf(const QWidget& button) {
    const ColorScheme scheme = schemeOf(button.palette());
    const bool onCard = dynamic_cast<const CardView*>(button.parentWidget()) != nullptr;
    return onCard ? cardColor(scheme) : groundColor(scheme);
}

} // namespace

PushButton::PushButton(ButtonSize size, QWidget* parent) : QPushButton{parent}, size_{size} {
    setFont(interfaceFont(13));
    setAttribute(Qt::WA_Hover);
    setAutoDefault(false);
    setFocusPolicy(Qt::StrongFocus);
}

void PushButton::setTitle(std::string_view title) {
    if (title == title_) return;
    title_ = title;
    setText(withoutMnemonic(toQString(title)));
}

void PushButton::setEnabled(bool enabled) {
    if (enabled == isEnabled()) return;
    // Asked of the window, which knows it also while another one, an alert, is active.
    if (!enabled) lostFocus_ = window()->focusWidget() == this;
    // Before: it would pass through the next control, which a screen reader would name.
    if (!enabled && lostFocus_) window()->setFocus();
    QPushButton::setEnabled(enabled);
    const QWidget* holder = window()->focusWidget();
    const bool nobodyHolds = holder == nullptr || holder == window();
    if (enabled && lostFocus_ && nobodyHolds) setFocus(Qt::OtherFocusReason);
    if (enabled) lostFocus_ = false;
}

void PushButton::setFilled(bool filled) {
    filled_ = filled;
    setFont(interfaceFont(13, filled ? QFont::Medium : QFont::Normal));
    update();
}

QRect PushButton::shape() const {
    const int above = size_ == ButtonSize::large ? 4 : 3;
    return rect().adjusted(4, above, -4, -above);
}

QSize PushButton::sizeHint() const {
    const int text = fontMetrics().horizontalAdvance(shownText(this->text()));
    return {std::max(96, text + 2 * 18 + 8), size_ == ButtonSize::large ? 40 : 32};
}

bool PushButton::event(QEvent* event) {
    focusRing_.follow(*event);
    return QPushButton::event(event);
}

void PushButton::paintEvent(QPaintEvent*) {
    QPainter painter{this};
    const bool filled = filled_ || isDefault();
    const ButtonState state{isEnabled(), underMouse(), isDown(), filled};
    const ButtonColors colors = buttonColors(palette(), state);
    const QColor fill = over(colors.fill, groundOf(*this));
    drawPanel(painter, shape(), corner, fill, over(colors.edge, fill));
    if (focusRing_.isShownOn(*this)) drawFocusRing(painter, shape(), corner, palette());
    painter.setPen(colors.text);
    drawLine(painter, shape(), shownText(text()), Qt::AlignHCenter);
}

LinkButton::LinkButton(const QString& title, QWidget* parent)
    : QPushButton{withoutMnemonic(title), parent} {
    setFont(interfaceFont(11));
    setCursor(Qt::PointingHandCursor);
    setFlat(true);
    setAutoDefault(false);
    setFocusPolicy(Qt::StrongFocus);
}

QSize LinkButton::sizeHint() const {
    return {fontMetrics().horizontalAdvance(shownText(text())), fontMetrics().height()};
}

bool LinkButton::event(QEvent* event) {
    focusRing_.follow(*event);
    return QPushButton::event(event);
}

void LinkButton::paintEvent(QPaintEvent*) {
    QPainter painter{this};
    painter.setPen(color(SemanticColor::linkColor, palette()));
    QFont shown = font();
    shown.setUnderline(isDown());
    painter.setFont(shown);
    drawLine(painter, rect(), shownText(text()), Qt::AlignLeft);
}

} // namespace oxlade
