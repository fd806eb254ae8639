// The keys of menu items. Any thread.
#pragma once

class QKeyEvent;

namespace oxlade {

/// The letter from a to z that was pressed together with Control alone; 0 for any other key.
/// Where the keyboard layout has no Latin letter on the key, the letter of its place on an
/// English keyboard, on X11 and Wayland.
char commandLetter(const QKeyEvent& event);

} // namespace oxlade
