#include "ui/labels.h"

#include "ui/text.h"

#include <QAccessible>

namespace oxlade {

void TextLabel::setStringValue(std::string_view text) {
    if (setText(text) && named_ != nullptr) named_->setAccessibleName(this->text());
}

void FileTextLabel::setToolTip(std::string_view text) {
    if (text == toolTipUtf8_) return;
    toolTipUtf8_ = text;
    plainToolTip_ = toQString(text);
    QWidget::setToolTip(toolTipMarkup(plainToolTip_));
    QAccessibleEvent event{this, QAccessible::DescriptionChanged};
    QAccessible::updateAccessibility(&event);
}

QString toolTipMarkup(const QString& plain) {
    if (plain.isEmpty()) return {};
    constexpr qsizetype longestPiece = 48;
    const QString breakHere = QStringLiteral("&#8203;");
    QString body;
    qsizetype start = 0;
    for (qsizetype i = 0; i < plain.size(); ++i) {
        const bool full = i + 1 - start >= longestPiece && !plain[i].isHighSurrogate();
        if (plain[i] != u'/' && !full && i + 1 < plain.size()) continue;
        body += plain.mid(start, i + 1 - start).toHtmlEscaped() + breakHere;
        start = i + 1;
    }
    return QStringLiteral("<p style=\"white-space:pre-wrap\">%1</p>").arg(body);
}

} // namespace oxlade
