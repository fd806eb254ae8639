// The fonts of the window. Sizes are layout points, which are logical pixels: a
// size in typographic points would grow with the display's resolution. Main thread.
#pragma once

#include <QFont>

namespace oxlade {

/// The application's sans font.
QFont interfaceFont(int pixels, QFont::Weight weight = QFont::Normal);
/// The desktop's monospaced font.
QFont monospacedFont(int pixels);
/// Gives the application a better sans font than the one that stands for "none
/// was chosen", where one is installed.
void chooseInterfaceFont();

} // namespace oxlade
