#include "ui/log_text.h"

#include <algorithm>

namespace oxlade {
namespace {

/// The characters at which a text document begins a new block.
bool endsBlock(QChar c) {
    return c == u'\n' || c == u'\r' || c == QChar::ParagraphSeparator || c == QChar{0xFDD0} ||
           c == QChar{0xFDD1};
}

} // namespace

QString LogText::take(qsizetype limit) {
    qsizetype end = std::min(taken_ + limit, text_.size());
    if (end > taken_ && end < text_.size() && text_[end - 1].isHighSurrogate()) ++end;
    QString view;
    view.reserve(end - taken_ + 16);
    const qsizetype viewStart = taken_ + qsizetype(breaks_.size());
    for (; taken_ < end; ++taken_) {
        const QChar c = text_[taken_];
        if (endsBlock(c)) {
            // One break each, so that positions stay countable: a document would
            // make one of a carriage return and the line feed after it.
            view += u'\n';
            column_ = 0;
            continue;
        }
        if (column_ >= longestBlock && !c.isLowSurrogate()) {
            breaks_.push_back(viewStart + view.size());
            view += u'\n';
            column_ = 0;
        }
        view += c;
        ++column_;
    }
    return view;
}

QString LogText::between(qsizetype viewFrom, qsizetype viewTo) const {
    const qsizetype from = toText(viewFrom);
    return text_.mid(from, toText(viewTo) - from);
}

qsizetype LogText::toText(qsizetype viewPosition) const {
    const auto before = std::lower_bound(breaks_.begin(), breaks_.end(), viewPosition);
    return viewPosition - (before - breaks_.begin());
}

} // namespace oxlade
