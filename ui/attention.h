// Points the user to a window while another program's is in front. Main thread.
#pragma once

class QWidget;

namespace oxlade {

/// Asks the desktop to mark the window of `widget`, which is visible, as one that waits for the
/// user. Nothing if that window is active.
///
/// On Wayland by xdg-activation: the request follows when the compositor has given a token, if
/// `widget` still exists and its window is still not active then. Does not wait for the answer.
/// What the compositor makes of the request is its own choice. Nothing where it does not know the
/// protocol, or the program was built without it.
void askForAttention(QWidget* widget);

} // namespace oxlade
