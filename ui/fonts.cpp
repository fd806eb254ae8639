#include "ui/fonts.h"

#include "ui/font_cache.h"
#include "ui/text.h"

#include <QApplication>
#include <QFontDatabase>

namespace oxlade {
namespace {

/// By its own name: for an alias the toolkit would sort all fonts that there are.
QString installed(const QString& family, FontKind kind) {
    return toQString(installedFamily(family.toStdString(), kind));
}

} // namespace

QFont interfaceFont(int pixels, QFont::Weight weight) {
    QFont font = QApplication::font();
    font.setPixelSize(pixels);
    font.setWeight(weight);
    return font;
}

QFont monospacedFont(int pixels) {
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setFamilies({installed(font.family(), FontKind::monospaced)});
    font.setStyleHint(QFont::Monospace);
    font.setPixelSize(pixels);
    font.setWeight(QFont::Normal);
    return font;
}

void chooseInterfaceFont() {
    const QString better = QStringLiteral("Inter");
    QFont font = QApplication::font();
    QString family = installed(font.family(), FontKind::proportional);
    const bool none = family.startsWith(QLatin1String{"DejaVu"}) ||
                      family.startsWith(QLatin1String{"Bitstream Vera"});
    if (none && QFontDatabase::hasFamily(better)) family = better;
    font.setFamilies({family});
    font.setPixelSize(13);
    QApplication::setFont(font);
}

} // namespace oxlade
