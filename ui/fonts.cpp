#include "ui/fonts.h"

#include <QApplication>
#include <QFontDatabase>
#include <QFontInfo>

namespace oxlade {

QFont interfaceFont(int pixels, QFont::Weight weight) {
    QFont font = QApplication::font();
    font.setPixelSize(pixels);
    font.setWeight(weight);
    return font;
}

QFont monospacedFont(int pixels) {
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setStyleHint(QFont::Monospace);
    font.setPixelSize(pixels);
    font.setWeight(QFont::Normal);
    return font;
}

void chooseInterfaceFont() {
    const QString better = QStringLiteral("Inter");
    QFont font = QApplication::font();
    font.setPixelSize(13); // before it is looked up: one of another size is never used
    const QString family = QFontInfo{font}.family();
    const bool none = family.startsWith(QLatin1String{"DejaVu"}) ||
                      family.startsWith(QLatin1String{"Bitstream Vera"});
    if (none && QFontDatabase::hasFamily(better)) font.setFamilies({better});
    QApplication::setFont(font);
}

} // namespace oxlade
