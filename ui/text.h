// Text in the window: between UTF-8 and QString (any thread), its fonts, and single lines drawn
// (main thread unless said otherwise). Font sizes are in layout points, that is logical pixels:
// typographic points would grow with the display's resolution.
#pragma once

#include <QByteArrayView>
#include <QFont>
#include <QFontMetrics>
#include <QRectF>
#include <QString>
#include <QStringDecoder>

#include <string>
#include <string_view>

class QPainter;

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

/// Starts reading the font configuration on another thread, so that the functions below need
/// not wait for it. Optional; call it first.
void readFontsAhead();

enum class FontKind { proportional, monospaced };

/// The name of the installed family of that kind that is used for `family`, which may be
/// missing or an alias such as "monospace". Instead of a proportional family without faces of
/// its own for Medium and DemiBold, Inter where that is installed: labels of different weights
/// would look the same. `family` itself where the system does not tell. Any thread; waits for
/// readFontsAhead to finish.
std::string installedFamily(const std::string& family, FontKind kind);

/// The application's sans font.
QFont interfaceFont(int pixels, QFont::Weight weight = QFont::Normal);
/// The desktop's monospaced font.
QFont monospacedFont(int pixels);
/// Sets the application's sans font: what installedFamily gives for the desktop's.
void chooseInterfaceFont();

/// The baseline, in whole points, that centres capital letters in the rectangle. Fonts differ
/// in the space above and below a line; centring that space places some of them too low.
int centredBaseline(const QRectF& frame, const QFontMetrics& metrics);

/// Draws one line, aligned in the frame, in the painter's font and pen. A line wider than the
/// frame is elided as `mode` says. `text` has no line ends.
void drawLine(QPainter& painter, const QRectF& frame, const QString& text, Qt::Alignment alignment,
              Qt::TextElideMode mode = Qt::ElideNone);

/// The same with tabular digits: each as wide as the widest one, so that a number that counts
/// does not move.
void drawTabularDigits(QPainter& painter, const QRectF& frame, const QString& text,
                       Qt::Alignment alignment);
/// The width that drawTabularDigits needs, in points.
int tabularWidth(const QString& text, const QFontMetrics& metrics);

} // namespace oxlade
