// The fonts of the window. Sizes are in layout points, that is logical pixels: typographic
// points would grow with the display's resolution. Main thread unless said otherwise.
#pragma once

#include <QFont>

#include <string>

namespace oxlade {

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

} // namespace oxlade
