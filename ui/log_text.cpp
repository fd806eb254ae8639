#include "ui/log_text.h"

#include <QFontMetricsF>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextLayout>

#include <algorithm>

namespace oxlade {
namespace {

/// Whether QTextDocument begins a new block after the character.
bool endsBlock(QChar c) {
    return c == u'\n' || c == u'\r' || c == QChar::ParagraphSeparator || c == QChar{0xFDD0} ||
           c == QChar{0xFDD1};
}

bool isControl(QChar c) { return c < u' ' || (c >= QChar{0x7F} && c < QChar{0xA0}); }

/// Whether the view shows the character as it is, on the same line.
bool isPlain(QChar c) {
    const bool isPrintableAscii = c >= u' ' && c <= u'~'; // most are: the shortest way for them
    return isPrintableAscii || c == u'\t' || (!endsBlock(c) && !isControl(c));
}

/// Control characters are shown as a box, as a missing glyph looks. Qt would search all
/// installed fonts for a glyph whenever one is painted: 60 ms for a block of NULs.
constexpr QChar box{0x25AF};

} // namespace

qsizetype LogText::pending() const {
    const bool heldBack = !text_.isEmpty() && endsBlock(text_.back());
    return text_.size() - (heldBack ? 1 : 0) - taken_;
}

QString LogText::take(qsizetype limit, Lines lines) {
    const qsizetype last = taken_ + pending();
    qsizetype end = std::min(taken_ + limit, last);
    if (end > taken_ && end < last && text_[end - 1].isHighSurrogate()) ++end;
    QString view;
    view.reserve(end - taken_ + 16);
    const qsizetype viewStart = taken_ + static_cast<qsizetype>(breaks_.size());
    while (taken_ < end) {
        const qsizetype room = std::clamp<qsizetype>(longestBlock - column_, 0, end - taken_);
        const QStringView next = QStringView{text_}.sliced(taken_, room);
        const auto plain = std::find_if_not(next.begin(), next.end(), isPlain) - next.begin();
        view += next.first(plain);
        column_ += plain;
        taken_ += plain;
        if (taken_ == end) break;
        const QChar c = text_[taken_++];
        if (endsBlock(c)) {
            // One character for each, so that positions can be counted: QTextDocument would
            // join a carriage return and a line feed.
            const bool stays = lines == Lines::packed && column_ < fullBlock;
            view += stays ? QChar{QChar::LineSeparator} : QChar{u'\n'};
            column_ = stays ? column_ + 1 : 0;
            continue;
        }
        if (column_ >= longestBlock && !c.isLowSurrogate()) {
            breaks_.push_back(viewStart + view.size());
            view += u'\n';
            column_ = 0;
        }
        view += isPlain(c) ? c : box;
        ++column_;
    }
    return view;
}

qsizetype LogText::toText(qsizetype viewPosition) const {
    const auto before = std::lower_bound(breaks_.begin(), breaks_.end(), viewPosition);
    return viewPosition - (before - breaks_.begin());
}

qsizetype LogText::toView(qsizetype textPosition) const {
    const auto isBefore = [&](const qsizetype& inserted) {
        return inserted - (&inserted - breaks_.data()) < textPosition;
    };
    const auto before = std::partition_point(breaks_.begin(), breaks_.end(), isBefore);
    return textPosition + (before - breaks_.begin());
}

QRectF RowLayout::blockBoundingRect(const QTextBlock& block) const {
    QRectF bounds = QPlainTextDocumentLayout::blockBoundingRect(block);
    if (!block.isValid()) return bounds;
    const QTextLayout& layout = *block.layout();
    const double descent = QFontMetricsF{document()->defaultFont()}.descent();
    for (int row = 0; row < layout.lineCount(); ++row) {
        QTextLine line = layout.lineAt(row);
        line.setPosition({line.x(), rowPitch * (row + 1) - descent - line.ascent()});
    }
    bounds.setHeight(rowPitch * layout.lineCount());
    return bounds;
}

} // namespace oxlade
