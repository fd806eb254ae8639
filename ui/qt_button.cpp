#include "ui/qt_button.h"

#include "ui/text.h"

namespace oxlade {

QString withoutMnemonic(QString text) { return text.replace(u'&', QStringLiteral("&&")); }

QtButton::QtButton(QWidget* parent) : QPushButton{parent} {
    setFont(interfaceFont(13));
    setAutoDefault(false);
    setFocusPolicy(Qt::StrongFocus);
}

void QtButton::setTitle(std::string_view title) {
    if (title == title_) return;
    title_ = title;
    setText(withoutMnemonic(toQString(title)));
}

void QtButton::setEnabled(bool enabled) {
    // Not isEnabled(), which is false for all controls while an alert is open.
    if (enabled != testAttribute(Qt::WA_ForceDisabled)) return;
    // The window knows its focus widget also while another window, an alert, is active.
    if (!enabled) lostFocus_ = window()->focusWidget() == this;
    // Before disabling, which would move the focus on to the next control, and screen readers
    // would name that.
    if (!enabled && lostFocus_) window()->setFocus();
    QPushButton::setEnabled(enabled);
    const QWidget* holder = window()->focusWidget();
    const bool isFree = holder == nullptr || holder == window();
    if (enabled && lostFocus_ && isFree) setFocus(Qt::OtherFocusReason);
    if (enabled) lostFocus_ = false;
}

} // namespace oxlade
