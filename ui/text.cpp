#include "ui/text.h"

#include <QByteArray>
#include <QStringDecoder>

namespace oxlade {

QString toQString(std::string_view utf8) {
    // QString::fromUtf8 would drop a leading byte-order mark.
    QStringDecoder decoder(QStringDecoder::Utf8, QStringConverter::Flag::Stateless |
                                                     QStringConverter::Flag::ConvertInitialBom);
    return decoder.decode(QByteArrayView(utf8.data(), static_cast<qsizetype>(utf8.size())));
}

std::string toUtf8(const QString& text) { return text.toUtf8().toStdString(); }

QString withVisibleNuls(QString text) { return text.replace(QChar::Null, QChar{0x2400}); }

} // namespace oxlade
