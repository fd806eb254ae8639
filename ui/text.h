// Conversion between UTF-8 and QString. Any thread.
#pragma once

#include <QByteArrayView>
#include <QString>
#include <QStringDecoder>

#include <string>
#include <string_view>

namespace oxlade {

/// Keeps every character, a leading byte-order mark and NULs included. Each invalid byte
/// sequence becomes U+FFFD.
inline QString toQString(std::string_view utf8) {
    // QString::fromUtf8 would drop a leading byte-order mark.
    QStringDecoder decoder(QStringDecoder::Utf8, QStringConverter::Flag::Stateless |
                                                     QStringConverter::Flag::ConvertInitialBom);
    return decoder.decode(QByteArrayView(utf8.data(), static_cast<qsizetype>(utf8.size())));
}

/// A lone surrogate becomes a question mark; everything else is kept.
inline std::string toUtf8(const QString& text) { return text.toUtf8().toStdString(); }

/// The text for the accessibility bus, which cuts strings at the first NUL: each NUL becomes
/// its picture, U+2400. Positions do not change.
inline QString withVisibleNuls(QString text) { return text.replace(QChar::Null, QChar{0x2400}); }

} // namespace oxlade
